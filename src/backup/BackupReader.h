#pragma once

#include "archive/Result.h"
#include "backup/Backup.h"
#include <QCoreApplication>

#include <QByteArrayView>

// Decodes a backup document. Strict where the format is: every required key, the strict
// date form, valid base64 and UUIDs, the JSON types. Lenient where it may be: app,
// schemaVersion and poemCount are not checked against expected values, unknown keys and
// null optional values are ignored. Any fault fails the whole document with one German
// message; nothing half-read is ever returned.
class BackupReader {
    Q_DECLARE_TR_FUNCTIONS(BackupReader)

public:
    static Result<Backup> read(const QString &path);
    static Result<Backup> decode(QByteArrayView bytes);
};
