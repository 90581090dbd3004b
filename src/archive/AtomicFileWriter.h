#pragma once

#include "archive/Result.h"

#include <QCoreApplication>
#include <QIODevice>
#include <QString>

#include <functional>

// The one way the program writes a file: into a temporary file beside the destination,
// readable by its owner only, that replaces the destination only once every byte is
// written, flushed and synced. A failure leaves the older file as it was and no
// temporary file behind; the error text names the cause.
class AtomicFileWriter {
    Q_DECLARE_TR_FUNCTIONS(AtomicFileWriter)

public:
    using Producer = std::function<Result<void>(QIODevice &)>;

    static Result<void> write(const QString &path, const Producer &produce);
    static Result<void> write(const QString &path, const QByteArray &bytes);

    // Creates the folder (and its parents) if needed; a folder it creates is private (0700).
    static Result<void> ensurePrivateFolder(const QString &folder);
};
