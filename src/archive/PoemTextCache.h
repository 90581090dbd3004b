#pragma once

#include "archive/CategoryNameTable.h"
#include "archive/DerivedPoemText.h"

#include <unordered_map>
#include <vector>

class Poem;

// The derived texts of every poem the library has looked at, by store key. Deriving them
// takes far longer than a rebuild may, so they are kept between rebuilds. Main thread
// only, like the context it reads.
class PoemTextCache {
public:
    // The poem's entry, brought up to date. One lookup per poem and rebuild; the
    // reference stays valid until pruneUnused().
    DerivedPoemText &entry(const Poem &poem);
    // The same, for the poem at a position of the store's order: rebuilds walk the poems
    // in that order, which rarely changes, so the previous walk usually knows the entry.
    DerivedPoemText &entryAt(qsizetype position, const Poem &poem);
    const CategoryNameTable &categories() const { return m_categories; }
    // Folds the search fields of the last walk's entries from position on, at most count
    // of them; answers the position to go on from, or -1 when the walk is done.
    qsizetype foldFrom(qsizetype position, qsizetype count);
    // Forgets poems not looked at since the previous call, once they pile up.
    void pruneUnused(int livePoemCount);
    qsizetype size() const { return qsizetype(m_entries.size()); }
    // Changes whenever the walk's poems, their positions or anything a list order compares
    // may have changed, so an order found earlier still holds while it stays the same.
    quint64 revision() const { return m_revision; }

private:
    struct Known {
        qint64 storeKey;
        DerivedPoemText *entry;
    };

    std::unordered_map<qint64, DerivedPoemText> m_entries;
    std::vector<Known> m_walk; // the previous walk, by position
    CategoryNameTable m_categories;
    unsigned m_generation = 0;
    quint64 m_revision = 0;
};
