#include "BackupTestSupport.h"

#include "archive/AppPreferences.h"
#include "backup/BackupExporter.h"
#include "backup/DailyBackup.h"
#include "backup/SafetyBackupFolder.h"
#include "backup/gui/SafetyBackupWindow.h"

#include <QDir>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTreeWidget>

using namespace BackupTestSupport;

namespace {

QDateTime local(int year, int month, int day, int hour = 9)
{
    return QDateTime(QDate(year, month, day), QTime(hour, 0), Qt::LocalTime);
}

QStringList namesOf(const QList<SafetyBackupFile> &files)
{
    QStringList names;
    for (const SafetyBackupFile &file : files)
        names.append(file.fileName);
    return names;
}

} // namespace

class SafetyBackupTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<TestArchive> m_archive;

    QString write(const QString &prefix, const QDateTime &at)
    {
        const auto written = BackupExporter::writeAutomaticSafetyBackup(m_archive->context().fetch(), prefix, at);
        if (!written)
            qWarning("%s", qPrintable(written.errorMessage()));
        return written ? QFileInfo(*written).fileName() : QString();
    }

    QStringList filesOnDisk() const
    {
        return QDir(BackupExporter::automaticBackupDirectory()).entryList(QDir::Files, QDir::Name);
    }

private Q_SLOTS:
    void init()
    {
        m_archive = std::make_unique<TestArchive>();
        addPoem(m_archive->context(), QStringLiteral("Herbst"), utc(2026, 3, 1, 8, 0, 0));
        addPoem(m_archive->context(), QStringLiteral("Winter"), utc(2026, 3, 1, 8, 0, 0));
        addPoem(m_archive->context(), QStringLiteral("Weg"), utc(2026, 3, 1, 8, 0, 0))
            ->setDeletedAt(utc(2026, 3, 2, 8, 0, 0));
    }

    void kindIsToldByThePrefix()
    {
        QCOMPARE(safetyBackupKindOf(QStringLiteral("pre-restore-2026-03-01-080000.json")),
                 SafetyBackupKind::beforeRestore);
        QCOMPARE(safetyBackupKindOf(QStringLiteral("pre-text-import-2026-03-01-080000.json")),
                 SafetyBackupKind::beforeTextImport);
        QCOMPARE(safetyBackupKindOf(QStringLiteral("pre-image-import-2026-03-01-080000.json")),
                 SafetyBackupKind::beforeImageImport);
        QCOMPARE(safetyBackupKindOf(QStringLiteral("pre-csv-import-2026-03-01-080000.json")),
                 SafetyBackupKind::beforeCsvImport);
        QCOMPARE(safetyBackupKindOf(QStringLiteral("daily-2026-03-01-080000.json")), SafetyBackupKind::daily);
        QCOMPARE(safetyBackupKindOf(QStringLiteral("dailyish-2026-03-01-080000.json")), SafetyBackupKind::other);
        QCOMPARE(safetyBackupKindOf(QStringLiteral("pre-text-2026-03-01-080000.json")), SafetyBackupKind::other);
        for (const SafetyBackupKind kind : namedSafetyBackupKinds)
            QCOMPARE(safetyBackupKindOf(BackupExporter::safetyBackupFileName(rawValue(kind), local(2026, 3, 1))), kind);
    }

    void listsNewestFirstWithCountsAndSizes()
    {
        const QString daily = write(QStringLiteral("daily"), local(2026, 3, 1, 7));
        const QString restore = write(QStringLiteral("pre-restore"), local(2026, 3, 4, 21));
        const QString csv = write(QStringLiteral("pre-csv-import"), local(2026, 3, 2, 12));
        const QList<SafetyBackupFile> files = SafetyBackupFolder::standard().list();
        QCOMPARE(namesOf(files), (QStringList{restore, csv, daily}));
        QCOMPARE(files.first().kind, SafetyBackupKind::beforeRestore);
        QCOMPARE(files.first().createdAt, local(2026, 3, 4, 21));
        QCOMPARE(files.first().createdText(), QStringLiteral("04.03.2026 21:00"));
        for (const SafetyBackupFile &file : files) {
            QCOMPARE(file.poemCount, std::optional<qint64>(3));
            QCOMPARE(file.bytes, QFileInfo(file.path).size());
        }
        QCOMPARE(files.first().poemCountText(), QStringLiteral("3 Gedichte"));
    }

    void countIsNeverGuessedFromADamagedFile()
    {
        const QString folder = BackupExporter::automaticBackupDirectory();
        const QString name = write(QStringLiteral("daily"), local(2026, 3, 1));
        const QByteArray whole = fileBytes(folder + QLatin1Char('/') + name);

        // Cut short: the header still says 3, but the file cannot be restored.
        const QString cut = folder + QStringLiteral("/pre-restore-2026-03-02-080000.json");
        QVERIFY(writeFile(cut, whole.left(whole.size() - 40)));
        QCOMPARE(SafetyBackupFile::countPoems(cut), std::nullopt);

        // A document whose keys come in another order is counted by decoding it.
        const QString reordered = folder + QStringLiteral("/pre-csv-import-2026-03-03-080000.json");
        QVERIFY(writeFile(reordered,
                          R"({"poems":[{"objectURI":"x","title":"Eins","inPodcast":false,"isPublished":false}],)"
                          R"("app":"OdeLeaf","schemaVersion":3,"exportedAt":"2026-03-03T07:00:00Z",)"
                          R"("poemCount":7})"));
        QCOMPARE(SafetyBackupFile::countPoems(reordered), std::optional<qint64>(1));

        QVERIFY(writeFile(folder + QStringLiteral("/notizen.json"), "kein JSON"));
        const QList<SafetyBackupFile> files = SafetyBackupFolder::standard().list();
        QCOMPARE(files.size(), 4);
        const SafetyBackupFile &notes = *std::find_if(files.begin(), files.end(), [](const SafetyBackupFile &file) {
            return file.fileName == QLatin1String("notizen.json");
        });
        QCOMPARE(notes.kind, SafetyBackupKind::other);
        QVERIFY(!notes.poemCount);
        QCOMPARE(notes.poemCountText(), QStringLiteral("unlesbar"));
    }

    void retentionKeepsTwoWeeksThenOnePerMonth()
    {
        const QDateTime now = local(2026, 5, 20, 10);
        // Inside the fourteen days (May 7 to 20), two on one day included: all stay.
        const QStringList recent = {write(QStringLiteral("daily"), local(2026, 5, 20, 8)),
                                    write(QStringLiteral("daily"), local(2026, 5, 7, 8)),
                                    write(QStringLiteral("daily"), local(2026, 5, 7, 18))};
        // May 6 is the first day outside; of the older May ones the newest stays.
        const QString mayKept = write(QStringLiteral("daily"), local(2026, 5, 6, 8));
        const QString mayGone = write(QStringLiteral("daily"), local(2026, 5, 1, 8));
        const QString aprilKept = write(QStringLiteral("daily"), local(2026, 4, 30, 23));
        const QStringList aprilGone = {write(QStringLiteral("daily"), local(2026, 4, 29, 8)),
                                       write(QStringLiteral("daily"), local(2026, 4, 1, 0))};
        const QString lastYear = write(QStringLiteral("daily"), local(2025, 4, 12, 8));
        // Copies from before an operation are the poet's to delete, however old.
        const QString restore = write(QStringLiteral("pre-restore"), local(2025, 1, 1, 8));
        const QString textImport = write(QStringLiteral("pre-text-import"), local(2026, 4, 2, 8));

        const SafetyBackupFolder folder = SafetyBackupFolder::standard();
        QStringList expected = QStringList{mayGone} + aprilGone;
        expected.sort();
        QStringList expired = namesOf(SafetyBackupFolder::expired(folder.list(), now));
        expired.sort();
        QCOMPARE(expired, expected);

        QCOMPARE(*folder.prune(now), 3);
        QStringList kept = recent + QStringList{mayKept, aprilKept, lastYear, restore, textImport};
        kept.sort();
        QCOMPARE(filesOnDisk(), kept);
        QCOMPARE(*folder.prune(now), 0);
        QCOMPARE(SafetyBackupFolder::prunedStatus(3), QStringLiteral("3 Sicherheitsbackups entfernt."));
    }

    void dailyBackupAppliesTheRule()
    {
        const QString old = write(QStringLiteral("daily"), local(2026, 2, 3, 8));
        const QString older = write(QStringLiteral("daily"), local(2026, 2, 2, 8));
        const QString restore = write(QStringLiteral("pre-restore"), local(2026, 2, 1, 8));
        QVERIFY(AppPreferences::setAutomaticDailyBackupEnabled(false).ok());
        QCOMPARE(DailyBackup::runDailyAutomaticBackupIfNeeded(m_archive->context(), local(2026, 3, 28)).status,
                 DailyBackup::Status::disabled);
        QCOMPARE(filesOnDisk().size(), 3);

        QVERIFY(AppPreferences::setAutomaticDailyBackupEnabled(true).ok());
        const DailyBackup::Outcome outcome =
            DailyBackup::runDailyAutomaticBackupIfNeeded(m_archive->context(), local(2026, 3, 28));
        QCOMPARE(outcome.status, DailyBackup::Status::written);
        QVERIFY(!filesOnDisk().contains(older));
        QVERIFY(filesOnDisk().contains(old));
        QVERIFY(filesOnDisk().contains(restore));
        QVERIFY(filesOnDisk().contains(QFileInfo(outcome.path).fileName()));
    }

    void windowListsRestoresAndDeletes()
    {
        const QString daily = write(QStringLiteral("daily"), local(2026, 3, 1, 7));
        const QString restore = write(QStringLiteral("pre-restore"), local(2026, 3, 4, 21));
        SafetyBackupWindow window(SafetyBackupFolder::standard());
        QCOMPARE(window.list()->topLevelItemCount(), 2);
        QCOMPARE(window.list()->topLevelItem(0)->text(0), QStringLiteral("Vor Wiederherstellung"));
        QCOMPARE(window.list()->topLevelItem(1)->text(0), QStringLiteral("Tagesbackup"));
        QCOMPARE(window.list()->topLevelItem(1)->text(2), QStringLiteral("3 Gedichte"));
        QCOMPARE(window.selectedFile()->fileName, restore);

        QSignalSpy restoreAsked(&window, &SafetyBackupWindow::restoreRequested);
        QSignalSpy revealAsked(&window, &SafetyBackupWindow::revealRequested);
        window.selectFile(1);
        window.restoreButton()->click();
        window.revealButton()->click();
        QCOMPARE(restoreAsked.size(), 1);
        QCOMPARE(restoreAsked.first().first().toString(), window.files().at(1).path);
        QCOMPARE(revealAsked.first().first().toString(), window.files().at(1).path);

        QStringList asked;
        window.confirmDeletion = [&asked](const SafetyBackupFile &file) {
            asked.append(file.fileName);
            return asked.size() > 1; // declined once, then confirmed
        };
        window.deleteButton()->click();
        QCOMPARE(filesOnDisk().size(), 2);
        QSignalSpy status(&window, &SafetyBackupWindow::statusChanged);
        window.deleteButton()->click();
        QCOMPARE(asked, (QStringList{daily, daily}));
        QCOMPARE(filesOnDisk(), QStringList{restore});
        QCOMPARE(window.list()->topLevelItemCount(), 1);
        QCOMPARE(status.first().first().toString(), QStringLiteral("Sicherheitsbackup gelöscht: ") + daily);

        window.selectFile(0);
        window.confirmDeletion = [](const SafetyBackupFile &) { return true; };
        window.deleteButton()->click();
        QCOMPARE(window.list()->topLevelItemCount(), 0);
        QVERIFY(!window.deleteButton()->isEnabled());
        QVERIFY(!window.restoreButton()->isEnabled());
    }
};

QTEST_MAIN(SafetyBackupTest)
#include "tst_safetybackups.moc"
