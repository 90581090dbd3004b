#include "archive/AtomicFileWriter.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include <cerrno>
#include <csignal>
#include <cstdio>
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

    int syncAndClose(const AtomicFileWriter::SystemSync &sync)
    {
        if (sync(m_descriptor) != 0)
            return errno != 0 ? errno : EIO;
        const int descriptor = std::exchange(m_descriptor, -1);
        return ::close(descriptor) == 0 ? 0 : errno;
    }

    int renameTo(const QByteArray &destination, bool replace)
    {
        if (replace ? ::rename(m_path.constData(), destination.constData()) != 0 : !placeWithoutReplacing(destination))
            return errno;
        m_renamed = true;
        return 0;
    }

private:
    // renameat2 where the file system has it, else a hard link, which never replaces either.
    bool placeWithoutReplacing(const QByteArray &destination)
    {
        if (::renameat2(AT_FDCWD, m_path.constData(), AT_FDCWD, destination.constData(), RENAME_NOREPLACE) == 0)
            return true;
        if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP)
            return false;
        if (::link(m_path.constData(), destination.constData()) != 0)
            return false;
        ::unlink(m_path.constData());
        return true;
    }

public:
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

// The kernel's protected_symlinks rule: in a sticky world-writable folder a link is
// followed only when it belongs to the one following it or to the folder's owner.
bool isForeignLinkInSharedFolder(const QString &path)
{
    struct stat link {};
    if (::lstat(QFile::encodeName(path).constData(), &link) != 0 || !S_ISLNK(link.st_mode))
        return false;
    struct stat folder {};
    if (::stat(QFile::encodeName(QFileInfo(path).absolutePath()).constData(), &folder) != 0)
        return false;
    const bool shared = (folder.st_mode & S_ISVTX) && (folder.st_mode & S_IWOTH);
    return shared && link.st_uid != ::geteuid() && link.st_uid != folder.st_uid;
}

// "<prefix><pid>-" then six random characters.
std::optional<pid_t> writerOf(const QString &fileName)
{
    const QString prefix = AtomicFileWriter::temporaryPrefix();
    if (!fileName.startsWith(prefix))
        return std::nullopt;
    const QStringView rest = QStringView(fileName).mid(prefix.size());
    const qsizetype dash = rest.indexOf(QLatin1Char('-'));
    if (dash <= 0 || rest.size() - dash - 1 != 6)
        return std::nullopt;
    bool ok = false;
    const qint64 pid = rest.left(dash).toLongLong(&ok);
    if (!ok || pid <= 0)
        return std::nullopt;
    return pid_t(pid);
}

bool isRunning(pid_t pid)
{
    return ::kill(pid, 0) == 0 || errno != ESRCH;
}

Result<bool> writeFile(const QString &path, const AtomicFileWriter::Producer &produce,
                       const AtomicFileWriter::SystemCalls &calls, bool replace)
{
    if (auto checked = AtomicFileWriter::checkDestination(path); !checked)
        return checked.error();
    const QString destination = resolvedDestination(path);
    const QFileInfo info(destination);
    // Independent of the destination's name, so a name of 255 bytes still has a temporary file.
    TemporaryFile temporary(QFile::encodeName(info.absolutePath() + QLatin1Char('/') +
                                              AtomicFileWriter::temporaryPrefix() + QString::number(::getpid()) +
                                              QStringLiteral("-XXXXXX")));
    if (temporary.create() < 0)
        return Error{AtomicFileWriter::describeSystemError(errno)};

    DescriptorDevice device(temporary.descriptor(), calls.write);
    const auto produced = produce(device);
    // The device's cause is the real one; the producer only saw that a write failed.
    if (device.failure() || !device.drain())
        return Error{AtomicFileWriter::describeSystemError(device.failure())};
    if (!produced)
        return produced.error();
    if (const int error = temporary.syncAndClose(calls.sync))
        return Error{AtomicFileWriter::describeSystemError(error)};
    if (const int error = temporary.renameTo(QFile::encodeName(destination), replace)) {
        if (error == EEXIST && !replace)
            return false;
        return Error{AtomicFileWriter::describeSystemError(error)};
    }
    syncFolder(info.absolutePath());
    return true;
}

} // namespace

AtomicFileWriter::SystemCalls::SystemCalls() : SystemCalls(systemWrite)
{
}

AtomicFileWriter::SystemCalls::SystemCalls(SystemWrite write, SystemSync sync)
    : write(std::move(write)), sync(sync ? std::move(sync) : SystemSync(::fsync))
{
}

QString AtomicFileWriter::temporaryPrefix()
{
    return QStringLiteral(".odeleaf-tmp-");
}

int AtomicFileWriter::removeStaleTemporaryFiles(const QStringList &folders)
{
    int removed = 0;
    for (const QString &folder : folders) {
        QDirIterator entries(folder, {temporaryPrefix() + QLatin1Char('*')}, QDir::Files | QDir::Hidden);
        while (entries.hasNext()) {
            const QFileInfo entry = entries.nextFileInfo();
            const auto writer = writerOf(entry.fileName());
            // Another user's leftovers in a shared folder are theirs to remove.
            if (!writer || isRunning(*writer) || entry.isSymLink() || entry.ownerId() != ::geteuid())
                continue;
            if (QFile::remove(entry.absoluteFilePath()))
                ++removed;
        }
    }
    return removed;
}

Result<void> AtomicFileWriter::write(const QString &path, const Producer &produce)
{
    return write(path, produce, SystemCalls());
}

Result<void> AtomicFileWriter::write(const QString &path, const QByteArray &bytes)
{
    return write(path, [&bytes](QIODevice &device) -> Result<void> {
        if (device.write(bytes) != bytes.size())
            return Error{device.errorString()};
        return {};
    });
}

Result<void> AtomicFileWriter::write(const QString &path, const Producer &produce, const SystemCalls &calls)
{
    if (auto written = writeFile(path, produce, calls, true); !written)
        return written.error();
    return {};
}

Result<bool> AtomicFileWriter::writeNew(const QString &path, const Producer &produce)
{
    if (QFileInfo(path).isSymLink() || QFileInfo::exists(path))
        return false;
    return writeFile(path, produce, SystemCalls(), false);
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
    if (isForeignLinkInSharedFolder(path))
        return Error{tr("Die Datei „%1“ ist eine Verknüpfung eines anderen Benutzers in einem gemeinsam genutzten "
                        "Ordner und wird nicht überschrieben.")
                         .arg(QDir::toNativeSeparators(path))};
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
