#include "BackupTestSupport.h"

#include "archive/AppPreferences.h"
#include "archive/ApplicationSupport.h"
#include "archive/PersistenceController.h"
#include "backup/BackupExporter.h"
#include "backup/BackupReader.h"
#include "backup/RestorePlanner.h"
#include "backup/gui/BackupActions.h"
#include "backup/gui/BackupRestoreDialog.h"

#include <QAction>
#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>

using namespace BackupTestSupport;

namespace {

// The flows with their dialogs answered by the test.
class ScriptedBackupActions : public BackupActions {
public:
    using BackupActions::BackupActions;

    QString destination;
    QString backupToRestore;
    std::optional<RestoreMode> mode;
    QString proposedPath;
    QString openedFolder;
    int confirmations = 0;

protected:
    QString chooseBackupDestination(const QString &proposed) override
    {
        proposedPath = proposed;
        return destination;
    }
    QString chooseBackupToRestore(const QString &folder) override
    {
        openedFolder = folder;
        return backupToRestore;
    }
    std::optional<RestoreMode> confirmRestore(const RestorePreview &, const QString &) override
    {
        ++confirmations;
        return mode;
    }
};

QString lastStatus(const QSignalSpy &spy)
{
    return spy.isEmpty() ? QString() : spy.last().at(0).toString();
}

RestorePreview previewWith(int create, int update, bool older)
{
    RestorePreview preview;
    preview.createCount = create;
    preview.updateCount = update;
    preview.backupDeletedCount = 3;
    preview.isOlderThanLocalData = older;
    preview.backup.exportedAt = utc(2026, 11, 14, 21, 3, 47);
    return preview;
}

} // namespace

class BackupActionsTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<TestArchive> m_archive;
    std::unique_ptr<QWidget> m_window;
    ScriptedBackupActions *m_actions = nullptr;

    ArchiveContext &context() { return m_archive->context(); }

