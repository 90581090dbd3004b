#pragma once

#include "archive/Poem.h"
#include "archive/Result.h"

#include <QList>
#include <QObject>

#include <functional>
#include <map>
#include <memory>
#include <set>

class PoemStore;

// The one working copy of the archive, used on the main thread. Fetches see unsaved
// changes; save writes all of them in one transaction or none; rollback returns every
// poem to its last saved state. A failed save keeps the changes, so a later save can
// still write them.
class ArchiveContext : public QObject {
    Q_OBJECT

public:
    using Predicate = std::function<bool(const Poem &)>;
    // Strict weak order; ties keep the store's order.
    using Ordering = std::function<bool(const Poem &, const Poem &)>;

    ArchiveContext(std::unique_ptr<PoemStore> store, QObject *parent = nullptr);
    ~ArchiveContext() override;

    Result<void> load();

    PoemPtr insertPoem();
    void deletePoem(const PoemPtr &poem);

    QList<PoemPtr> fetch(const Predicate &predicate = {}, const Ordering &ordering = {}) const;
    int count(const Predicate &predicate) const;
    PoemPtr poemWithObjectID(const QString &objectID) const;
    PoemPtr poemWithID(const QUuid &id) const;

    bool hasChanges() const;
    Result<void> save();
    void rollback();

    PoemStore &store() const { return *m_store; }

Q_SIGNALS:
    // After a save that wrote something, or a rollback: views re-read what they show.
    void contextDidChange();

private:
    friend class Poem;
    void noteChanged(qint64 key);

    std::unique_ptr<PoemStore> m_store;
    std::map<qint64, PoemPtr> m_poems;   // registered, not deleted
    std::map<qint64, PoemPtr> m_deleted; // deleted since the last save
    std::set<qint64> m_changed;
    qint64 m_nextKey = 1;
};
