#include "archive/ArchiveContext.h"

#include "archive/PoemMerge.h"
#include "archive/PoemStore.h"
#include "archive/PoemVersion.h"

#include <QStringList>

#include <algorithm>

ArchiveContext::ArchiveContext(std::unique_ptr<PoemStore> store, QObject *parent)
    : QObject(parent), m_store(std::move(store))
{
}

ArchiveContext::~ArchiveContext()
{
    for (auto &[key, poem] : m_poems)
        poem->m_context = nullptr;
}

Result<void> ArchiveContext::load()
{
    // Read before the rows, so a change committed in between is found by the next refresh.
    const auto version = m_store->dataVersion();
    if (!version)
        return version.error();
    auto rows = m_store->loadAll();
    if (!rows)
        return rows.error();
    m_poems.clear();
    m_deleted.clear();
    m_changed.clear();
    m_byRowKey.clear();
    for (auto &row : *rows)
        registerStored(std::move(row));
    m_dataVersion = *version;
    return {};
}

Result<std::optional<QByteArray>> ArchiveContext::readRichText(const Poem &poem) const
{
    auto read = m_store->richText(poem.m_rowKey);
    if (!read)
        qWarning().noquote() << "rich text of poem row" << poem.m_rowKey << "not read:" << read.error().forLog();
    return read;
}

void ArchiveContext::registerStored(PoemStore::Row row)
{
    // Context keys follow the store's keys where they can, but are never used twice: a
    // poem created here may hold the key the store has since given to another process's
    // poem, and views may still name a poem that is gone.
    const qint64 key = std::max(row.key, m_nextKey);
    PoemPtr poem(new Poem(this, key, std::move(row.values), true));
    poem->m_rowKey = row.key;
    poem->m_changeSeq = row.changeSeq;
    poem->m_richTextPending = row.richTextPending;
    m_poems.emplace(key, poem);
    m_byRowKey.emplace(row.key, std::move(poem));
    m_nextKey = std::max(m_nextKey, key + 1);
    m_seenChangeSeq = std::max(m_seenChangeSeq, row.changeSeq);
}

Result<bool> ArchiveContext::refreshFromStore()
{
    const auto version = m_store->dataVersion();
    if (!version)
        return version.error();
    if (m_dataVersion == *version)
        return false;
    auto changes = m_store->changesSince(m_seenChangeSeq);
    if (!changes)
        return changes.error();
    QSet<qint64> changed;
    for (auto &row : changes->rows) {
        const auto known = m_byRowKey.find(row.key);
        if (known == m_byRowKey.end()) {
            registerStored(std::move(row));
            changed.insert(m_nextKey - 1);
            continue;
        }
        m_seenChangeSeq = std::max(m_seenChangeSeq, row.changeSeq);
        Poem &poem = *known->second;
        const bool changedHere = poem.m_values != poem.saved() || m_deleted.count(poem.m_key) > 0;
        if (poem.m_changeSeq == row.changeSeq || changedHere)
            continue;
        poem.setSavedAndCurrent(row.values, row.values);
        poem.m_changeSeq = row.changeSeq;
        poem.m_richTextPending = row.richTextPending;
        poem.m_richTextUnreadable = false;
        changed.insert(poem.m_key);
    }
    if (changes->rowCount != qint64(m_byRowKey.size())) {
        if (auto dropped = dropPoemsDeletedElsewhere(changed); !dropped)
            return dropped.error();
    }
    m_dataVersion = *version;
    if (changed.isEmpty())
        return false;
    Q_EMIT contextDidChange(changed);
    return true;
}

Result<void> ArchiveContext::dropPoemsDeletedElsewhere(QSet<qint64> &dropped)
{
    const auto keys = m_store->allKeys();
    if (!keys)
        return keys.error();
    for (auto it = m_byRowKey.begin(); it != m_byRowKey.end();) {
        Poem &poem = *it->second;
        // A poem changed here stays: its save tells the user it is gone.
        if (std::binary_search(keys->begin(), keys->end(), it->first) || poem.m_values != poem.saved()) {
            ++it;
            continue;
        }
        m_poems.erase(poem.m_key);
        m_deleted.erase(poem.m_key);
        m_changed.erase(poem.m_key);
        poem.m_context = nullptr;
        it = m_byRowKey.erase(it);
        dropped.insert(poem.m_key);
    }
    return {};
}

