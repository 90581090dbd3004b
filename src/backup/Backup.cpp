#include "backup/Backup.h"

Result<Backup> Backup::make(const QList<PoemPtr> &poems, const QDateTime &exportedAt)
{
    Backup backup;
    backup.app = appName();
    backup.schemaVersion = currentSchemaVersion;
    backup.exportedAt = exportedAt;
    backup.poems.reserve(poems.size());
    for (const PoemPtr &poem : poems) {
        const bool readForTheBackup = poem->richTextWaiting();
        if (auto read = poem->readFully(); !read)
            return read.error();
        backup.poems.append(PoemBackup::fromPoem(*poem));
        // The backup holds it for as long as it is written; the archive's rich text does
        // not stay in memory for the rest of the day.
        if (readForTheBackup)
            poem->letGoOfRichText();
    }
    backup.poemCount = backup.poems.size();
    return backup;
}
