#include "backup/SafetyBackupFolder.h"

#include "backup/BackupExporter.h"

#include <QDir>
#include <QFile>
#include <QSet>

#include <algorithm>

SafetyBackupFolder::SafetyBackupFolder(QString folder) : m_folder(std::move(folder))
{
}

SafetyBackupFolder SafetyBackupFolder::standard()
{
    return SafetyBackupFolder(BackupExporter::automaticBackupDirectory());
}

QList<SafetyBackupFile> SafetyBackupFolder::list() const
{
    QList<SafetyBackupFile> files;
    const QDir folder(m_folder);
    for (const QString &name : folder.entryList({QStringLiteral("*.json")}, QDir::Files))
        files.append(SafetyBackupFile::inspect(folder.filePath(name)));
    std::sort(files.begin(), files.end(), [](const SafetyBackupFile &a, const SafetyBackupFile &b) {
        if (a.createdAt != b.createdAt)
            return a.createdAt > b.createdAt;
        return a.fileName > b.fileName;
    });
    return files;
}

QList<SafetyBackupFile> SafetyBackupFolder::expired(const QList<SafetyBackupFile> &files, const QDateTime &now)
{
    QList<SafetyBackupFile> daily;
    std::copy_if(files.begin(), files.end(), std::back_inserter(daily),
                 [](const SafetyBackupFile &file) { return file.kind == SafetyBackupKind::daily; });
    std::sort(daily.begin(), daily.end(),
              [](const SafetyBackupFile &a, const SafetyBackupFile &b) { return a.createdAt > b.createdAt; });
    const QDate firstKeptDay = now.toLocalTime().date().addDays(-(keptDays - 1));
    QSet<int> monthsKept;
    QList<SafetyBackupFile> gone;
    for (const SafetyBackupFile &file : daily) {
        const QDate day = file.createdAt.toLocalTime().date();
        if (day >= firstKeptDay)
            continue;
        // Newest first: the first one met in a month is the one that stays.
        const int month = day.year() * 12 + day.month();
        if (!monthsKept.contains(month)) {
            monthsKept.insert(month);
            continue;
        }
        gone.append(file);
    }
    return gone;
}

Result<int> SafetyBackupFolder::prune(const QDateTime &now) const
{
    int removed = 0;
    for (const SafetyBackupFile &file : expired(list(), now)) {
        if (auto done = remove(file); !done)
            return done.error();
        ++removed;
    }
    return removed;
}

Result<void> SafetyBackupFolder::remove(const SafetyBackupFile &file)
{
    QFile handle(file.path);
    if (!handle.remove())
        return Error{tr("Die Datei „%1“ konnte nicht gelöscht werden: %2").arg(file.fileName, handle.errorString())};
    return {};
}

QString SafetyBackupFolder::prunedStatus(int removed)
{
    if (removed == 1)
        return tr("1 Sicherheitsbackup entfernt.");
    return tr("%1 Sicherheitsbackups entfernt.").arg(removed);
}
