#pragma once

#include "archive/Poem.h"
#include "archive/Result.h"
#include "backup/RestoreMode.h"
#include "backup/RestorePreview.h"

#include <QDateTime>
#include <QHash>
#include <QList>

class ArchiveContext;

struct RestoreCounts {
    int created = 0;
    int updated = 0;
};

struct RestoreOutcome {
    RestoreCounts counts;
    QString safetyBackupPath;
};

// Merges a backup into the archive without ever deleting a local poem. Entries meet
// local poems through their match key: "id:" and the UUID, else "title:" and the
// normalised title; a poem with an id never matches by title.
class RestorePlanner {
public:
    using PoemMap = QHash<QString, PoemPtr>;

    static std::optional<QString> matchKey(const Poem &poem);
    static std::optional<QString> matchKey(const PoemBackup &entry);
    // The first poem with a key wins; later poems with the same key are never touched.
    static PoemMap poemMap(const QList<PoemPtr> &localPoems);

    static Result<RestorePreview> previewRestore(const QString &path, const QList<PoemPtr> &localPoems);
    static RestorePreview preview(Backup backup, const QList<PoemPtr> &localPoems);

    // All or nothing: one save, one transaction, so a restore cut off by a kill or a full
    // disk leaves the archive as it was. The save is quick enough that another process
    // waiting for the store gets through within its busy timeout. A failed save leaves
    // the changes unsaved in the context.
    static Result<RestoreCounts> restore(const Backup &backup, ArchiveContext &context, RestoreMode mode);
    // The restore the user starts: a safety backup "pre-restore" of every poem first; if
    // it cannot be written the archive is not touched. A failed restore rolls back what
    // it had not saved yet.
    static Result<RestoreOutcome> restoreWithSafetyBackup(const Backup &backup, ArchiveContext &context,
                                                          RestoreMode mode,
                                                          const QDateTime &now = QDateTime::currentDateTime());
};
