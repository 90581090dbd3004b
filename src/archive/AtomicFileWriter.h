#pragma once

#include "archive/Result.h"

#include <QCoreApplication>
#include <QIODevice>
#include <QString>

#include <sys/types.h>

#include <functional>

// The one way the program writes a file: into a temporary file beside the destination,
// readable by its owner only, that replaces the destination only once every byte is
// written, flushed and synced. A failure leaves the older file as it was and no
// temporary file behind; the error text names the cause.
class AtomicFileWriter {
    Q_DECLARE_TR_FUNCTIONS(AtomicFileWriter)

public:
    using Producer = std::function<Result<void>(QIODevice &)>;
    // write(2) as the writer calls it; tests put a failing disk in its place.
    using SystemWrite = std::function<ssize_t(int descriptor, const char *data, size_t size)>;

    static Result<void> write(const QString &path, const Producer &produce);
    static Result<void> write(const QString &path, const QByteArray &bytes);
    static Result<void> write(const QString &path, const Producer &produce, const SystemWrite &systemWrite);

    // Creates the folder (and its parents) if needed; a folder it creates is private (0700).
    static Result<void> ensurePrivateFolder(const QString &folder);

    // Refuses a destination that exists but is no regular file (a folder, FIFO or device):
    // replacing it would destroy it, writing into it would never give a file.
    static Result<void> checkDestination(const QString &path);

    // The German cause for an errno value, as the status line shows it.
    static QString describeSystemError(int error);
};
