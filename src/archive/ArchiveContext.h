#pragma once

#include "archive/Poem.h"
#include "archive/PoemStore.h"
#include "archive/Result.h"

#include <QList>
#include <QObject>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <unordered_map>
#include <vector>

// The one working copy of the archive, used on the main thread. Fetches see unsaved
// changes; save writes all of them in one transaction or none; rollback returns every
// poem to its last saved state. A failed save keeps the changes, so a later save can
// still write them.
//
// Other processes (the command-line tool, a second window) may write the same store.
// A save writes only the attributes that changed here. If another process changed a
// poem since it was read, the save merges attribute by attribute (PoemMerge): what only
// one side changed is kept from that side. When both changed the same attribute, or the
// poem was deleted for good elsewhere, the save fails with a message naming the poem;
// the context then holds the other version as its base with the local change on top,
// so saving again keeps the local change knowingly.
class ArchiveContext : public QObject {
    Q_OBJECT

public:
    using Predicate = std::function<bool(const Poem &)>;
    // Strict weak order; ties keep the store's order.
    using Ordering = std::function<bool(const Poem &, const Poem &)>;

    ArchiveContext(std::unique_ptr<PoemStore> store, QObject *parent = nullptr);
    ~ArchiveContext() override;

    Result<void> load();
    // Takes over what other processes stored since the last look: changed and new poems
    // come in, poems deleted for good go. A poem with unsaved changes here is left as it
    // is; its next save merges. Emits contextDidChange and answers true when anything
    // came in. Costs one query when nothing changed, so it can run on a timer.
    Result<bool> refreshFromStore();

    PoemPtr insertPoem();
    void deletePoem(const PoemPtr &poem);

    QList<PoemPtr> fetch(const Predicate &predicate = {}, const Ordering &ordering = {}) const;
    int count(const Predicate &predicate) const;
    PoemPtr poemWithObjectID(const QString &objectID) const;
    PoemPtr poemWithID(const QUuid &id) const;

    bool hasChanges() const;
    Result<void> save();
    void rollback();

    // For operations that change many poems (restore, import): committing every batch
    // lets another process waiting for the store through well within its busy timeout.
    static constexpr int saveBatchSize = 500;
    int changedPoemCount() const { return int(m_changed.size()); }
    // Saves when a batch is full, else does nothing.
    Result<void> saveIfBatchFull();

    PoemStore &store() const { return *m_store; }

    // While set, each save first keeps the replaced state of every poem whose content it
    // changes as a version with this reason; see VersionReason. Without one, a poem's first
    // change keeps its state as the first version, so no earlier text is ever unreachable.
    void setVersionReason(std::optional<QString> reason) { m_versionReason = std::move(reason); }
    const std::optional<QString> &versionReason() const { return m_versionReason; }
    void setClock(std::function<QDateTime()> clock) { m_clock = std::move(clock); }
    QDateTime now() const { return m_clock ? m_clock() : QDateTime::currentDateTimeUtc(); }

Q_SIGNALS:
    // After a save that wrote something, or a rollback: views re-read what they show.
    void contextDidChange();

private:
    friend class Poem;
    struct SaveStep;
    void noteChanged(qint64 key);
    void registerStored(PoemStore::Row row);
    Result<bool> dropPoemsDeletedElsewhere();
    Result<void> keepReplacedVersion(PoemStore::Write &store, const Poem &poem);
    void applySaveStep(const SaveStep &step);
    void finishSave(const std::vector<SaveStep> &steps);

    std::unique_ptr<PoemStore> m_store;
    std::map<qint64, PoemPtr> m_poems;   // registered, not deleted
    std::map<qint64, PoemPtr> m_deleted; // deleted since the last save
    std::set<qint64> m_changed;
    std::unordered_map<qint64, PoemPtr> m_byRowKey; // every poem the store holds
    qint64 m_nextKey = 1;
    qint64 m_seenChangeSeq = 0;
    std::optional<qint64> m_dataVersion;
    std::optional<QString> m_versionReason;
    std::set<qint64> m_rowsWithVersions; // known to have one, so no query per keystroke
    std::function<QDateTime()> m_clock;
};