private Q_SLOTS:
    void init()
    {
        m_archive = std::make_unique<TestArchive>();
        addPoem(context(), QStringLiteral("Herbst"), utc(2026, 11, 1, 8, 0, 0));
        addPoem(context(), QStringLiteral("Winter"), utc(2026, 11, 1, 8, 0, 0))
            ->setDeletedAt(utc(2026, 11, 2, 8, 0, 0));
        QVERIFY(context().save().ok());
        m_window = std::make_unique<QWidget>();
        m_actions = new ScriptedBackupActions(context(), m_window.get());
        m_actions->setClock([] { return utc(2026, 11, 14, 21, 3, 47); });
    }

    void actionsCarryTheirLabels()
    {
        QCOMPARE(m_actions->createBackupAction()->text(), QStringLiteral("Backup erstellen"));
        QCOMPARE(m_actions->restoreAction()->text(), QStringLiteral("Wiederherstellen"));
    }

    void manualBackupWritesEveryPoemAndRemembersTheFolder()
    {
        QSignalSpy status(m_actions, &BackupActions::statusChanged);
        QSignalSpy written(m_actions, &BackupActions::fileWritten);
        QSignalSpy busy(m_actions, &BackupActions::busyChanged);
        const QString folder = m_archive->path(QStringLiteral("Sicherungen"));
        QVERIFY(QDir().mkpath(folder));
        m_actions->destination = folder + QStringLiteral("/mein-backup.json");

        m_actions->createBackupAction()->trigger();
        QCOMPARE(lastStatus(status),
                 QStringLiteral("Sicherung erstellt: 2 Gedichte gespeichert. Datei: mein-backup.json"));
        QCOMPARE(written.size(), 1);
        QCOMPARE(written.first().at(0).toString(), m_actions->destination);
        QCOMPARE(BackupReader::read(m_actions->destination)->poems.size(), 2);
        QCOMPARE(busy.size(), 2);
        QCOMPARE(busy.last().at(0).toBool(), false);
        QVERIFY(m_actions->createBackupAction()->isEnabled());

        // The next dialog opens where the last backup went, with a fresh proposed name.
        QCOMPARE(AppPreferences::resolvedFolder(FolderKind::backup), std::optional<QString>(folder));
        m_actions->destination.clear();
        m_actions->createBackup();
        QCOMPARE(m_actions->proposedPath, folder + QStringLiteral("/OdeLeaf-Backup-2026-11-14-2203.json"));
        QCOMPARE(lastStatus(status), QStringLiteral("Backup abgebrochen."));
        QCOMPARE(written.size(), 1);
    }

    void failedManualBackupSaysWhy()
    {
        QSignalSpy status(m_actions, &BackupActions::statusChanged);
        QSignalSpy written(m_actions, &BackupActions::fileWritten);
        m_actions->destination = m_archive->path(QStringLiteral("fehlt/backup.json"));
        m_actions->createBackup();
        QVERIFY2(lastStatus(status).startsWith(QStringLiteral("Sicherung konnte nicht erstellt werden: Die Datei "
                                                              "„backup.json“")),
                 qPrintable(lastStatus(status)));
        QVERIFY(written.isEmpty());
        QVERIFY(!AppPreferences::resolvedFolder(FolderKind::backup));
    }

    void restoreFlowReportsEachOutcome()
    {
        QSignalSpy status(m_actions, &BackupActions::statusChanged);
        QSignalSpy changed(&context(), &ArchiveContext::contextDidChange);
        const QString backupPath = m_archive->path(QStringLiteral("b.json"));
        QVERIFY(BackupExporter::writeBackup(context().fetch(), backupPath).ok());

        m_actions->restoreBackup();
        QCOMPARE(lastStatus(status), QStringLiteral("Backup-Wiederherstellung abgebrochen."));
        QCOMPARE(m_actions->confirmations, 0);

        m_actions->backupToRestore = backupPath;
        m_actions->restoreBackup(); // the sheet is cancelled
        QCOMPARE(m_actions->confirmations, 1);
        QCOMPARE(lastStatus(status), QStringLiteral("Backup-Wiederherstellung abgebrochen."));

        context().fetch().first()->setText(QStringLiteral("geändert"));
        QVERIFY(context().save().ok());
        changed.clear();
        m_actions->mode = RestoreMode::addMissingAndUpdate;
        m_actions->restoreBackup();
        QCOMPARE(lastStatus(status), QStringLiteral("Wiederherstellung abgeschlossen: 0 neu ergänzt, 1 aktualisiert. "
                                                    "Sicherheitskopie: pre-restore-2026-11-14-220347.json"));
        QCOMPARE(changed.size(), 1);
        QCOMPARE(context().fetch().first()->text(), std::optional<QString>(QStringLiteral("Text von Herbst")));
        // The chosen backup's folder is where the next open dialog starts.
        QCOMPARE(m_actions->openedFolder, m_archive->folder());

        QVERIFY(writeFile(backupPath, "kein Backup"));
        m_actions->restoreBackup();
        QVERIFY(lastStatus(status).startsWith(QStringLiteral("Backup konnte nicht gelesen werden: Die Datei ist kein "
                                                             "gültiges JSON")));
        QCOMPARE(changed.size(), 1);
    }

    void dailyBackupReportsOnlyWhenItRuns()
    {
        QSignalSpy status(m_actions, &BackupActions::statusChanged);
        QSignalSpy written(m_actions, &BackupActions::fileWritten);
        m_actions->runDailyBackupIfDue();
        QCOMPARE(lastStatus(status), QStringLiteral("Automatische Tagessicherung erstellt: 2 Gedichte gespeichert. "
                                                    "Datei: daily-2026-11-14-220347.json"));
        QCOMPARE(written.size(), 1);
        m_actions->runDailyBackupIfDue();
        QCOMPARE(status.size(), 1);
        QCOMPARE(written.size(), 1);
    }

    void restoreSheetShowsTheStateAndOffersTheRightButtons()
    {
        BackupRestoreDialog ready(previewWith(2, 1, false), QStringLiteral("b.json"));
        QCOMPARE(ready.windowTitle(), QStringLiteral("Backup wiederherstellen"));
        QCOMPARE(ready.findChild<QLabel *>(QStringLiteral("statusTitle"))->text(),
                 QStringLiteral("Wiederherstellung bereit"));
        QCOMPARE(ready.findChild<QLabel *>(QStringLiteral("trashCount"))->text(), QStringLiteral("3 im Papierkorb"));
        QCOMPARE(ready.primaryButton()->text(), QStringLiteral("Ergänzen und aktualisieren"));
        QCOMPARE(ready.missingOnlyButton()->text(), QStringLiteral("Nur fehlende ergänzen"));
        QTest::mouseClick(ready.missingOnlyButton(), Qt::LeftButton);
        QCOMPARE(ready.result(), int(QDialog::Accepted));
        QCOMPARE(ready.chosenMode(), std::optional<RestoreMode>(RestoreMode::addMissing));

        BackupRestoreDialog older(previewWith(0, 4, true), QStringLiteral("b.json"));
        QCOMPARE(older.findChild<QLabel *>(QStringLiteral("statusTitle"))->text(), QStringLiteral("Backup prüfen"));
        QTest::mouseClick(older.primaryButton(), Qt::LeftButton);
        QCOMPARE(older.chosenMode(), std::optional<RestoreMode>(RestoreMode::addMissingAndUpdate));

        BackupRestoreDialog unchanged(previewWith(0, 0, true), QStringLiteral("b.json"));
        QCOMPARE(unchanged.findChild<QLabel *>(QStringLiteral("statusTitle"))->text(),
                 QStringLiteral("Keine Änderungen nötig"));
        QCOMPARE(unchanged.primaryButton()->text(), QStringLiteral("Sicherheitskopie erstellen"));
        unchanged.show();
        QTest::keyClick(&unchanged, Qt::Key_Escape);
        QCOMPARE(unchanged.chosenMode(), std::nullopt);
        if (const QString shots = qEnvironmentVariable("ODELEAF_SCREENSHOTS"); !shots.isEmpty())
            ready.grab().save(shots + QStringLiteral("/restore-sheet.png"));
    }
};

QTEST_MAIN(BackupActionsTest)
#include "tst_backupactions.moc"
