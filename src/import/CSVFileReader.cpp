#include "import/CSVFileReader.h"

#include <QFile>
#include <QFileInfo>

Result<QByteArray> CSVFileReader::read(const QString &path, qint64 limit)
{
    const QFileInfo info(path);
    if (!info.exists())
        return Error{tr("Datei nicht gefunden: %1").arg(info.fileName())};
    if (!info.isFile())
        return Error{tr("Keine gewöhnliche Datei: %1").arg(info.fileName())};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return Error{file.errorString()};
    const QString tooLarge = tr("Die Datei ist größer als %1 MB und wird nicht gelesen.").arg(limit / (1024 * 1024));
    // The size can change between the check and the read, so the limit holds while reading.
    if (file.size() > limit)
        return Error{tooLarge};
    QByteArray bytes;
    bytes.reserve(qsizetype(file.size()));
    char chunk[64 * 1024];
    for (;;) {
        const qint64 got = file.read(chunk, sizeof chunk);
        if (got < 0)
            return Error{file.errorString()};
        if (got == 0)
            break;
        if (bytes.size() + got > limit)
            return Error{tooLarge};
        bytes.append(chunk, qsizetype(got));
    }
    return bytes;
}
