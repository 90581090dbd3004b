#pragma once

#include "archive/Poem.h"
#include "archive/Result.h"
#include "import/ImportUndoItem.h"

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QUuid>

#include <functional>
#include <optional>

class ArchiveContext;

// Writes imported texts into poems and commits them in batches. Before a batch is
// committed, the previous texts of every poem changed so far are on disk, so an import
// cut off at any moment (a crash, power loss) can still be undone. A batch that cannot
// be stored (its undo record or its commit failed) is taken back whole: its poems return
// to their stored state and leave the undo record, so nothing claims a change that the
// store never got.
class ImportApplier {
public:
    static constexpr int defaultBatchSize = 100;

    struct Outcome {
        bool applied = false;
        bool skippedBecauseHasText = false;
        // The batch save that this change triggered failed; the whole batch, this change
        // included, was taken back.
        std::optional<QString> saveError;
        // This change is in the store (its batch was committed).
        bool committed = false;
    };

    using UndoWriter = std::function<Result<void>(const QList<ImportUndoItem> &)>;
    using Clock = std::function<QDateTime()>;

    ImportApplier(ArchiveContext &context, UndoWriter writeUndo, int batchSize = defaultBatchSize);

    void setClock(Clock clock) { m_clock = std::move(clock); }
    // What the versions kept before the changed poems say they came before.
    void setVersionReason(const QString &reason) { m_versionReason = reason; }

    PoemPtr poem(const QUuid &id) const { return m_poemMap.value(id); }
    // A poem whose text, trimmed, is not empty.
    bool hasText(const QUuid &id) const;

    // Unknown poems are neither applied nor skipped.
    Outcome apply(const QUuid &poemID, const QString &text, const std::optional<QByteArray> &richTextData,
                  bool onlyIfEmpty);
    // Saves what is pending; an error when the save (or the undo record before it) failed,
    // and then the pending batch was taken back.
    Result<void> finalize();

    const QList<ImportUndoItem> &undoItems() const { return m_undoItems; }
    int pending() const { return m_pending; }
    int batchSize() const { return m_batchSize; }

private:
    Result<void> commit();
    Result<void> storeBatch();
    void dropBatch();

    ArchiveContext &m_context;
    UndoWriter m_writeUndo;
    int m_batchSize;
    int m_pending = 0;
    QHash<QUuid, PoemPtr> m_poemMap;
    QList<ImportUndoItem> m_undoItems;
    qsizetype m_undoItemsCommitted = 0;
    QList<PoemPtr> m_batch;
    // A poem written twice in one run keeps the text it had before the run.
    QSet<QUuid> m_recorded;
    qsizetype m_undoItemsOnDisk = -1;
    Clock m_clock;
    QString m_versionReason;
};
