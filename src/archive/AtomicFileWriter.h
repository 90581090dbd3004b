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
    // write(2) and fsync(2) as the writer calls them; tests put a failing disk in their place.
    using SystemWrite = std::function<ssize_t(int descriptor, const char *data, size_t size)>;
    using SystemSync = std::function<int(int descriptor)>;
    struct SystemCalls {
        SystemCalls();
        SystemCalls(SystemWrite write, SystemSync sync = {});
        SystemWrite write;
        SystemSync sync;
    };

    static Result<void> write(const QString &path, const Producer &produce);
    static Result<void> write(const QString &path, const QByteArray &bytes);
    static Result<void> write(const QString &path, const Producer &produce, const SystemCalls &calls);
    // Never replaces a file: false, with nothing written, when the name is taken already
    // (also by another process at the same moment).
    static Result<bool> writeNew(const QString &path, const Producer &produce);

    // Temporary files start with this and carry the writer's process id, so a later start
    // can tell its own leftovers of a killed run from a write under way.
    static QString temporaryPrefix();
    // Removes temporary files of writers no longer running from these folders (not below
    // them); returns how many went.
    static int removeStaleTemporaryFiles(const QStringList &folders);

    // Creates the folder (and its parents) if needed; a folder it creates is private (0700).
    static Result<void> ensurePrivateFolder(const QString &folder);

    // Refuses a destination that exists but is no regular file (a folder, FIFO or device):
    // replacing it would destroy it, writing into it would never give a file. Refuses a
    // link that another user planted in a shared sticky folder (/tmp), as the kernel's
    // protected_symlinks rule does: following it would replace a file of the link's choice.
    static Result<void> checkDestination(const QString &path);

    // The German cause for an errno value, as the status line shows it.
    static QString describeSystemError(int error);
};
