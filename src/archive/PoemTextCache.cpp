#include "archive/PoemTextCache.h"

#include "archive/Poem.h"

#include <algorithm>

DerivedPoemText &PoemTextCache::entry(const Poem &poem)
{
    DerivedPoemText &found = m_entries[poem.storeKey()];
    found.lastUse = m_generation;
    if (found.refresh(poem, m_categories))
        ++m_revision;
    return found;
}

DerivedPoemText &PoemTextCache::entryAt(qsizetype position, const Poem &poem)
{
    const auto index = size_t(position);
    if (index < m_walk.size() && m_walk[index].storeKey == poem.storeKey()) {
        DerivedPoemText &known = *m_walk[index].entry;
        known.lastUse = m_generation;
        if (known.refresh(poem, m_categories))
            ++m_revision;
        return known;
    }
    ++m_revision;
    DerivedPoemText &found = entry(poem);
    if (index >= m_walk.size())
        m_walk.resize(index + 1, Known{-1, nullptr});
    m_walk[index] = Known{poem.storeKey(), &found};
    return found;
}

qsizetype PoemTextCache::foldFrom(qsizetype position, qsizetype count)
{
    const qsizetype end = std::min(qsizetype(m_walk.size()), position + count);
    for (qsizetype i = position; i < end; ++i) {
        if (m_walk[size_t(i)].entry)
            m_walk[size_t(i)].entry->fold();
    }
    return end >= qsizetype(m_walk.size()) ? -1 : end;
}

void PoemTextCache::pruneUnused(int livePoemCount)
{
    // Positions past this walk may name entries that are about to go.
    if (m_walk.size() > size_t(livePoemCount)) {
        m_walk.resize(size_t(livePoemCount));
        ++m_revision;
    }
    const unsigned current = m_generation++;
    if (m_entries.size() <= size_t(livePoemCount) + size_t(livePoemCount) / 4 + 64)
        return;
    std::erase_if(m_entries, [current](const auto &item) { return item.second.lastUse != current; });
}