PoemPtr ArchiveContext::insertPoem()
{
    const qint64 key = m_nextKey++;
    PoemPtr poem(new Poem(this, key, PoemValues{}, false));
    m_poems.emplace(key, poem);
    m_changed.insert(key);
    return poem;
}

void ArchiveContext::deletePoem(const PoemPtr &poem)
{
    if (!poem || poem->m_context != this)
        return;
    const auto found = m_poems.find(poem->m_key);
    if (found == m_poems.end())
        return;
    m_deleted.emplace(found->first, found->second);
    m_changed.insert(found->first);
    m_poems.erase(found);
}

QList<PoemPtr> ArchiveContext::fetch(const Predicate &predicate, const Ordering &ordering) const
{
    QList<PoemPtr> result;
    result.reserve(qsizetype(m_poems.size()));
    for (const auto &[key, poem] : m_poems) {
        if (!predicate || predicate(*poem))
            result.append(poem);
    }
    if (ordering) {
        std::stable_sort(result.begin(), result.end(),
                         [&ordering](const PoemPtr &a, const PoemPtr &b) { return ordering(*a, *b); });
    }
    return result;
}

int ArchiveContext::count(const Predicate &predicate) const
{
    return int(std::count_if(m_poems.begin(), m_poems.end(),
                             [&predicate](const auto &entry) { return predicate(*entry.second); }));
}

PoemPtr ArchiveContext::poemWithObjectID(const QString &objectID) const
{
    const QString prefix = Poem::objectIDPrefix();
    if (!objectID.startsWith(prefix))
        return nullptr;
    bool ok = false;
    const qint64 key = QStringView(objectID).mid(prefix.size()).toLongLong(&ok);
    const auto found = ok ? m_poems.find(key) : m_poems.end();
    return found == m_poems.end() ? nullptr : found->second;
}

PoemPtr ArchiveContext::poemWithKey(qint64 storeKey) const
{
    const auto found = m_poems.find(storeKey);
    return found == m_poems.end() ? nullptr : found->second;
}

PoemPtr ArchiveContext::poemWithID(const QUuid &id) const
{
    for (const auto &[key, poem] : m_poems) {
        if (poem->id() == id)
            return poem;
    }
    return nullptr;
}

bool ArchiveContext::hasChanges() const
{
    const bool deletedSaved =
        std::any_of(m_deleted.begin(), m_deleted.end(), [](const auto &entry) { return entry.second->m_persisted; });
    return deletedSaved || std::any_of(m_changed.begin(), m_changed.end(), [this](qint64 key) {
               const auto found = m_poems.find(key);
               return found != m_poems.end() && found->second->hasUnsavedChanges();
           });
}

// What a save does to one poem in memory. After a commit saved and current are what
// was written; after a failed save they re-base a poem another process changed.
struct ArchiveContext::SaveStep {
    PoemPtr poem;
    qint64 rowKey = 0; // 0: the store no longer holds the poem
    qint64 changeSeq = 0;
    PoemValues saved;
    PoemValues current;
};

namespace {

QString poemLabel(const PoemValues &values)
{
    const QString title = values.title.value_or(QString()).trimmed();
    return title.isEmpty() ? ArchiveContext::tr("(ohne Titel)") : title;
}

QString poemLogId(const Poem &poem)
{
    return poem.id() ? uuidText(*poem.id()) : poem.objectID();
}

QString fieldNames(PoemFieldSet fields)
{
    QStringList names;
    for (int i = 0; i < poemFieldCount; ++i) {
        const QString name = poemFieldDisplayName(PoemField(i));
        if (fields[size_t(i)] && !names.contains(name))
            names.append(name);
    }
    return names.join(QStringLiteral(", "));
}

} // namespace

