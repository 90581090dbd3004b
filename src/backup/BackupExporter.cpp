#include "backup/BackupExporter.h"

#include "archive/ApplicationSupport.h"
#include "backup/BackupEncoder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
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

Result<QString> ensureSafetyBackupFolder()
{
    const QString folder = BackupExporter::automaticBackupDirectory();
    if (QFileInfo(folder).isDir())
        return folder;
    if (!QDir().mkpath(folder))
        return Error{
            BackupExporter::tr("Der Ordner „%1“ konnte nicht angelegt werden.").arg(QDir::toNativeSeparators(folder))};
    QFile::setPermissions(folder, ownerOnlyFolder);
    return folder;
}

} // namespace

Result<void> BackupExporter::writeDocument(const Backup &backup, const QString &path)
{
    const QString fileName = QFileInfo(path).fileName();
    const auto failure = [&fileName](const QString &reason) {
        return Error{BackupExporter::tr("Die Datei „%1“ konnte nicht geschrieben werden: %2").arg(fileName, reason)};
    };
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return failure(file.errorString());
    // Restricted before the first byte: a backup holds every unpublished poem.
    if (!file.setPermissions(ownerOnlyFile)) {
        file.cancelWriting();
        return failure(file.errorString());
    }
    if (auto written = BackupEncoder::write(backup, file); !written) {
        file.cancelWriting();
        return failure(written.errorMessage());
    }
    if (!file.commit())
        return failure(file.errorString());
    syncFolder(QFileInfo(path).absolutePath());
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
