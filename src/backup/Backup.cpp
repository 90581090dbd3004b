#include "backup/Backup.h"

Backup Backup::make(const QList<PoemPtr> &poems, const QDateTime &exportedAt)
{
    Backup backup;
    backup.app = appName();
    backup.schemaVersion = currentSchemaVersion;
    backup.exportedAt = exportedAt;
    backup.poems.reserve(poems.size());
    for (const PoemPtr &poem : poems)
        backup.poems.append(PoemBackup::fromPoem(*poem));
    backup.poemCount = backup.poems.size();
    return backup;
}
