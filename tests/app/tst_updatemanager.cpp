#include "LoopbackHttpServer.h"

#include "app/UpdateFeed.h"
#include "app/UpdateManager.h"
#include "archive/AppPreferences.h"
#include "archive/ApplicationSupport.h"

#include <QNetworkProxy>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace {

QByteArray appcast(const QList<QByteArray> &items)
{
    QByteArray document = R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle">
<channel><title>OdeLeaf</title>)";
    for (const QByteArray &item : items)
        document += item;
    return document + "</channel></rss>";
}

QByteArray item(const QByteArray &version, const QByteArray &url)
{
    return "<item><title>OdeLeaf " + version + "</title><sparkle:version>" + version +
           "</sparkle:version><description>Neue Funktionen</description><enclosure url=\"" + url +
           "\" type=\"application/octet-stream\"/></item>";
}

} // namespace

class UpdateManagerTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    std::unique_ptr<LoopbackHttpServer> m_server;

    std::unique_ptr<UpdateManager> makeManager(const QString &path, const QString &version = QStringLiteral("1.2.0"))
    {
        return std::make_unique<UpdateManager>(m_server->url(path), QVersionNumber::fromString(version));
    }

    static UpdateCheckOutcome runCheck(UpdateManager &manager)
    {
        QSignalSpy finished(&manager, &UpdateManager::checkFinished);
        manager.checkForUpdates();
        if (!finished.wait(10000))
            return UpdateCheckOutcome{UpdateCheckOutcome::Kind::failed, {}, QStringLiteral("timeout"), false};
        return finished.first().first().value<UpdateCheckOutcome>();
    }

