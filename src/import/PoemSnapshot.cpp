#include "import/PoemSnapshot.h"

#include "archive/ArchiveContext.h"

QList<PoemSnapshotEntry> livePoemSnapshot(const ArchiveContext &context)
{
    const QList<PoemPtr> poems = context.fetch([](const Poem &poem) { return !poem.isInTrash() && poem.id(); });
    QList<PoemSnapshotEntry> snapshot;
    snapshot.reserve(poems.size());
    for (const PoemPtr &poem : poems)
        snapshot.append({*poem->id(), poem->title().value_or(QString())});
    return snapshot;
}
