#pragma once

#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <unistd.h>

// A small tmpfs of its own, for tests of full and read-only disks. Mounting needs root,
// as on the CI machines; elsewhere the tests that need it skip with a message.
class TmpfsMount {
public:
    explicit TmpfsMount(qint64 sizeBytes) : m_options(QStringLiteral("size=%1,mode=0755").arg(sizeBytes).toLatin1())
    {
        if (::geteuid() != 0 || !m_dir.isValid())
            return;
        m_mounted = ::mount("tmpfs", path().toLocal8Bit().constData(), "tmpfs", 0, m_options.constData()) == 0;
    }
    ~TmpfsMount()
    {
        if (m_mounted)
            ::umount2(path().toLocal8Bit().constData(), MNT_DETACH);
    }
    TmpfsMount(const TmpfsMount &) = delete;
    TmpfsMount &operator=(const TmpfsMount &) = delete;

    static const char *skipReason() { return "mounting a tmpfs needs root (as on CI)"; }
    bool isMounted() const { return m_mounted; }
    QString path() const { return m_dir.path(); }
    QString filePath(const QString &name) const { return m_dir.filePath(name); }

    bool remountReadOnly()
    {
        return ::mount(nullptr, path().toLocal8Bit().constData(), nullptr, MS_REMOUNT | MS_RDONLY,
                       m_options.constData()) == 0;
    }

    qint64 freeBytes() const
    {
        struct statvfs space {};
        if (::statvfs(path().toLocal8Bit().constData(), &space) != 0)
            return -1;
        return qint64(space.f_bavail) * qint64(space.f_frsize);
    }

    // Takes space with a filler file until `bytes` (a multiple of the page size) are free.
    bool leaveFree(qint64 bytes)
    {
        const qint64 take = freeBytes() - bytes;
        if (take < 0)
            return false;
        QFile filler(filePath(QStringLiteral("filler-%1").arg(++m_fillers)));
        if (!filler.open(QIODevice::WriteOnly))
            return false;
        const QByteArray chunk(4096, 'x');
        for (qint64 done = 0; done < take; done += chunk.size()) {
            if (filler.write(chunk.constData(), std::min<qint64>(chunk.size(), take - done)) < 0)
                return false;
        }
        return filler.flush() && freeBytes() == bytes;
    }

private:
    QTemporaryDir m_dir;
    QByteArray m_options;
    bool m_mounted = false;
    int m_fillers = 0;
};
