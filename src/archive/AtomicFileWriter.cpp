#include "archive/AtomicFileWriter.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qsizetype bufferSize = qsizetype(1) << 16;

// Small writes are gathered; every hand-over to the system is checked, so a disk that
// fills up during the last block is noticed before anything is renamed.
class DescriptorDevice : public QIODevice {
public:
    DescriptorDevice(int descriptor, const AtomicFileWriter::SystemWrite &systemWrite)
        : m_descriptor(descriptor), m_systemWrite(systemWrite)
    {
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }

    bool isSequential() const override { return true; }

    bool drain()
    {
        qsizetype done = 0;
        while (!m_failure && done < m_buffer.size()) {
            const ssize_t written =
                m_systemWrite(m_descriptor, m_buffer.constData() + done, size_t(m_buffer.size() - done));
            if (written < 0 && errno == EINTR)
                continue;
            // A write that takes nothing would loop forever; a full device is the usual reason.
            if (written <= 0)
                fail(written < 0 ? errno : ENOSPC);
            else
                done += written;
        }
        m_buffer.clear();
        return !m_failure;
    }

    int failure() const { return m_failure; }

protected:
    qint64 readData(char *, qint64) override { return -1; }

    qint64 writeData(const char *data, qint64 size) override
    {
        if (m_failure)
            return -1;
        m_buffer.append(data, size);
        if (m_buffer.size() >= bufferSize && !drain())
            return -1;
        return size;
    }

private:
    void fail(int error)
    {
        m_failure = error;
        setErrorString(AtomicFileWriter::describeSystemError(error));
    }

    int m_descriptor;
    const AtomicFileWriter::SystemWrite &m_systemWrite;
    QByteArray m_buffer;
    int m_failure = 0;
};

// Owns the temporary file until it has become the destination.
class TemporaryFile {
public:
    explicit TemporaryFile(QByteArray path) : m_path(std::move(path)) {}
    ~TemporaryFile()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
        if (!m_renamed)
            ::unlink(m_path.constData());
    }
    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;

    // mkostemp creates the file for its owner only, before the first byte is written.
    int create()
    {
        m_descriptor = ::mkostemp(m_path.data(), O_CLOEXEC);
        if (m_descriptor < 0)
            m_renamed = true; // nothing to remove
        return m_descriptor;
    }
    int descriptor() const { return m_descriptor; }

    int syncAndClose()
    {
        if (::fsync(m_descriptor) != 0)
            return errno;
        const int descriptor = std::exchange(m_descriptor, -1);
        return ::close(descriptor) == 0 ? 0 : errno;
    }

    int renameTo(const QByteArray &destination)
    {
        if (::rename(m_path.constData(), destination.constData()) != 0)
            return errno;
        m_renamed = true;
        return 0;
    }

private:
    QByteArray m_path;
    int m_descriptor = -1;
    bool m_renamed = false;
};

// The rename is durable only once the folder's entry is on disk as well.
void syncFolder(const QString &folder)
{
    const int descriptor = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
}

// A link to a file is followed, so the link stays and the file it names is replaced.
QString resolvedDestination(const QString &path)
{
    const QFileInfo info(path);
    if (info.isSymLink() && info.exists())
        return info.canonicalFilePath();
    return info.absoluteFilePath();
}

ssize_t systemWrite(int descriptor, const char *data, size_t size)
{
    return ::write(descriptor, data, size);
}

} // namespace

Result<void> AtomicFileWriter::write(const QString &path, const Producer &produce)
{
    return write(path, produce, systemWrite);
}

Result<void> AtomicFileWriter::write(const QString &path, const QByteArray &bytes)
{
    return write(path, [&bytes](QIODevice &device) -> Result<void> {
        if (device.write(bytes) != bytes.size())
            return Error{device.errorString()};
        return {};
    });
}

Result<void> AtomicFileWriter::write(const QString &path, const Producer &produce, const SystemWrite &systemWrite)
{
    if (auto checked = checkDestination(path); !checked)
        return checked;
    const QString destination = resolvedDestination(path);
    const QFileInfo info(destination);
    TemporaryFile temporary(
        QFile::encodeName(info.absolutePath() + QStringLiteral("/.") + info.fileName() + QStringLiteral(".XXXXXX")));
    if (temporary.create() < 0)
        return Error{describeSystemError(errno)};

    DescriptorDevice device(temporary.descriptor(), systemWrite);
    const auto produced = produce(device);
    // The device's cause is the real one; the producer only saw that a write failed.
    if (device.failure() || !device.drain())
        return Error{describeSystemError(device.failure())};
    if (!produced)
        return produced.error();
    if (const int error = temporary.syncAndClose())
        return Error{describeSystemError(error)};
    if (const int error = temporary.renameTo(QFile::encodeName(destination)))
        return Error{describeSystemError(error)};
    syncFolder(info.absolutePath());
    return {};
}

Result<void> AtomicFileWriter::ensurePrivateFolder(const QString &folder)
{
    const QString absolute = QDir(folder).absolutePath();
    const auto failure = [&absolute](int error) {
        return Error{tr("Der Ordner „%1“ konnte nicht angelegt werden: %2")
                         .arg(QDir::toNativeSeparators(absolute), describeSystemError(error))};
    };
    QStringList missing;
    for (QString level = absolute; !QFileInfo::exists(level); level = QFileInfo(level).path())
        missing.prepend(level);
    for (const QString &level : std::as_const(missing)) {
        if (::mkdir(QFile::encodeName(level).constData(), S_IRWXU) != 0 && errno != EEXIST)
            return failure(errno);
    }
    if (!QFileInfo(absolute).isDir())
        return failure(ENOTDIR);
    return {};
}

Result<void> AtomicFileWriter::checkDestination(const QString &path)
{
    struct stat status {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return {}; // absent, or out of reach: creating it will tell why
    if (!S_ISREG(status.st_mode))
        return Error{tr("Keine normale Datei: %1").arg(QDir::toNativeSeparators(path))};
    return {};
}

QString AtomicFileWriter::describeSystemError(int error)
{
    switch (error) {
    case ENOSPC:
    case EDQUOT:
        return tr("Nicht genug Speicherplatz");
    case EROFS:
        return tr("Das Dateisystem ist schreibgeschützt");
    case EACCES:
    case EPERM:
        return tr("Zugriff verweigert");
    case ENOENT:
    case ENOTDIR:
        return tr("Der Ordner existiert nicht");
    case EIO:
        return tr("Ein-/Ausgabefehler des Datenträgers");
    case EFBIG:
        return tr("Die Datei ist zu groß für das Dateisystem");
    case ENAMETOOLONG:
        return tr("Der Dateiname ist zu lang");
    default:
        return QString::fromLocal8Bit(std::strerror(error));
    }
}
