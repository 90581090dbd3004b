#pragma once

#include <QFile>

#include <functional>

// Resident-memory figures of this process, from /proc/self/status, in bytes.
inline qint64 statusValue(const char *field)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(field))
            return line.mid(qstrlen(field)).trimmed().split(' ').value(0).toLongLong() * 1024;
    }
    return 0;
}

// The resident peak while `work` runs, above what was resident before it.
inline qint64 peakExtraMemory(const std::function<void()> &work)
{
    QFile clearRefs(QStringLiteral("/proc/self/clear_refs"));
    if (clearRefs.open(QIODevice::WriteOnly))
        clearRefs.write("5"); // resets the peak to the current size
    clearRefs.close();
    const qint64 before = statusValue("VmRSS:");
    work();
    return statusValue("VmHWM:") - before;
}
