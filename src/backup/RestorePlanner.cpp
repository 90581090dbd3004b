#include "backup/RestorePlanner.h"

#include "archive/ArchiveContext.h"
#include "archive/PoemStore.h"
#include "archive/PoemVersion.h"
#include "archive/VersionReason.h"
#include "backup/BackupExporter.h"
#include "backup/BackupReader.h"

#include <QSet>

#include <algorithm>

namespace {

std::optional<QString> keyOf(const std::optional<QUuid> &id, const std::optional<QString> &titleNormalized,
                             const std::optional<QString> &title)
{
    if (id)
        return QStringLiteral("id:") + uuidText(*id);
    const QString normalized = titleNormalized.value_or(QString()).trimmed();
    if (!normalized.isEmpty())
        return QStringLiteral("title:") + normalized;
    const QString plain = title.value_or(QString()).trimmed().toLower();
    if (!plain.isEmpty())
        return QStringLiteral("title:") + plain;
    return std::nullopt;
}

} // namespace

std::optional<QString> RestorePlanner::matchKey(const Poem &poem)
{
    return keyOf(poem.id(), poem.titleNormalized(), poem.title());
}

std::optional<QString> RestorePlanner::matchKey(const PoemBackup &entry)
{
    return keyOf(entry.id, entry.titleNormalized, entry.title);
}

RestorePlanner::PoemMap RestorePlanner::poemMap(const QList<PoemPtr> &localPoems)
{
    PoemMap map;
    map.reserve(localPoems.size());
    for (const PoemPtr &poem : localPoems) {
        const auto key = matchKey(*poem);
        if (key && !map.contains(*key))
            map.insert(*key, poem);
    }
    return map;
}

Result<RestorePreview> RestorePlanner::previewRestore(const QString &path, const QList<PoemPtr> &localPoems)
{
    auto backup = BackupReader::read(path);
    if (!backup)
        return backup.error();
    return preview(std::move(backup.value()), localPoems);
}

RestorePreview RestorePlanner::preview(Backup backup, const QList<PoemPtr> &localPoems)
{
    RestorePreview result;
    const PoemMap local = poemMap(localPoems);
    QSet<QString> backupKeys;
    for (const PoemBackup &entry : backup.poems) {
        const auto key = matchKey(entry);
        if (key)
            backupKeys.insert(*key);
        if (entry.deletedAt)
            ++result.backupDeletedCount;
        const PoemPtr found = key ? local.value(*key) : PoemPtr();
        if (!found)
            ++result.createCount;
        else if (entry.matches(*found))
            ++result.identicalCount;
        else
            ++result.updateCount;
    }
    std::optional<QDateTime> latestLocalChange;
    for (const PoemPtr &poem : localPoems) {
        if (poem->deletedAt())
            ++result.localDeletedCount;
        const auto key = matchKey(*poem);
        if (!key || !backupKeys.contains(*key))
            ++result.localOnlyCount;
        if (poem->updatedAt() && (!latestLocalChange || *poem->updatedAt() > *latestLocalChange))
            latestLocalChange = poem->updatedAt();
    }
    result.isOlderThanLocalData = latestLocalChange && backup.exportedAt < *latestLocalChange;
    result.localCount = int(localPoems.size());
    result.backup = std::move(backup);
    return result;
}

Result<RestoreCounts> RestorePlanner::restore(const Backup &backup, ArchiveContext &context, RestoreMode mode)
{
    RestoreCounts counts;
    const VersionReason reason(context,
                               PoemVersion::reasonKey(QT_TRANSLATE_NOOP("PoemVersion", "vor Wiederherstellung")));
    PoemMap map = poemMap(context.fetch());
    for (const PoemBackup &entry : backup.poems) {
        const auto key = matchKey(entry);
        if (const PoemPtr found = key ? map.value(*key) : PoemPtr()) {
            if (mode == RestoreMode::addMissingAndUpdate && !entry.matches(*found)) {
                entry.apply(*found);
                ++counts.updated;
            }
            continue;
        }
        const PoemPtr created = context.insertPoem();
        entry.apply(*created);
        ++counts.created;
        // A later entry with the same key meets this poem, as if it had been there.
        if (key)
            map.insert(*key, created);
    }
    if (context.hasChanges()) {
        if (auto saved = context.save(); !saved)
            return saved.error();
    }
    return counts;
}

Result<RestoreOutcome> RestorePlanner::restoreWithSafetyBackup(const Backup &backup, ArchiveContext &context,
                                                               RestoreMode mode, const QDateTime &now)
{
    if (context.store().isReadOnly())
        return Error{PoemStore::readOnlyText()};
    const auto safetyBackup =
        BackupExporter::writeAutomaticSafetyBackup(context.fetch(), QStringLiteral("pre-restore"), now);
    if (!safetyBackup)
        return safetyBackup.error();
    const auto counts = restore(backup, context, mode);
    if (!counts) {
        // The safety backup is the way back; the archive in memory returns to what is stored.
        context.rollback();
        return counts.error();
    }
    return RestoreOutcome{*counts, *safetyBackup};
}
