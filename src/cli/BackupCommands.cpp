#include "archive/ArchiveContext.h"
#include "backup/ArchiveJson.h"
#include "backup/BackupExporter.h"
#include "backup/BackupStatus.h"
#include "backup/DailyBackup.h"
#include "backup/RestorePlanner.h"
#include "backup/SafetyBackupFolder.h"
#include "cli/CliCommand.h"
#include "cli/CliInvocation.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

int runBackup(CliInvocation &cli)
{
    ArchiveContext *context = cli.archiveAfterOptions(1, 1);
    if (!context)
        return cli.exitCode();
    const QString path = cli.positional().at(0);
    const auto written = BackupExporter::writeBackup(context->fetch(), path);
    if (!written)
        return cli.fail(BackupStatus::backupFailed(written.errorMessage()));
    cli.print(BackupStatus::backupCreated(*written, path));
    return 0;
}

QByteArray previewJson(const RestorePreview &preview)
{
    const QJsonObject object{
        {QStringLiteral("localCount"), preview.localCount},
        {QStringLiteral("identicalCount"), preview.identicalCount},
        {QStringLiteral("createCount"), preview.createCount},
        {QStringLiteral("updateCount"), preview.updateCount},
        {QStringLiteral("localOnlyCount"), preview.localOnlyCount},
        {QStringLiteral("backupDeletedCount"), preview.backupDeletedCount},
        {QStringLiteral("localDeletedCount"), preview.localDeletedCount},
        {QStringLiteral("isOlderThanLocalData"), preview.isOlderThanLocalData},
        {QStringLiteral("statusTitle"), preview.statusTitle()},
        {QStringLiteral("statusText"), preview.statusText()},
    };
    return ArchiveJson::encode(object) + '\n';
}

int runRestore(CliInvocation &cli)
{
    const bool previewOnly = cli.takeFlag(QStringLiteral("--preview"));
    const auto modeText = cli.takeOption(QStringLiteral("--mode"));
    if (!cli.finishOptions(1, 1))
        return cli.usageError({});
    if (previewOnly == modeText.has_value())
        return cli.usageError(QStringLiteral("give either --preview or --mode addMissing|addMissingAndUpdate"));
    const auto mode = modeText ? restoreModeFromRaw(*modeText) : std::nullopt;
    if (modeText && !mode)
        return cli.usageError(QStringLiteral("--mode takes addMissing or addMissingAndUpdate"));
    ArchiveContext *context = previewOnly ? cli.archive() : cli.writableArchive();
    if (!context)
        return 1;
    const auto preview = RestorePlanner::previewRestore(cli.positional().at(0), context->fetch());
    if (!preview)
        return cli.fail(BackupStatus::backupUnreadable(preview.errorMessage()));
    if (previewOnly) {
        cli.printRaw(previewJson(*preview));
        return 0;
    }
    const auto restored = RestorePlanner::restoreWithSafetyBackup(preview->backup, *context, *mode);
    if (!restored)
        return cli.fail(BackupStatus::restoreAborted(restored.errorMessage()));
    cli.print(
        BackupStatus::restoreFinished(restored->counts.created, restored->counts.updated, restored->safetyBackupPath));
    return 0;
}

int runDailyBackup(CliInvocation &cli)
{
    ArchiveContext *context = cli.archiveAfterOptions(0, 0);
    if (!context)
        return cli.exitCode();
    const DailyBackup::Outcome outcome = DailyBackup::runDailyAutomaticBackupIfNeeded(*context);
    if (outcome.status == DailyBackup::Status::failed)
        return cli.fail(outcome.statusLine);
    if (!outcome.statusLine.isEmpty())
        cli.print(outcome.statusLine);
    return 0;
}

QByteArray safetyBackupsJson(const QList<SafetyBackupFile> &files)
{
    QJsonArray list;
    for (const SafetyBackupFile &file : files) {
        QJsonObject entry{
            {QStringLiteral("file"), file.fileName},
            {QStringLiteral("kind"), rawValue(file.kind)},
            {QStringLiteral("createdAt"), ArchiveJson::dateText(file.createdAt)},
            {QStringLiteral("bytes"), file.bytes},
        };
        if (file.poemCount)
            entry.insert(QStringLiteral("poemCount"), *file.poemCount);
        list.append(entry);
    }
    return ArchiveJson::encode(list) + '\n';
}

int runSafetyBackups(CliInvocation &cli)
{
    const bool json = cli.takeFlag(QStringLiteral("--json"));
    if (!cli.finishOptions(0, 1))
        return cli.usageError({});
    const bool prune = !cli.positional().isEmpty();
    if (prune && (cli.positional().first() != QLatin1String("prune") || json))
        return cli.usageError(QStringLiteral("safety-backups [--json] | safety-backups prune"));
    const SafetyBackupFolder folder = SafetyBackupFolder::standard();
    if (prune) {
        const auto removed = folder.prune(QDateTime::currentDateTime());
        if (!removed)
            return cli.fail(removed.errorMessage());
        cli.print(SafetyBackupFolder::prunedStatus(*removed));
        return 0;
    }
    const QList<SafetyBackupFile> files = folder.list();
    if (json) {
        cli.printRaw(safetyBackupsJson(files));
        return 0;
    }
    for (const SafetyBackupFile &file : files) {
        cli.print(QStringList{displayTitle(file.kind), file.createdText(), file.poemCountText(), file.sizeText(),
                              file.fileName}
                      .join(QLatin1Char('\t')));
    }
    return 0;
}

} // namespace

std::vector<CliCommand> backupCommands()
{
    return {
        {QStringLiteral("backup"), QStringLiteral("backup FILE"), runBackup},
        {QStringLiteral("restore"),
         QStringLiteral("restore FILE --preview | restore FILE --mode addMissing|addMissingAndUpdate"), runRestore},
        {QStringLiteral("daily-backup"), QStringLiteral("daily-backup"), runDailyBackup},
        {QStringLiteral("safety-backups"), QStringLiteral("safety-backups [--json] | safety-backups prune"),
         runSafetyBackups},
    };
}
