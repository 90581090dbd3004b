#include "backup/BackupExporter.h"

#include "archive/ApplicationSupport.h"
#include "archive/AtomicFileWriter.h"
#include "backup/BackupEncoder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>

namespace {

Result<QString> ensureSafetyBackupFolder()
{
    const QString folder = BackupExporter::automaticBackupDirectory();
    if (auto ensured = AtomicFileWriter::ensurePrivateFolder(folder); !ensured)
        return ensured.error();
    return folder;
}

} // namespace

Result<void> BackupExporter::writeDocument(const Backup &backup, const QString &path)
{
    const QString fileName = QFileInfo(path).fileName();
    const auto failure = [&fileName](const QString &reason) {
        return Error{BackupExporter::tr("Die Datei „%1“ konnte nicht geschrieben werden: %2").arg(fileName, reason)};
    };
    const auto written = AtomicFileWriter::write(
        path, [&backup](QIODevice &device) -> Result<void> { return BackupEncoder::write(backup, device); });
    if (!written)
        return failure(written.errorMessage());
    return {};
}

Result<int> BackupExporter::writeBackup(const QList<PoemPtr> &poems, const QString &path, const QDateTime &now)
{
    const Backup backup = Backup::make(poems, now);
    if (auto written = writeDocument(backup, path); !written)
        return written.error();
    return int(backup.poems.size());
}

Result<QString> BackupExporter::writeAutomaticSafetyBackup(const QList<PoemPtr> &poems, const QString &prefix,
                                                           const QDateTime &now)
{
    const auto folder = ensureSafetyBackupFolder();
    if (!folder)
        return folder.error();
    const QString path = *folder + QLatin1Char('/') + safetyBackupFileName(prefix, now);
    if (auto written = writeDocument(Backup::make(poems, now), path); !written)
        return written.error();
    return path;
}

QString BackupExporter::automaticBackupDirectory()
{
    return ApplicationSupport::filePath(QStringLiteral("Safety Backups"));
}

QString BackupExporter::timestamp(const QDateTime &now)
{
    return QLocale(QLocale::German, QLocale::Germany).toString(now.toLocalTime(), QStringLiteral("yyyy-MM-dd-HHmmss"));
}

QString BackupExporter::cleanedPrefix(const QString &prefix)
{
    QStringList pieces;
    QString piece;
    // Code points, not UTF-16 units: a letter outside the basic plane stays one letter.
    for (const char32_t c : prefix.toUcs4()) {
        if (QChar::isLetterOrNumber(c) || QChar::isMark(c)) {
            piece += QString::fromUcs4(&c, 1);
            continue;
        }
        if (!piece.isEmpty())
            pieces.append(piece);
        piece.clear();
    }
    if (!piece.isEmpty())
        pieces.append(piece);
    return pieces.join(QLatin1Char('-')).toLower();
}

QString BackupExporter::safetyBackupFileName(const QString &prefix, const QDateTime &now)
{
    return cleanedPrefix(prefix) + QLatin1Char('-') + timestamp(now) + QStringLiteral(".json");
}

QString BackupExporter::manualBackupFileName(const QDateTime &now)
{
    return QStringLiteral("OdeLeaf-Backup-") +
           QLocale().toString(now.toLocalTime(), QStringLiteral("yyyy-MM-dd-HHmm")) + QStringLiteral(".json");
}
