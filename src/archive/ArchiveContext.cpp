#include "archive/ArchiveContext.h"

#include "archive/PoemStore.h"

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
    auto rows = m_store->loadAll();
    if (!rows)
        return rows.error();
    m_poems.clear();
    m_deleted.clear();
    m_changed.clear();
    for (auto &row : *rows) {
        m_poems.emplace(row.key, PoemPtr(new Poem(this, row.key, std::move(row.values), true)));
        m_nextKey = std::max(m_nextKey, row.key + 1);
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

Result<void> ArchiveContext::save()
{
    PoemStore::ChangeSet changes;
    for (const qint64 key : m_changed) {
        if (const auto live = m_poems.find(key); live != m_poems.end()) {
            const Poem &poem = *live->second;
            if (!poem.m_persisted)
                changes.inserted.push_back({key, poem.m_values});
            else if (poem.m_values != poem.m_saved)
                changes.updated.push_back({key, poem.m_values});
        } else if (const auto gone = m_deleted.find(key); gone != m_deleted.end() && gone->second->m_persisted) {
            changes.deleted.push_back(key);
        }
    }
    if (auto written = m_store->write(changes); !written)
        return written;

    for (const qint64 key : m_changed) {
        if (const auto live = m_poems.find(key); live != m_poems.end()) {
            live->second->m_saved = live->second->m_values;
            live->second->m_persisted = true;
        }
    }
    for (auto &[key, poem] : m_deleted)
        poem->m_context = nullptr;
    m_deleted.clear();
    m_changed.clear();
    if (!changes.isEmpty())
        Q_EMIT contextDidChange();
    return {};
}

void ArchiveContext::rollback()
{
    for (auto &[key, poem] : m_deleted)
        m_poems.emplace(key, poem);
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
        found->second->m_values = found->second->m_saved;
    }
    m_changed.clear();
    Q_EMIT contextDidChange();
}

void ArchiveContext::noteChanged(qint64 key)
{
    m_changed.insert(key);
}
