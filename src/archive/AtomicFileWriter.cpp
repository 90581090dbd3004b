#include "archive/AtomicFileWriter.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr QFileDevice::Permissions ownerOnlyFile = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
constexpr QFileDevice::Permissions ownerOnlyFolder =
    QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner;

// The rename is durable only once the folder's entry is on disk as well.
void syncFolder(const QString &folder)
{
    const int descriptor = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
}

} // namespace

Result<void> AtomicFileWriter::write(const QString &path, const Producer &produce)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return Error{file.errorString()};
    // Restricted before the first byte: what the program writes holds unpublished poems.
    if (!file.setPermissions(ownerOnlyFile)) {
        file.cancelWriting();
        return Error{file.errorString()};
    }
    if (auto produced = produce(file); !produced) {
        file.cancelWriting();
        return produced.error();
    }
    if (!file.commit())
        return Error{file.errorString()};
    syncFolder(QFileInfo(path).absolutePath());
    return {};
}

Result<void> AtomicFileWriter::write(const QString &path, const QByteArray &bytes)
{
    return write(path, [&bytes](QIODevice &device) -> Result<void> {
        if (device.write(bytes) != bytes.size())
            return Error{device.errorString()};
        return {};
    });
}

Result<void> AtomicFileWriter::ensurePrivateFolder(const QString &folder)
{
    if (QFileInfo(folder).isDir())
        return {};
    if (!QDir().mkpath(folder))
        return Error{tr("Der Ordner „%1“ konnte nicht angelegt werden.").arg(QDir::toNativeSeparators(folder))};
    QFile::setPermissions(folder, ownerOnlyFolder);
    return {};
}