private Q_SLOTS:
    void initTestCase()
    {
        QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
        ApplicationSupport::setDirectory(m_dir.path());
    }

    void init()
    {
        QFile::remove(ApplicationSupport::preferencesPath());
        m_server = std::make_unique<LoopbackHttpServer>();
        QVERIFY(m_server->listen());
    }

    void feedNamesTheNewestRelease()
    {
        const QByteArray feed =
            appcast({item("1.2.0", "https://example.org/a"), item("1.10.0", "https://example.org/c"),
                     item("1.9.3", "https://example.org/b")});
        const auto newest = UpdateFeed::newestRelease(feed);
        QVERIFY2(newest.ok(), qPrintable(newest.errorMessage()));
        QCOMPARE(newest->version, QVersionNumber(1, 10, 0));
        QCOMPARE(newest->downloadUrl, QUrl(QStringLiteral("https://example.org/c")));
        QCOMPARE(newest->notes, QStringLiteral("Neue Funktionen"));

        // Versions given only as enclosure attributes or in the title are read too.
        const auto fromAttribute = UpdateFeed::newestRelease(appcast(
            {"<item><title>Neu</title><enclosure url=\"u\" sparkle:version=\"2.1\" sparkle:shortVersionString=\"2.1 "
             "Herbst\"/></item>",
             "<item><title>OdeLeaf 2.0.5</title><link>https://example.org/2.0.5</link></item>"}));
        QCOMPARE(fromAttribute->version, QVersionNumber(2, 1));
        QCOMPARE(fromAttribute->displayVersion, QStringLiteral("2.1 Herbst"));

        QVERIFY(!UpdateFeed::newestRelease("<rss><channel><item>").ok());
        QVERIFY(!UpdateFeed::newestRelease(appcast({"<item><title>ohne Nummer</title></item>"})).ok());
        QVERIFY(!UpdateFeed::newestRelease("kein XML").ok());
    }

    void checkTellsNewerVersionOrUpToDate()
    {
        m_server->setResponse(QStringLiteral("/feed.xml"),
                              {200, appcast({item("1.3.0", "https://example.org/odeleaf-1.3.0.tar.gz")})});
        auto older = makeManager(QStringLiteral("/feed.xml"), QStringLiteral("1.2.9"));
        const UpdateCheckOutcome found = runCheck(*older);
        QCOMPARE(int(found.kind), int(UpdateCheckOutcome::Kind::updateAvailable));
        QCOMPARE(found.release.displayVersion, QStringLiteral("1.3.0"));
        QCOMPARE(found.release.downloadUrl, QUrl(QStringLiteral("https://example.org/odeleaf-1.3.0.tar.gz")));
        QVERIFY(found.userInitiated);

        auto same = makeManager(QStringLiteral("/feed.xml"), QStringLiteral("1.3"));
        QCOMPARE(int(runCheck(*same).kind), int(UpdateCheckOutcome::Kind::upToDate));
        auto newer = makeManager(QStringLiteral("/feed.xml"), QStringLiteral("2.0.0"));
        QCOMPARE(int(runCheck(*newer).kind), int(UpdateCheckOutcome::Kind::upToDate));
    }

    void failuresAreReportedAndEndTheCheck()
    {
        m_server->setResponse(QStringLiteral("/broken.xml"), {200, QByteArrayLiteral("<rss><channel><item>")});
        auto manager = makeManager(QStringLiteral("/missing.xml"));
        const UpdateCheckOutcome missing = runCheck(*manager);
        QCOMPARE(int(missing.kind), int(UpdateCheckOutcome::Kind::failed));
        QVERIFY(!missing.errorText.isEmpty());
        QVERIFY(manager->canCheckForUpdates());

        // A failed check is not the day's check: the next start tries again.
        QVERIFY(!manager->lastUpdateCheckDate());
        QVERIFY(!AppPreferences::lastUpdateCheckDate());
        QVERIFY(manager->checkInBackgroundIfDue());
        QTRY_VERIFY(manager->canCheckForUpdates());

        auto broken = makeManager(QStringLiteral("/broken.xml"));
        const UpdateCheckOutcome garbled = runCheck(*broken);
        QCOMPARE(int(garbled.kind), int(UpdateCheckOutcome::Kind::failed));
        QVERIFY(garbled.errorText.startsWith(QStringLiteral("Der Update-Feed ist fehlerhaft")));
    }

    void withoutAFeedNothingIsEverChecked()
    {
        UpdateManager packaged(QUrl(), QVersionNumber(1, 0));
        QVERIFY(!packaged.hasFeed());
        QVERIFY(!packaged.canCheckForUpdates());
        QSignalSpy finished(&packaged, &UpdateManager::checkFinished);
        packaged.start();
        packaged.checkForUpdates();
        QVERIFY(!packaged.checkInBackgroundIfDue());
        QTest::qWait(50);
        QVERIFY(finished.isEmpty());
        QVERIFY(!packaged.lastUpdateCheckDate());
    }

    void cannotCheckWhileACheckRuns()
    {
        m_server->setResponse(QStringLiteral("/slow.xml"), {200, appcast({item("1.0", "u")}), true});
        auto manager = makeManager(QStringLiteral("/slow.xml"));
        QSignalSpy canCheck(manager.get(), &UpdateManager::canCheckForUpdatesChanged);
        QSignalSpy finished(manager.get(), &UpdateManager::checkFinished);
        manager->checkForUpdates();
        QVERIFY(!manager->canCheckForUpdates());
        QCOMPARE(canCheck.size(), 1);
        manager->checkForUpdates(); // ignored while the first runs
        QVERIFY(!manager->checkInBackgroundIfDue());
        QTRY_COMPARE(m_server->requestCount(), 1);
        QVERIFY(finished.isEmpty());
        m_server->release();
        QVERIFY(finished.wait(10000));
        QVERIFY(manager->canCheckForUpdates());
        QCOMPARE(canCheck.size(), 2);
        QCOMPARE(finished.size(), 1);
        QCOMPARE(m_server->requestCount(), 1);
    }

    void automaticCheckAtMostOnceADayAndOnlyWhenEnabled()
    {
        m_server->setResponse(QStringLiteral("/feed.xml"), {200, appcast({item("1.0", "u")})});
        auto manager = makeManager(QStringLiteral("/feed.xml"));
        QVERIFY(manager->automaticallyChecksForUpdates());
        QVERIFY(!manager->lastUpdateCheckDate());
        QSignalSpy finished(manager.get(), &UpdateManager::checkFinished);
        QVERIFY(manager->checkInBackgroundIfDue());
        QVERIFY(finished.wait(10000));
        QVERIFY(!finished.first().first().value<UpdateCheckOutcome>().userInitiated);
        const QDateTime checked = *manager->lastUpdateCheckDate();
        QVERIFY(qAbs(checked.secsTo(QDateTime::currentDateTimeUtc())) < 60);

        QVERIFY(!manager->checkInBackgroundIfDue(checked.addSecs(23 * 3600)));
        manager->setAutomaticallyChecksForUpdates(false);
        QVERIFY(!manager->checkInBackgroundIfDue(checked.addSecs(25 * 3600)));
        manager->setAutomaticallyChecksForUpdates(true);
        QVERIFY(manager->checkInBackgroundIfDue(checked.addSecs(25 * 3600)));
        QVERIFY(finished.wait(10000));
        QCOMPARE(m_server->requestCount(), 2);
    }

    void settingsSurviveARestart()
    {
        m_server->setResponse(QStringLiteral("/feed.xml"), {200, appcast({item("1.0", "u")})});
        QDateTime checked;
        {
            auto manager = makeManager(QStringLiteral("/feed.xml"));
            QSignalSpy changed(manager.get(), &UpdateManager::automaticallyChecksForUpdatesChanged);
            manager->setAutomaticallyChecksForUpdates(false);
            QCOMPARE(changed.size(), 1);
            runCheck(*manager);
            checked = *manager->lastUpdateCheckDate();
        }
        auto restarted = makeManager(QStringLiteral("/feed.xml"));
        QVERIFY(!restarted->automaticallyChecksForUpdates());
        QCOMPARE(restarted->lastUpdateCheckDate()->toSecsSinceEpoch(), checked.toSecsSinceEpoch());
        QCOMPARE(AppPreferences::valueText(QStringLiteral("automaticallyChecksForUpdates")),
                 std::optional<QString>(QStringLiteral("false")));
    }
};

QTEST_GUILESS_MAIN(UpdateManagerTest)
#include "tst_updatemanager.moc"