Result<void> ArchiveContext::save()
{
    std::vector<PoemPtr> inserted;
    std::vector<PoemPtr> updated;
    std::vector<PoemPtr> removed;
    for (const qint64 key : m_changed) {
        if (const auto live = m_poems.find(key); live != m_poems.end()) {
            const PoemPtr &poem = live->second;
            if (!poem->m_persisted)
                inserted.push_back(poem);
            else if (poem->m_values != poem->saved())
                updated.push_back(poem);
        } else if (const auto gone = m_deleted.find(key); gone != m_deleted.end() && gone->second->m_persisted) {
            removed.push_back(gone->second);
        }
    }
    if (inserted.empty() && updated.empty() && removed.empty()) {
        finishSave({});
        return {};
    }

    auto write = m_store->beginWrite();
    if (!write)
        return write.error();
    PoemStore::Write &store = **write;
    const qint64 seq = store.changeSeq();
    std::vector<SaveStep> done;
    std::vector<SaveStep> rebased;
    QStringList conflicts;
    QStringList conflictIds;
    const auto fail = [&](const Error &error) -> Result<void> {
        write->reset(); // rolls back before memory takes the other versions as base
        for (const SaveStep &step : rebased)
            applySaveStep(step);
        // What shows a re-based poem must show the other version, or a keystroke would
        // write the old one back.
        if (!rebased.empty())
            Q_EMIT contextDidChange(keysOf(rebased));
        return error;
    };

    for (const PoemPtr &poem : inserted) {
        const auto key = store.insert(poem->m_values);
        if (!key)
            return fail(key.error());
        done.push_back({poem, *key, seq, poem->m_values, poem->m_values});
    }
    for (const PoemPtr &poem : updated) {
        const PoemFieldSet fields = differingFields(poem->saved(), poem->m_values);
        // Rich text that could not be read is not replaced by what was shown in its place.
        if (poem->m_richTextUnreadable && fields.test(size_t(PoemField::richTextData)))
            return fail(poem->readFully().error());
        if ((fields & versionedPoemFields()).any()) {
            if (auto kept = keepReplacedVersion(store, *poem); !kept)
                return fail(kept.error());
        }
        const auto current = store.update(poem->m_rowKey, poem->m_changeSeq, poem->m_values, fields);
        if (!current)
            return fail(current.error());
        if (*current) {
            done.push_back({poem, poem->m_rowKey, seq, poem->m_values, poem->m_values});
            continue;
        }
        const auto stored = store.row(poem->m_rowKey);
        if (!stored)
            return fail(stored.error());
        if (!*stored) {
            conflicts.append(tr("„%1“ wurde in einem anderen Programm endgültig gelöscht. Die Änderung hier ist nicht "
                                "gespeichert; beim nächsten Speichern wird das Gedicht neu angelegt.")
                                 .arg(poemLabel(poem->m_values)));
            conflictIds.append(poemLogId(*poem));
            rebased.push_back({poem, 0, 0, poem->saved(), poem->m_values});
            continue;
        }
        const PoemMerge::Outcome merge = PoemMerge::merge(poem->saved(), poem->m_values, (*stored)->values);
        rebased.push_back({poem, poem->m_rowKey, (*stored)->changeSeq, (*stored)->values, merge.merged});
        if (merge.conflicts.any()) {
            conflicts.append(tr("„%1“ wurde gleichzeitig in einem anderen Programm geändert (%2). Die Änderung hier "
                                "ist nicht gespeichert; beim nächsten Speichern ersetzt sie die andere.")
                                 .arg(poemLabel(poem->m_values), fieldNames(merge.conflicts)));
            conflictIds.append(poemLogId(*poem));
            continue;
        }
        if (merge.toWrite.none()) {
            done.push_back({poem, poem->m_rowKey, (*stored)->changeSeq, merge.merged, merge.merged});
            continue;
        }
        const auto merged = store.update(poem->m_rowKey, (*stored)->changeSeq, merge.merged, merge.toWrite);
        if (!merged)
            return fail(merged.error());
        done.push_back({poem, poem->m_rowKey, seq, merge.merged, merge.merged});
    }
    for (const PoemPtr &poem : removed) {
        const auto gone = store.remove(poem->m_rowKey, poem->m_changeSeq);
        if (!gone)
            return fail(gone.error());
        if (*gone) {
            done.push_back({poem, 0, 0, {}, {}});
            continue;
        }
        const auto stored = store.row(poem->m_rowKey);
        if (!stored)
            return fail(stored.error());
        if (!*stored) {
            done.push_back({poem, 0, 0, {}, {}}); // deleted elsewhere as well
            continue;
        }
        conflicts.append(tr("„%1“ wurde in einem anderen Programm geändert und deshalb nicht endgültig gelöscht. "
                            "Beim nächsten Löschen geht diese Änderung verloren.")
                             .arg(poemLabel((*stored)->values)));
        conflictIds.append(poemLogId(*poem));
        rebased.push_back({poem, poem->m_rowKey, (*stored)->changeSeq, (*stored)->values, (*stored)->values});
    }
    if (!conflicts.isEmpty())
        return fail(Error{conflicts.join(QLatin1Char(' ')),
                          QStringLiteral("save conflict with another process, poems %1").arg(conflictIds.join(u','))});
    if (auto committed = store.commit(); !committed)
        return fail(committed.error());
    write->reset();
    finishSave(done);
    return {};
}

