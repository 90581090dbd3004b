#include "backup/DailyBackup.h"

#include "archive/AppPreferences.h"
#include "archive/ArchiveContext.h"
#include "backup/BackupExporter.h"
#include "backup/BackupStatus.h"
#include "backup/SafetyBackupFolder.h"

#include <QLocale>
#include <QtDebug>

DailyBackup::Outcome DailyBackup::runDailyAutomaticBackupIfNeeded(ArchiveContext &context, const QDateTime &now)
{
    Outcome outcome;
    if (!AppPreferences::automaticDailyBackupEnabled())
        return outcome;
    const QString today = automaticBackupDayString(now);
    if (AppPreferences::lastAutomaticBackupDay() == today) {
        outcome.status = Status::alreadyDone;
        return outcome;
    }
    const QList<PoemPtr> poems = context.fetch();
    if (poems.isEmpty()) {
        outcome.status = Status::emptyArchive;
        return outcome;
    }
    const auto written = BackupExporter::writeAutomaticSafetyBackup(poems, QStringLiteral("daily"), now);
    if (!written) {
        outcome.status = Status::failed;
        outcome.statusLine = BackupStatus::dailyBackupFailed(written.errorMessage());
        return outcome;
    }
    // Without the day stored the backup runs again at the next start: say so.
    const auto dayStored = AppPreferences::setLastAutomaticBackupDay(today);
    // Only now, with today's copy safe, may older daily copies go.
    if (auto pruned = SafetyBackupFolder::standard().prune(now); !pruned)
        qWarning().noquote() << pruned.errorMessage();
    outcome.status = Status::written;
    outcome.path = *written;
    outcome.poemCount = int(poems.size());
    outcome.statusLine = BackupStatus::dailyBackupCreated(outcome.poemCount, outcome.path);
    if (!dayStored)
        outcome.statusLine += QLatin1Char(' ') + dayStored.errorMessage();
    return outcome;
}

QString DailyBackup::automaticBackupDayString(const QDateTime &now)
{
    return QLocale().toString(now.toLocalTime().date(), QStringLiteral("yyyy-MM-dd"));
}
