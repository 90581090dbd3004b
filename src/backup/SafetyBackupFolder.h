#pragma once

#include "archive/Result.h"
#include "backup/SafetyBackupFile.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QList>

// The folder "Safety Backups": what it holds, newest first, and the retention rule that
// keeps it from growing without end. Only daily backups are ever deleted by the rule:
// those of the last 14 days all stay, older ones one per calendar month (the newest of
// that month). A backup written before a restore or an import stays until the poet
// deletes it.
class SafetyBackupFolder {
    Q_DECLARE_TR_FUNCTIONS(SafetyBackupFolder)

public:
    static constexpr int keptDays = 14;

    explicit SafetyBackupFolder(QString folder);
    // The program's own folder.
    static SafetyBackupFolder standard();

    const QString &path() const { return m_folder; }
    // Every backup file (*.json), newest first.
    QList<SafetyBackupFile> list() const;

    // The daily backups the rule lets go at `now` (local days).
    static QList<SafetyBackupFile> expired(const QList<SafetyBackupFile> &files, const QDateTime &now);
    // Deletes what expired() names; returns how many files went.
    Result<int> prune(const QDateTime &now) const;
    static Result<void> remove(const SafetyBackupFile &file);
    static QString prunedStatus(int removed);

private:
    QString m_folder;
};
