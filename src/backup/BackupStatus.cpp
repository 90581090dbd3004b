#include "backup/BackupStatus.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace {

QString fileName(const QString &path)
{
    return QFileInfo(path).fileName();
}

} // namespace

QString BackupStatus::backupCreated(int poemCount, const QString &path)
{
    // German has no plural translation loaded: the form is chosen here, and English has both.
    return (poemCount == 1 ? tr("Sicherung erstellt: %n Gedicht gespeichert. Datei: %1", nullptr, poemCount)
                           : tr("Sicherung erstellt: %n Gedichte gespeichert. Datei: %1", nullptr, poemCount))
        .arg(fileName(path));
}

QString BackupStatus::backupFailed(const QString &reason)
{
    return tr("Sicherung konnte nicht erstellt werden: %1").arg(reason);
}

QString BackupStatus::backupCancelled()
{
    return tr("Backup abgebrochen.");
}

QString BackupStatus::restoreCancelled()
{
    return tr("Backup-Wiederherstellung abgebrochen.");
}

QString BackupStatus::backupUnreadable(const QString &reason)
{
    return tr("Backup konnte nicht gelesen werden: %1").arg(reason);
}

QString BackupStatus::restoreFinished(int created, int updated, const QString &safetyBackupPath)
{
    return tr("Wiederherstellung abgeschlossen: %1 neu ergänzt, %2 aktualisiert. Sicherheitskopie: %3")
        .arg(created)
        .arg(updated)
        .arg(fileName(safetyBackupPath));
}

QString BackupStatus::restoreAborted(const QString &reason)
{
    return tr("Wiederherstellung abgebrochen: Die Sicherheitskopie oder das Einspielen ist fehlgeschlagen (%1)")
        .arg(reason);
}

QString BackupStatus::dailyBackupCreated(int poemCount, const QString &path)
{
    return (poemCount == 1
                ? tr("Automatische Tagessicherung erstellt: %n Gedicht gespeichert. Datei: %1", nullptr, poemCount)
                : tr("Automatische Tagessicherung erstellt: %n Gedichte gespeichert. Datei: %1", nullptr, poemCount))
        .arg(fileName(path));
}

QString BackupStatus::dailyBackupFailed(const QString &reason)
{
    return tr("Automatische Tagessicherung fehlgeschlagen: %1").arg(reason);
}
