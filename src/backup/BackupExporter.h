#pragma once

#include "archive/Poem.h"
#include "archive/Result.h"
#include "backup/Backup.h"
#include <QCoreApplication>

#include <QDateTime>
#include <QList>
#include <QString>

// Writes backup documents: the manual backup to a file the user chose, and the safety
// backups that every operation rewriting many poems writes first. Every file is written
// to a temporary file that replaces the destination only when it is complete, and is
// readable by its owner only.
class BackupExporter {
    Q_DECLARE_TR_FUNCTIONS(BackupExporter)

public:
    // Returns the number of poems written.
    static Result<int> writeBackup(const QList<PoemPtr> &poems, const QString &path,
                                   const QDateTime &now = QDateTime::currentDateTime());
    static Result<void> writeDocument(const Backup &backup, const QString &path);

    // Into automaticBackupDirectory(), named after the prefix and the time; returns the path.
    static Result<QString> writeAutomaticSafetyBackup(const QList<PoemPtr> &poems, const QString &prefix,
                                                      const QDateTime &now = QDateTime::currentDateTime());
    static QString automaticBackupDirectory();

    // Local time as "yyyy-MM-dd-HHmmss", fixed to German conventions.
    static QString timestamp(const QDateTime &now);
    // The prefix split at everything but letters and digits, joined with "-", lower-cased.
    static QString cleanedPrefix(const QString &prefix);
    static QString safetyBackupFileName(const QString &prefix, const QDateTime &now);
    // The name the save dialog proposes: local "yyyy-MM-dd-HHmm" in the user's locale.
    static QString manualBackupFileName(const QDateTime &now);
};
