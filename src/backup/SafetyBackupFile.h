#pragma once

#include "backup/SafetyBackupKind.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QString>

#include <optional>

// One file of the "Safety Backups" folder as the manager lists it.
struct SafetyBackupFile {
    Q_DECLARE_TR_FUNCTIONS(SafetyBackupFile)

public:
    QString path;
    QString fileName;
    SafetyBackupKind kind = SafetyBackupKind::other;
    // The local time in the file name; the modification time for a name without one.
    QDateTime createdAt;
    // Empty when the file cannot be read as a backup.
    std::optional<qint64> poemCount;
    qint64 bytes = 0;

    static SafetyBackupFile inspect(const QString &path);

    // The texts of the manager's columns and the command line's lines.
    QString createdText() const;
    QString poemCountText() const;
    QString sizeText() const;

    // "yyyy-MM-dd-HHmmss" just before ".json", read as local time.
    static std::optional<QDateTime> stampOf(const QString &fileName);
    // The header's poem count when the document is complete; otherwise the whole file is
    // decoded, so a count is never guessed from a damaged file.
    static std::optional<qint64> countPoems(const QString &path);
};
