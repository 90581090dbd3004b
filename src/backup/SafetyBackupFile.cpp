#include "backup/SafetyBackupFile.h"

#include "backup/BackupReader.h"
#include "backup/JsonCursor.h"

#include <QFile>
#include <QFileInfo>
#include <QLocale>

#include <cmath>

namespace {

// The writer puts the count before the poems, well inside the first kilobytes.
constexpr qint64 headerSize = 64 * 1024;
constexpr qint64 tailSize = 256;

std::optional<qint64> headerCount(QByteArrayView head)
{
    JsonCursor cursor(head);
    if (!cursor.enterObject())
        return std::nullopt;
    QByteArrayView key;
    while (cursor.nextMember(key)) {
        if (key == "poems")
            return std::nullopt;
        if (key != "poemCount") {
            if (!cursor.skipValue())
                return std::nullopt;
            continue;
        }
        double count = 0;
        if (cursor.peek() != JsonCursor::Kind::number || !cursor.readNumber(count))
            return std::nullopt;
        if (count < 0 || count != std::trunc(count))
            return std::nullopt;
        return qint64(count);
    }
    return std::nullopt;
}

// A document cut short (a full disk, a copy that broke off) does not end in "}".
bool endsComplete(QFile &file)
{
    if (!file.seek(qMax<qint64>(0, file.size() - tailSize)))
        return false;
    return file.read(tailSize).trimmed().endsWith('}');
}

} // namespace

std::optional<QDateTime> SafetyBackupFile::stampOf(const QString &fileName)
{
    static const QLatin1String suffix(".json");
    constexpr qsizetype stampLength = 17;
    if (!fileName.endsWith(suffix) || fileName.size() < stampLength + suffix.size())
        return std::nullopt;
    const QString stamp = fileName.sliced(fileName.size() - suffix.size() - stampLength, stampLength);
    const QDateTime time = QDateTime::fromString(stamp, QStringLiteral("yyyy-MM-dd-HHmmss"));
    if (!time.isValid())
        return std::nullopt;
    return time;
}

std::optional<qint64> SafetyBackupFile::countPoems(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray head = file.read(headerSize);
    if (const auto count = headerCount(head); count && endsComplete(file))
        return count;
    file.close();
    const auto backup = BackupReader::read(path);
    if (!backup)
        return std::nullopt;
    return qint64(backup->poems.size());
}

SafetyBackupFile SafetyBackupFile::inspect(const QString &path)
{
    const QFileInfo info(path);
    SafetyBackupFile file;
    file.path = info.absoluteFilePath();
    file.fileName = info.fileName();
    file.kind = safetyBackupKindOf(file.fileName);
    file.createdAt = stampOf(file.fileName).value_or(info.lastModified());
    file.bytes = info.size();
    file.poemCount = countPoems(path);
    return file;
}

QString SafetyBackupFile::createdText() const
{
    return createdAt.toLocalTime().toString(tr("dd.MM.yyyy HH:mm"));
}

QString SafetyBackupFile::poemCountText() const
{
    if (!poemCount)
        return tr("unlesbar");
    if (*poemCount == 1)
        return tr("1 Gedicht");
    return tr("%1 Gedichte").arg(*poemCount);
}

QString SafetyBackupFile::sizeText() const
{
    return QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeTraditionalFormat);
}
