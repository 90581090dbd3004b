#pragma once

#include <QCoreApplication>
#include <QString>

// The status lines of backup, restore and the daily backup, as the main window and the
// command line show them. File names are shown without their folder.
class BackupStatus {
    Q_DECLARE_TR_FUNCTIONS(BackupStatus)

public:
    static QString backupCreated(int poemCount, const QString &path);
    static QString backupFailed(const QString &reason);
    static QString backupCancelled();

    static QString restoreCancelled();
    static QString backupUnreadable(const QString &reason);
    static QString restoreFinished(int created, int updated, const QString &safetyBackupPath);
    static QString restoreAborted(const QString &reason);

    static QString dailyBackupCreated(int poemCount, const QString &path);
    static QString dailyBackupFailed(const QString &reason);
};
