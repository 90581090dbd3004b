#pragma once

#include "archive/Poem.h"
#include "archive/PoemStore.h"
#include "archive/Result.h"

#include <QList>
#include <QObject>
#include <QSet>

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
    // is; its next save merges. Emits contextDidChange with what came in and answers
    // true when anything did. Costs one query when nothing changed, so it can run on a timer.
    Result<bool> refreshFromStore();

    PoemPtr insertPoem();
    void deletePoem(const PoemPtr &poem);

    QList<PoemPtr> fetch(const Predicate &predicate = {}, const Ordering &ordering = {}) const;
    int count(const Predicate &predicate) const;
    PoemPtr poemWithObjectID(const QString &objectID) const;
    PoemPtr poemWithID(const QUuid &id) const;
    // Null when the poem is gone (deleted for good, or not saved and rolled back).
    PoemPtr poemWithKey(qint64 storeKey) const;

    bool hasChanges() const;
    // Poems changed here since the last save or rollback; the library trusts what it read
    // before only while this is zero.
    int changedPoemCount() const { return int(m_changed.size()); }
    Result<void> save();
    void rollback();
    // Returns these poems to their last saved state and leaves every other change as it
    // is: an operation whose own save failed takes back only what it did.
    void revert(const QList<PoemPtr> &poems);

    PoemStore &store() const { return *m_store; }
    // The rich text a poem read with the archive has not read yet.
    Result<std::optional<QByteArray>> readRichText(const Poem &poem) const;

    // While set, each save first keeps the replaced state of every poem whose content it
    // changes as a version with this reason; see VersionReason. Without one, a poem's first
    // change keeps its state as the first version, so no earlier text is ever unreachable.
    void setVersionReason(std::optional<QString> reason) { m_versionReason = std::move(reason); }
    const std::optional<QString> &versionReason() const { return m_versionReason; }
    void setClock(std::function<QDateTime()> clock) { m_clock = std::move(clock); }
    QDateTime now() const { return m_clock ? m_clock() : QDateTime::currentDateTimeUtc(); }

Q_SIGNALS:
    // The one notice of a change of poems, whoever made it: after a save that wrote
    // something (or re-based poems another process changed), a rollback or a refresh
    // that took something over. Carries the store keys of every poem that changed, came
    // or went; views re-read those and need not be told by the operation itself.
    void contextDidChange(const QSet<qint64> &poemKeys);

private:
    friend class Poem;
    struct SaveStep;
    void noteChanged(qint64 key);
    void registerStored(PoemStore::Row row);
    Result<void> dropPoemsDeletedElsewhere(QSet<qint64> &dropped);
    Result<void> keepReplacedVersion(PoemStore::Write &store, const Poem &poem);
    void applySaveStep(const SaveStep &step);
    void finishSave(const std::vector<SaveStep> &steps);
    static QSet<qint64> keysOf(const std::vector<SaveStep> &steps);

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
