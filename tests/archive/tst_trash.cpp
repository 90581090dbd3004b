#include "archive/ArchiveContext.h"
#include "archive/LibraryBrowser.h"
#include "archive/PersistenceController.h"
#include "archive/Trash.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "StoreFaults.h"

namespace {

QDateTime at(int hour)
{
    return QDateTime(QDate(2025, 6, 1), QTime(hour, 0), Qt::UTC);
}

} // namespace

class TrashTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    std::unique_ptr<PersistenceController> m_store;
    QStringList m_statuses;

    ArchiveContext &context() { return m_store->viewContext(); }
    QString storePath() const { return m_dir.filePath(QStringLiteral("trash.sqlite")); }

    Trash makeTrash()
    {
        return Trash(context(), [this](const QString &status) { m_statuses.append(status); });
    }

    PoemPtr trashedPoem(const std::optional<QString> &title, int deletedHour)
    {
        PoemPtr poem = context().insertPoem();
        poem->setId(QUuid::createUuid());
        poem->setTitle(title);
        poem->setUpdatedAt(at(1));
        poem->setDeletedAt(at(deletedHour));
        return poem;
    }

    static QStringList titlesOf(const QList<PoemPtr> &poems)
    {
        QStringList titles;
        for (const PoemPtr &poem : poems)
            titles.append(Trash::displayTitle(*poem));
        return titles;
    }

private Q_SLOTS:
    void init()
    {
        QFile::remove(storePath());
        m_store = std::move(PersistenceController::open(storePath()).value());
        m_statuses.clear();
    }

    void listsNewestFirstWithDisplayTitles()
    {
        trashedPoem(QStringLiteral("Alt"), 3);
        trashedPoem(std::nullopt, 9);
        trashedPoem(QString(), 5);
        PoemPtr live = context().insertPoem();
        live->setTitle(QStringLiteral("Lebendig"));
        QVERIFY(context().save().ok());
        const Trash trash = makeTrash();
        QCOMPARE(titlesOf(trash.poems()), (QStringList{"(ohne Titel)", "(ohne Titel)", "Alt"}));
        QCOMPARE(trash.count(), 3);
    }

    void restoredPoemReturnsToTheTopOfTheLibrary()
    {
        PoemPtr poem = trashedPoem(QStringLiteral("Zurück"), 4);
        PoemPtr other = context().insertPoem();
        other->setTitle(QStringLiteral("Neuer"));
        other->setUpdatedAt(at(6));
        QVERIFY(context().save().ok());

        Trash trash = makeTrash();
        QSignalSpy changed(&context(), &ArchiveContext::contextDidChange);
        const auto restored = trash.restore(poem, at(8));
        QCOMPARE(restored.value(), QStringLiteral("Gedicht wiederhergestellt: Zurück"));
        QCOMPARE(m_statuses, QStringList{restored.value()});
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.at(0).at(0).value<QSet<qint64>>(), QSet<qint64>{poem->storeKey()});
        QVERIFY(!poem->deletedAt().has_value());
        QCOMPARE(*poem->updatedAt(), at(8));
        QVERIFY(!context().hasChanges());

        LibraryBrowser browser(context());
        browser.reloadRows();
        QCOMPARE(browser.rows().first().title, QStringLiteral("Zurück"));
        QCOMPARE(browser.counts().trashCount, 0);
    }

    void deletingForGoodRemovesTheRecord()
    {
        PoemPtr doomed = trashedPoem(QStringLiteral("Fort"), 2);
        trashedPoem(QStringLiteral("Bleibt"), 3);
        QVERIFY(context().save().ok());
        Trash trash = makeTrash();
        QCOMPARE(trash.deletePermanently(doomed).value(), QStringLiteral("Gedicht endgültig gelöscht: Fort"));
        m_store.reset();
        m_store = std::move(PersistenceController::open(storePath()).value());
        QCOMPARE(titlesOf(makeTrash().poems()), QStringList{"Bleibt"});
    }

    void emptyingReportsSingularAndPlural()
    {
        trashedPoem(QStringLiteral("Eins"), 2);
        QVERIFY(context().save().ok());
        QCOMPARE(makeTrash().emptyTrash().value(), QStringLiteral("Papierkorb geleert: 1 Gedicht endgültig gelöscht."));
        trashedPoem(QStringLiteral("Zwei"), 2);
        trashedPoem(QStringLiteral("Drei"), 3);
        QVERIFY(context().save().ok());
        QCOMPARE(makeTrash().emptyTrash().value(),
                 QStringLiteral("Papierkorb geleert: 2 Gedichte endgültig gelöscht."));
        QCOMPARE(Trash::emptiedText(0), QStringLiteral("Papierkorb geleert: 0 Gedichte endgültig gelöscht."));
        QCOMPARE(makeTrash().count(), 0);
        QCOMPARE(context().fetch().size(), 0);
    }

    void failedSaveRollsEveryActionBack()
    {
        trashedPoem(QStringLiteral("Eins"), 2);
        PoemPtr second = trashedPoem(QStringLiteral("Zwei"), 3);
        QVERIFY(context().save().ok());
        executeOnStore(storePath(), "CREATE TRIGGER refuseDelete BEFORE DELETE ON poem WHEN OLD.title = 'Zwei' "
                                    "BEGIN SELECT RAISE(ABORT, 'Datenträger voll'); END");
        Trash trash = makeTrash();
        const auto emptied = trash.emptyTrash();
        QVERIFY(!emptied.ok());
        QVERIFY(emptied.errorMessage().startsWith(QStringLiteral("Papierkorb-Aktion fehlgeschlagen: ")));
        QVERIFY(emptied.errorMessage().contains(QStringLiteral("Datenträger voll")));
        QCOMPARE(m_statuses, QStringList{emptied.errorMessage()});
        QCOMPARE(trash.count(), 2);
        QVERIFY(!context().hasChanges());

        executeOnStore(storePath(), "CREATE TRIGGER refuseUpdate BEFORE UPDATE ON poem "
                                    "BEGIN SELECT RAISE(ABORT, 'schreibgeschützt'); END");
        QVERIFY(!trash.restore(second, at(9)).ok());
        QCOMPARE(*second->deletedAt(), at(3));
        QCOMPARE(*second->updatedAt(), at(1));
        QVERIFY(!trash.deletePermanently(second).ok());
        QCOMPARE(trash.count(), 2);

        // The poems are still in the file, in the trash.
        m_store.reset();
        m_store = std::move(PersistenceController::open(storePath()).value());
        QCOMPARE(titlesOf(makeTrash().poems()), (QStringList{"Zwei", "Eins"}));
    }
};

QTEST_GUILESS_MAIN(TrashTest)
#include "tst_trash.moc"
