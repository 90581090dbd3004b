#include "archive/BoundedFileReader.h"

#include "archive/AtomicFileWriter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qint64 chunkSize = qint64(1) << 20;

class Descriptor {
public:
    explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
    ~Descriptor()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    int get() const { return m_descriptor; }

private:
    int m_descriptor;
};

QString notRegularText(const QString &path)
{
    return BoundedFileReader::tr("Keine normale Datei: %1").arg(QDir::toNativeSeparators(path));
}

Error openFailure(const QString &path, int error)
{
    const QString name = QFileInfo(path).fileName();
    if (error == ENOENT)
        return Error{BoundedFileReader::tr("Die Datei „%1“ wurde nicht gefunden.").arg(name)};
    return Error{BoundedFileReader::tr("Die Datei „%1“ konnte nicht geöffnet werden: %2")
                     .arg(name, AtomicFileWriter::describeSystemError(error))};
}

} // namespace

Result<QByteArray> BoundedFileReader::read(const QString &path, qint64 maximumSize)
{
    // Non-blocking, so opening a FIFO without a writer returns at once; its type then refuses it.
    Descriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    if (file.get() < 0)
        return openFailure(path, errno);
    struct stat status {};
    if (::fstat(file.get(), &status) != 0)
        return openFailure(path, errno);
    if (!S_ISREG(status.st_mode))
        return Error{notRegularText(path)};

    const QString name = QFileInfo(path).fileName();
    const auto tooLarge = [&name, maximumSize] {
        const qint64 megabytes = (maximumSize + (1 << 20) - 1) >> 20;
        return Error{BoundedFileReader::tr("Die Datei „%1“ ist zu groß (über %2 MB).").arg(name).arg(megabytes)};
    };
    if (status.st_size > maximumSize)
        return tooLarge();
    // The reported size is only a hint: a file that grows while it is read still stops at the limit.
    QByteArray bytes;
    bytes.reserve(qsizetype(std::min<qint64>(status.st_size, maximumSize) + 1));
    for (;;) {
        const qint64 room = std::min(chunkSize, maximumSize + 1 - qint64(bytes.size()));
        const qsizetype before = bytes.size();
        bytes.resize(before + qsizetype(room));
        const ssize_t got = ::read(file.get(), bytes.data() + before, size_t(room));
        if (got < 0 && errno == EINTR) {
            bytes.resize(before);
            continue;
        }
        if (got < 0) {
            const int error = errno;
            return Error{BoundedFileReader::tr("Die Datei „%1“ konnte nicht gelesen werden: %2")
                             .arg(name, AtomicFileWriter::describeSystemError(error))};
        }
        bytes.resize(before + qsizetype(got));
        if (bytes.size() > maximumSize)
            return tooLarge();
        if (got == 0)
            return bytes;
    }
}

Result<void> BoundedFileReader::checkRegularFile(const QString &path)
{
    struct stat status {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return openFailure(path, errno);
    if (!S_ISREG(status.st_mode))
        return Error{notRegularText(path)};
    return {};
}
