#include "BackupTestSupport.h"

#include "archive/AppPreferences.h"
#include "archive/ApplicationSupport.h"
#include "archive/PersistenceController.h"
#include "backup/BackupExporter.h"
#include "backup/BackupReader.h"
#include "backup/DailyBackup.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace BackupTestSupport;

namespace {

QDateTime local(int month, int day, int hour, int minute)
{
    return QDateTime(QDate(2026, month, day), QTime(hour, minute), Qt::LocalTime);
}

QStringList safetyBackups()
{
    return QDir(BackupExporter::automaticBackupDirectory()).entryList(QDir::Files, QDir::Name);
}

} // namespace

class DailyBackupTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<TestArchive> m_archive;

    ArchiveContext &context() { return m_archive->context(); }

    DailyBackup::Outcome runAt(const QDateTime &now)
    {
        return DailyBackup::runDailyAutomaticBackupIfNeeded(context(), now);
    }

private Q_SLOTS:
    void init() { m_archive = std::make_unique<TestArchive>(); }

    void runsOncePerLocalDay()
    {
        addPoem(context(), QStringLiteral("Herbst"), utc(2026, 3, 1, 8, 0, 0));
        addPoem(context(), QStringLiteral("Winter"), utc(2026, 3, 1, 8, 0, 0))->setDeletedAt(utc(2026, 3, 2, 0, 0, 0));

        const DailyBackup::Outcome first = runAt(local(3, 28, 0, 5));
        QCOMPARE(first.status, DailyBackup::Status::written);
        QCOMPARE(first.poemCount, 2);
        QCOMPARE(first.statusLine,
                 QStringLiteral("Automatische Tagessicherung erstellt: 2 Gedichte gespeichert. Datei: "
                                "daily-2026-03-28-000500.json"));
        QCOMPARE(AppPreferences::lastAutomaticBackupDay(), QStringLiteral("2026-03-28"));
        QCOMPARE(BackupReader::read(first.path)->poems.size(), 2);

        QCOMPARE(runAt(local(3, 28, 23, 59)).status, DailyBackup::Status::alreadyDone);
        QVERIFY(runAt(local(3, 28, 23, 59)).statusLine.isEmpty());
        // The day is the local one: 23:30 UTC on the 28th is already the 29th in Berlin.
        QCOMPARE(runAt(utc(2026, 3, 28, 23, 30, 0)).status, DailyBackup::Status::written);
        QCOMPARE(runAt(local(3, 29, 12, 0)).status, DailyBackup::Status::alreadyDone);
        QCOMPARE(safetyBackups().size(), 2);
    }

    void emptyArchiveDoesNotUseUpTheDay()
    {
        QCOMPARE(runAt(local(5, 1, 9, 0)).status, DailyBackup::Status::emptyArchive);
        QVERIFY(AppPreferences::lastAutomaticBackupDay().isEmpty());
        QVERIFY(safetyBackups().isEmpty());
        addPoem(context(), QStringLiteral("Erstes"), utc(2026, 5, 1, 7, 0, 0));
        QCOMPARE(runAt(local(5, 1, 9, 30)).status, DailyBackup::Status::written);
    }

    void failedAttemptIsRepeatedTheSameDay()
    {
        addPoem(context(), QStringLiteral("Herbst"), utc(2026, 3, 1, 8, 0, 0));
        QVERIFY(AppPreferences::setLastAutomaticBackupDay(QStringLiteral("2026-05-31")).ok());
        QVERIFY(writeFile(BackupExporter::automaticBackupDirectory(), "kein Ordner"));
        const DailyBackup::Outcome failed = runAt(local(6, 1, 8, 0));
        QCOMPARE(failed.status, DailyBackup::Status::failed);
        QVERIFY2(failed.statusLine.startsWith(QStringLiteral("Automatische Tagessicherung fehlgeschlagen: Der Ordner")),
                 qPrintable(failed.statusLine));
        QCOMPARE(AppPreferences::lastAutomaticBackupDay(), QStringLiteral("2026-05-31"));

        QVERIFY(QFile::remove(BackupExporter::automaticBackupDirectory()));
        QCOMPARE(runAt(local(6, 1, 8, 10)).status, DailyBackup::Status::written);
        QCOMPARE(AppPreferences::lastAutomaticBackupDay(), QStringLiteral("2026-06-01"));
    }

    void switchedOffWritesNothing()
    {
        addPoem(context(), QStringLiteral("Herbst"), utc(2026, 3, 1, 8, 0, 0));
        QVERIFY(AppPreferences::setAutomaticDailyBackupEnabled(false).ok());
        QCOMPARE(runAt(local(7, 1, 8, 0)).status, DailyBackup::Status::disabled);
        QVERIFY(safetyBackups().isEmpty());
        QVERIFY(AppPreferences::setAutomaticDailyBackupEnabled(true).ok());
        QCOMPARE(runAt(local(7, 1, 8, 0)).status, DailyBackup::Status::written);
    }
};

QTEST_GUILESS_MAIN(DailyBackupTest)
#include "tst_dailybackup.moc"
