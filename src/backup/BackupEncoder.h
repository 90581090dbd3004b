#pragma once

#include "archive/Result.h"
#include "backup/Backup.h"
#include <QCoreApplication>

#include <QByteArray>

class QIODevice;

// Writes a backup document in the archive's JSON encoding without building a JSON tree:
// the keys are emitted in their sorted order directly, so the bytes equal those of
// ArchiveJson::encode for the same document while memory stays at one small buffer.
class BackupEncoder {
    Q_DECLARE_TR_FUNCTIONS(BackupEncoder)

public:
    static QByteArray encode(const Backup &backup);
    // Streams the document into the device; fails with the device's error.
    static Result<void> write(const Backup &backup, QIODevice &device);
};
