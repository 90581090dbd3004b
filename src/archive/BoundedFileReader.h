#pragma once

#include "archive/Result.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

// Reads a file handed in from outside (a backup, a CSV list, a text or a document) with
// a limit that holds while reading, whatever size the file claims: a device or a FIFO
// never gets to block or flood the program, it is refused before the first byte.
class BoundedFileReader {
    Q_DECLARE_TR_FUNCTIONS(BoundedFileReader)

public:
    // The whole file, or an error naming the file and the cause; a file larger than
    // maximumSize fails once that many bytes have been read.
    static Result<QByteArray> read(const QString &path, qint64 maximumSize);

    // "Keine normale Datei: %1" for a folder, FIFO, device or socket; checked without
    // opening anything that could block.
    static Result<void> checkRegularFile(const QString &path);
};
