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

private:
    struct Known {
        qint64 storeKey;
        DerivedPoemText *entry;
    };

    std::unordered_map<qint64, DerivedPoemText> m_entries;
    std::vector<Known> m_walk; // the previous walk, by position
    CategoryNameTable m_categories;
    unsigned m_generation = 0;
};
