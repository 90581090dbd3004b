#include "backup/BackupExporter.h"

#include "archive/ApplicationSupport.h"
#include "archive/AtomicFileWriter.h"
#include "backup/BackupEncoder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QThread>

namespace {

// Operations a second apart each find their own name long before this.
constexpr int maximumNameAttempts = 30;

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
    const auto backup = Backup::make(poems, now);
    if (!backup)
        return backup.error();
    if (auto written = writeDocument(*backup, path); !written)
        return written.error();
    return int(backup->poems.size());
}

Result<QString> BackupExporter::writeAutomaticSafetyBackup(const QList<PoemPtr> &poems, const QString &prefix,
                                                           const QDateTime &now)
{
    const auto folder = ensureSafetyBackupFolder();
    if (!folder)
        return folder.error();
    const auto backup = Backup::make(poems, now);
    if (!backup)
        return backup.error();
    const auto encode = [&backup](QIODevice &device) { return BackupEncoder::write(*backup, device); };
    // Each operation keeps its own copy: when an earlier one of the same second holds
    // the name, this one takes the next second, and waits for it so that the name tells
    // no time that has not come yet.
    QDateTime stamp = now;
    for (int attempt = 0; attempt < maximumNameAttempts; ++attempt) {
        const QString name = safetyBackupFileName(prefix, stamp);
        const QString path = *folder + QLatin1Char('/') + name;
        const auto written = AtomicFileWriter::writeNew(path, encode);
        if (!written)
            return Error{tr("Die Datei „%1“ konnte nicht geschrieben werden: %2").arg(name, written.errorMessage())};
        if (*written)
            return path;
        stamp = stamp.addSecs(1);
        const qint64 early = QDateTime::currentDateTime().msecsTo(stamp);
        if (early > 0)
            QThread::msleep(qMin<qint64>(early, 1000));
    }
    return Error{tr("Das Sicherheitsbackup konnte nicht angelegt werden: Ab „%1“ sind alle Namen vergeben.")
                     .arg(safetyBackupFileName(prefix, now))};
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