Result<void> ArchiveContext::keepReplacedVersion(PoemStore::Write &store, const Poem &poem)
{
    const qint64 row = poem.m_rowKey;
    if (!m_versionReason) {
        if (m_rowsWithVersions.count(row))
            return {};
        const auto has = store.hasVersions(row);
        if (!has)
            return has.error();
        if (*has) {
            m_rowsWithVersions.insert(row);
            return {};
        }
    }
    const auto kept = store.recordVersion(
        row, m_versionReason.value_or(PoemVersion::reasonKey(QT_TRANSLATE_NOOP("PoemVersion", "vor Bearbeitung"))),
        QString(), now());
    if (!kept)
        return kept.error();
    // Only a committed version counts; a failed save asks again next time.
    return {};
}

void ArchiveContext::applySaveStep(const SaveStep &step)
{
    Poem &poem = *step.poem;
    if (poem.m_rowKey != 0 && poem.m_rowKey != step.rowKey)
        m_byRowKey.erase(poem.m_rowKey);
    poem.m_rowKey = step.rowKey;
    poem.m_persisted = step.rowKey != 0;
    poem.m_changeSeq = step.changeSeq;
    poem.setSavedAndCurrent(step.saved, step.current);
    if (step.rowKey != 0)
        m_byRowKey.emplace(step.rowKey, step.poem);
}

void ArchiveContext::finishSave(const std::vector<SaveStep> &steps)
{
    for (const SaveStep &step : steps) {
        if (step.rowKey == 0)
            m_byRowKey.erase(step.poem->m_rowKey);
        else
            applySaveStep(step);
    }
    for (auto &[key, poem] : m_deleted)
        poem->m_context = nullptr;
    m_deleted.clear();
    m_changed.clear();
    if (!steps.empty())
        Q_EMIT contextDidChange(keysOf(steps));
}

QSet<qint64> ArchiveContext::keysOf(const std::vector<SaveStep> &steps)
{
    QSet<qint64> keys;
    keys.reserve(qsizetype(steps.size()));
    for (const SaveStep &step : steps)
        keys.insert(step.poem->m_key);
    return keys;
}

void ArchiveContext::rollback()
{
    QSet<qint64> keys(m_changed.begin(), m_changed.end());
    for (auto &[key, poem] : m_deleted) {
        m_poems.emplace(key, poem);
        keys.insert(key);
    }
    m_deleted.clear();
    for (const qint64 key : m_changed) {
        const auto found = m_poems.find(key);
        if (found == m_poems.end())
            continue;
        if (!found->second->m_persisted) {
            found->second->m_context = nullptr;
            m_poems.erase(found);
            continue;
        }
        found->second->revertToSaved();
    }
    m_changed.clear();
    if (!keys.isEmpty())
        Q_EMIT contextDidChange(keys);
}

void ArchiveContext::revert(const QList<PoemPtr> &poems)
{
    QSet<qint64> reverted;
    for (const PoemPtr &poem : poems) {
        if (!poem || poem->m_context != this || !poem->m_persisted || poem->m_values == poem->saved())
            continue;
        poem->revertToSaved();
        reverted.insert(poem->m_key);
    }
    if (!reverted.isEmpty())
        Q_EMIT contextDidChange(reverted);
}

void ArchiveContext::noteChanged(qint64 key)
{
    m_changed.insert(key);
}
