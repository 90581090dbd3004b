#include "archive/LibraryBrowser.h"

#include "archive/AppPreferences.h"
#include "archive/ArchiveContext.h"
#include "archive/PoemFactory.h"
#include "archive/PoemRowText.h"
#include "archive/TextComparison.h"
#include "matching/TitleKey.h"

#include <QCoreApplication>
#include <QHash>

#include <algorithm>
#include <limits>
#include <thread>

namespace {

// The texts lie scattered over the heap; a scan fetches this many poems ahead, which keeps
// the memory busy while it compares.
constexpr size_t prefetchDistance = 4;

// The search text as the folded fields hold it. NUL separates the fields, so it is no
// character a search can ask for.
QByteArray searchNeedle(const QString &text)
{
    QByteArray needle = TextComparison::folded(text).toUtf8();
    needle.replace('\0', QByteArray());
    return needle;
}

// Whatever holds the longer needle holds the shorter one; an empty needle finds nothing.
bool narrowsNeedle(const QByteArray &before, const QByteArray &now)
{
    return before.isEmpty() ? now.isEmpty() : now.contains(before);
}

qint64 stampOf(const std::optional<QDateTime> &date)
{
    return date ? date->toMSecsSinceEpoch() : std::numeric_limits<qint64>::min();
}

// The store's order of optional strings: nil before every value, then code points.
int compareOptional(const std::optional<QString> &a, const std::optional<QString> &b)
{
    if (!a || !b)
        return int(a.has_value()) - int(b.has_value());
    return a->compare(*b);
}

// The first eight key bytes as one number in the same order (keys hold no NUL, so the
// zero padding of a short key sorts first, as the shorter key does).
quint64 keyPrefix(const QByteArray &key)
{
    quint64 prefix = 0;
    for (qsizetype i = 0; i < 8; ++i)
        prefix = (prefix << 8) | (i < key.size() ? quint8(key.at(i)) : 0);
    return prefix;
}

template <typename Candidate> void setTitleKey(Candidate &candidate)
{
    candidate.titleKey = &candidate.derived->titleSortKey(*candidate.poem);
    candidate.titlePrefix = keyPrefix(*candidate.titleKey);
}

// Equal categories under the localised comparison share a rank; poems without one come last.
QHash<QString, int> categoryRanks(const QStringList &names)
{
    QStringList sorted = names;
    std::sort(sorted.begin(), sorted.end(),
              [](const QString &a, const QString &b) { return TextComparison::localizedStandardCompare(a, b) < 0; });
    QHash<QString, int> ranks;
    int rank = 0;
    for (qsizetype i = 0; i < sorted.size(); ++i) {
        if (i > 0 && TextComparison::localizedStandardCompare(sorted.at(i - 1), sorted.at(i)) != 0)
            ++rank;
        ranks.insert(sorted.at(i), rank);
    }
    return ranks;
}

// The singular form is used exactly when the number is 1; zero takes the plural.
QString countText(int count, const QString &singular, const QString &plural)
{
    return (count == 1 ? singular : plural).arg(count);
}

} // namespace

LibraryBrowser::LibraryBrowser(ArchiveContext &context) : m_context(context)
{
    m_changeConnection = QObject::connect(&context, &ArchiveContext::contextDidChange,
                                          [this](const QSet<qint64> &poemKeys) { noteChangedPoems(poemKeys); });
}

LibraryBrowser::~LibraryBrowser()
{
    QObject::disconnect(m_changeConnection);
}

bool LibraryBrowser::hasUsableText(const Poem &poem)
{
    return PoemRowText::hasUsableText(poem.text());
}

int LibraryBrowser::refreshTrashCount()
{
    m_counts.trashCount = m_context.count([](const Poem &poem) { return poem.isInTrash(); });
    return m_counts.trashCount;
}

LibraryBrowser::Filters LibraryBrowser::currentFilters() const
{
    return Filters{searchText.trimmed(), searchMode, sidebarScope, sortMode, selectedCategory};
}

LibraryBrowser::Listing &LibraryBrowser::listingSlot(qint64 storeKey)
{
    if (size_t(storeKey) >= m_listings.size())
        m_listings.resize(size_t(storeKey) + 1 + m_listings.size() / 8);
    return m_listings[size_t(storeKey)];
}

// The filters of the last rebuild decide, not the fields, which may be changing.
LibraryBrowser::Listing LibraryBrowser::listingOf(const Poem &poem, DerivedPoemText *derived) const
{
    Listing listing;
    listing.known = true;
    listing.live = !poem.isInTrash();
    if (!listing.live)
        return listing;
    DerivedPoemText &texts = derived ? *derived : m_cache.entry(poem);
    listing.published = poem.isPublished();
    listing.podcast = poem.inPodcast();
    decide(listing, texts, std::nullopt);
    return listing;
}

// The filters' verdict on a live poem whose published and podcast flags are set. A known
// verdict of the search spares reading the texts.
void LibraryBrowser::decide(Listing &listing, DerivedPoemText &texts, std::optional<bool> knownMatch) const
{
    listing.categoryId = texts.categoryId();
    listing.hasText = texts.hasUsableText();
    listing.inCategory = !m_builtFor.category || m_cache.categories().name(listing.categoryId) == *m_builtFor.category;
    listing.inScope = inScope(listing, m_builtFor.scope);
    listing.matches = m_builtFor.search.isEmpty() || (knownMatch ? *knownMatch : matchesSearch(texts, m_needles));
}

void LibraryBrowser::count(const Listing &listing, int sign)
{
    if (!listing.known)
        return;
    if (!listing.live) {
        m_counts.trashCount += sign;
        return;
    }
    m_counts.activePoemCount += sign;
    m_counts.missingTextCount += listing.hasText ? 0 : sign;
    m_counts.publishedCount += listing.published ? sign : 0;
    m_counts.podcastCount += listing.podcast ? sign : 0;
    if (size_t(listing.categoryId) >= m_countsByCategoryId.size())
        m_countsByCategoryId.resize(size_t(listing.categoryId) + 1, 0);
    m_countsByCategoryId[size_t(listing.categoryId)] += sign;
    if (!listing.inCategory)
        return;
    m_scopeTotal += listing.inScope ? sign : 0;
    if (!listing.matches)
        return;
    m_counts.scopedActivePoemCount += sign;
    m_counts.scopedMissingTextCount += listing.hasText ? 0 : sign;
    m_counts.scopedPublishedCount += listing.published ? sign : 0;
    m_counts.scopedPodcastCount += listing.podcast ? sign : 0;
}

void LibraryBrowser::rebuildCategoryFilters()
{
    QHash<QString, int> countsByCategory;
    for (size_t id = 0; id < m_countsByCategoryId.size(); ++id) {
        if (m_countsByCategoryId[id] > 0)
            countsByCategory.insert(m_cache.categories().name(int(id)), m_countsByCategoryId[id]);
    }
    m_categoryFilters = filtersFromCounts(countsByCategory, m_spelling);
}

void LibraryBrowser::reloadRows()
{
    m_spelling = m_configuredCategories.value_or(AppPreferences::poemCategories());
    m_builtFor = currentFilters();
    m_built = true;
    m_needles = SearchNeedles{searchNeedle(m_builtFor.search), searchNeedle(normalize(m_builtFor.search))};

    QList<PoemPtr> listed;
    // Walking the context's own map costs more than a keystroke may at 100,000 poems, so
    // the poems of the last walk are walked again while the set cannot have changed: no
    // notice of a poem that came or went since, and no unsaved poem that may have. When
    // no poem changed at all, what the walk read of them still holds: every change
    // leaves an unsaved poem until a save or rollback announces it.
    const bool setKnown = m_poemsCurrent && m_context.changedPoemCount() == 0;
    if (setKnown && m_unchangedSinceWalk && m_unretaken.isEmpty()) {
        relistWalked(listed);
    } else {
        if (!setKnown || !walkPoems(listed)) {
            const QList<PoemPtr> all = m_context.fetch();
            m_poems.assign(all.cbegin(), all.cend());
            m_poemsCurrent = true;
            walkPoems(listed);
        }
        m_cache.pruneUnused(int(m_live.size()));
        m_unchangedSinceWalk = m_context.changedPoemCount() == 0;
        m_unretaken.clear();
        m_rememberedSearches.clear();
    }
    m_searchedFor = SearchedFor{m_builtFor.search.isEmpty(), m_builtFor.mode, m_needles};
    rememberSearch();

    rebuildCategoryFilters();
    if (selectedCategory) {
        resetVanishedCategory();
        // No poem had it, so the rows are every poem's: counted again without it.
        if (!selectedCategory) {
            reloadRows();
            return;
        }
    }

    m_rowPoems = rowsInOrder(listed);
    m_rowMemo.clear();
    m_allRows.reset();
    m_summarySearch = m_builtFor.search;
    m_preparePosition = 0;
}

// Counts and lists the poems of m_poems in the store's order; answers false when one of
// them has left the context, and the set must be fetched again.
bool LibraryBrowser::walkPoems(QList<PoemPtr> &listed)
{
    std::vector<Candidate> &live = m_live;
    m_counts = LibraryCounts{};
    m_scopeTotal = 0;
    m_countsByCategoryId.assign(m_countsByCategoryId.size(), 0);
    m_listings.assign(m_listings.size(), Listing{});
    live.clear();
    live.reserve(m_poems.size());
    listed.clear();
    listed.reserve(qsizetype(m_poems.size()));
    for (qsizetype index = 0; index < qsizetype(m_poems.size()); ++index) {
        const PoemPtr &poem = m_poems[size_t(index)];
        // A saved deletion lets go of the poem: the set has changed after all.
        if (poem->context() != &m_context) {
            m_poemsCurrent = false;
            return false;
        }
        DerivedPoemText *derived = nullptr;
        if (!poem->isInTrash())
            derived = &m_cache.entryAt(qsizetype(live.size()), *poem);
        Listing listing = listingOf(*poem, derived);
        count(listing, 1);
        listing.row = listing.listed() ? poem.get() : nullptr;
        listingSlot(poem->storeKey()) = listing;
        if (!derived)
            continue;
        Candidate candidate;
        candidate.poem = poem.get();
        candidate.derived = derived;
        candidate.storeOrder = qsizetype(live.size());
        candidate.storeKey = poem->storeKey();
        candidate.poemIndex = qint32(index);
        candidate.published = listing.published;
        candidate.podcast = listing.podcast;
        candidate.matched = listing.matches;
        if (listing.listed()) {
            candidate.listedIndex = qint32(listed.size());
            listed.append(poem);
        }
        live.push_back(candidate);
    }
    m_trashCount = m_counts.trashCount;
    return true;
}

// The filters applied again to what the last walk read; a search that only narrows the
// previous one reads only the texts that matched it.
void LibraryBrowser::relistWalked(QList<PoemPtr> &listed)
{
    const RememberedSearch *remembered = rememberedSearch();
    const bool narrows =
        !remembered && m_searchedFor.mode == m_builtFor.mode &&
        (m_searchedFor.everything || (narrowsNeedle(m_searchedFor.needles.text, m_needles.text) &&
                                      narrowsNeedle(m_searchedFor.needles.titleKey, m_needles.titleKey)));
    m_counts = LibraryCounts{};
    m_counts.trashCount = m_trashCount;
    m_scopeTotal = 0;
    m_countsByCategoryId.assign(m_countsByCategoryId.size(), 0);
    listed.clear();
    listed.reserve(qsizetype(m_live.size()));
    const std::vector<signed char> verdicts =
        remembered || m_builtFor.search.isEmpty() ? std::vector<signed char>() : searchAcrossCores(narrows);
    const auto prefetch = [this, narrows, remembered, &verdicts](size_t i) {
        if (i < m_live.size() && !remembered && verdicts.empty() && (!narrows || m_live[i].matched))
            m_live[i].derived->prefetchFolded();
    };
    for (size_t i = 0; i < prefetchDistance; ++i)
        prefetch(i);
    for (size_t i = 0; i < m_live.size(); ++i) {
        Candidate &candidate = m_live[i];
        prefetch(i + prefetchDistance);
        if (i + 2 * prefetchDistance < m_live.size())
            __builtin_prefetch(m_live[i + 2 * prefetchDistance].derived);
        Listing listing;
        listing.known = true;
        listing.live = true;
        listing.published = candidate.published;
        listing.podcast = candidate.podcast;
        std::optional<bool> knownMatch;
        if (remembered)
            knownMatch = bool(remembered->matched[i]);
        else if (narrows && !candidate.matched)
            knownMatch = false;
        else if (!verdicts.empty() && verdicts[i] >= 0)
            knownMatch = verdicts[i] == 1;
        decide(listing, *candidate.derived, knownMatch);
        count(listing, 1);
        candidate.matched = listing.matches;
        candidate.listedIndex = -1;
        listing.row = listing.listed() ? candidate.poem : nullptr;
        listingSlot(candidate.storeKey) = listing;
        if (listing.listed()) {
            candidate.listedIndex = qint32(listed.size());
            listed.append(m_poems[size_t(candidate.poemIndex)]);
        }
    }
}

std::vector<signed char> LibraryBrowser::searchAcrossCores(bool narrows) const
{
    // Below this many poems a search keystroke is quick enough on one core.
    constexpr size_t coreWorthy = 20000;
    const size_t cores = std::min<size_t>(std::max(1U, std::thread::hardware_concurrency()), 8);
    if (m_live.size() < coreWorthy || cores < 2)
        return {};
    std::vector<signed char> verdicts(m_live.size(), -1);
    // Each part reads only folded texts, which nothing changes meanwhile, and writes only
    // its own verdicts; folding (which may use shared state) is left to the scan.
    const auto judge = [&](size_t from, size_t to) {
        for (size_t i = from; i < to; ++i) {
            const Candidate &candidate = m_live[i];
            if (narrows && !candidate.matched)
                continue;
            if (i + prefetchDistance < to)
                m_live[i + prefetchDistance].derived->prefetchFolded();
            if (candidate.derived->isFolded())
                verdicts[i] = matchesFolded(*candidate.derived, m_needles) ? 1 : 0;
        }
    };
    const size_t part = (m_live.size() + cores - 1) / cores;
    std::vector<std::thread> helpers;
    helpers.reserve(cores - 1);
    for (size_t first = part; first < m_live.size(); first += part)
        helpers.emplace_back(judge, first, std::min(m_live.size(), first + part));
    judge(0, std::min(m_live.size(), part));
    for (std::thread &helper : helpers)
        helper.join();
    return verdicts;
}

// Deleting a letter returns to a search made a keystroke ago; its verdicts hold while no
// poem has changed.
const LibraryBrowser::RememberedSearch *LibraryBrowser::rememberedSearch() const
{
    const auto found = std::find_if(m_rememberedSearches.cbegin(), m_rememberedSearches.cend(),
                                    [this](const RememberedSearch &search) {
                                        return search.mode == m_builtFor.mode && search.needles == m_needles;
                                    });
    return found == m_rememberedSearches.cend() ? nullptr : &*found;
}

void LibraryBrowser::rememberSearch()
{
    if (m_builtFor.search.isEmpty() || rememberedSearch())
        return;
    if (m_rememberedSearches.size() >= rememberedSearchLimit)
        m_rememberedSearches.erase(m_rememberedSearches.begin());
    RememberedSearch search{m_builtFor.mode, m_needles, std::vector<bool>(m_live.size())};
    for (size_t i = 0; i < m_live.size(); ++i)
        search.matched[i] = m_live[i].matched;
    m_rememberedSearches.push_back(std::move(search));
}

// A notice of changed poems changes the set only when one of them came or went.
void LibraryBrowser::noteChangedPoems(const QSet<qint64> &poemKeys)
{
    // What the walk read of these poems holds again once applyChanges has taken them over.
    if (m_unchangedSinceWalk)
        m_unretaken.unite(poemKeys);
    if (m_unretaken.size() > incrementalLimit) {
        m_unchangedSinceWalk = false;
        m_unretaken.clear();
    }
    if (!m_poemsCurrent)
        return;
    if (poemKeys.size() > incrementalLimit) {
        m_poemsCurrent = false;
        return;
    }
    for (const qint64 key : poemKeys) {
        const auto known =
            std::lower_bound(m_poems.cbegin(), m_poems.cend(), key,
                             [](const PoemPtr &poem, qint64 wanted) { return poem->storeKey() < wanted; });
        const Poem *knownPoem = known != m_poems.cend() && (*known)->storeKey() == key ? known->get() : nullptr;
        if (m_context.poemWithKey(key).get() != knownPoem) {
            m_poemsCurrent = false;
            return;
        }
    }
}

// The order of every poem in the walk is kept per sort mode while no poem changes; the
// rows are the listed ones in that order, which spares sorting on each search keystroke.
QList<PoemPtr> LibraryBrowser::rowsInOrder(QList<PoemPtr> &listed)
{
    const std::vector<Candidate> &live = m_live;
    BaseOrder &base = m_baseOrders[size_t(m_builtFor.sort)];
    if (base.valid && base.revision == m_cache.revision())
        placeAgain(base, m_builtFor.sort);
    if (!base.valid || base.revision != m_cache.revision()) {
        std::vector<Candidate> sorted = live;
        sortCandidates(sorted);
        base.positions.resize(sorted.size());
        std::transform(sorted.cbegin(), sorted.cend(), base.positions.begin(),
                       [](const Candidate &candidate) { return qint32(candidate.storeOrder); });
        base.revision = m_cache.revision();
        base.valid = true;
        base.unplaced.clear();
    }
    QList<PoemPtr> rows;
    rows.reserve(listed.size());
    for (const qint32 position : base.positions) {
        const qint32 index = live[size_t(position)].listedIndex;
        if (index < 0)
            continue;
        Q_ASSERT(listed.at(index).get() == live[size_t(position)].poem);
        rows.append(std::move(listed[index]));
    }
    return rows;
}

bool LibraryBrowser::prepareSearch(qsizetype count)
{
    if (m_preparePosition < 0)
        return true;
    m_preparePosition = m_cache.foldFrom(m_preparePosition, count);
    return m_preparePosition < 0;
}

bool LibraryBrowser::applyChanges(const QSet<qint64> &poemKeys, LibraryRowListener &listener)
{
    if (poemKeys.isEmpty())
        return false;
    const bool filtersChanged = currentFilters() != m_builtFor;
    if (!m_built || filtersChanged || poemKeys.size() > incrementalLimit) {
        listener.rowsAboutToBeReset();
        reloadRows();
        listener.rowsReset();
        return true;
    }
    // Every change of what an order compares shows as a new cache revision. The kept orders
    // follow when each one came from a poem taken over in place, and nothing else changed.
    const quint64 revisionBefore = m_cache.revision();
    quint64 followed = 0;
    std::vector<qint32> changedPositions;
    const auto relistAndRetake = [&](qint64 key) {
        const quint64 before = m_cache.revision();
        Relisting relisted = relist(key);
        const qint32 position = retake(key);
        if (position < 0) {
            m_unchangedSinceWalk = false;
        } else if (m_cache.revision() != before) {
            followed += m_cache.revision() - before;
            changedPositions.push_back(position);
        }
        return relisted;
    };
    if (poemKeys.size() == 1) {
        movePoem(relistAndRetake(*poemKeys.cbegin()), listener);
    } else {
        // Each place is searched among rows that are all in order: the changed ones leave
        // first, since their old places no longer follow the sort.
        std::vector<PoemPtr> toPlace;
        for (const qint64 key : poemKeys) {
            const Relisting relisted = relistAndRetake(key);
            removeRow(rowOf(relisted.listedBefore), listener);
            if (relisted.poem)
                toPlace.push_back(relisted.poem);
        }
        for (const PoemPtr &poem : toPlace)
            insertRow(poem, sortedPlace(*poem, -1), listener);
    }
    if (m_cache.revision() - revisionBefore == followed)
        noteUnplaced(changedPositions, revisionBefore);
    rebuildCategoryFilters();
    if (selectedCategory) {
        resetVanishedCategory();
        if (!selectedCategory) {
            listener.rowsAboutToBeReset();
            reloadRows();
            listener.rowsReset();
        }
    }
    return true;
}

LibraryBrowser::Relisting LibraryBrowser::relist(qint64 storeKey)
{
    Listing &slot = listingSlot(storeKey);
    const Listing before = slot;
    PoemPtr poem = m_context.poemWithKey(storeKey);
    Listing after = poem ? listingOf(*poem, nullptr) : Listing{};
    count(before, -1);
    count(after, 1);
    after.row = after.listed() ? poem.get() : nullptr;
    slot = after;
    m_allRows.reset();
    m_rowMemo.erase(storeKey);
    return Relisting{before.row, after.listed() ? std::move(poem) : nullptr};
}

// A changed poem that is still the live poem the walk saw keeps its place in the walk, and
// what the walk read of it is read again. Answers that place, or -1 when the live poems
// are no longer those of the walk (a new, trashed or vanished poem), which takes a walk.
qint32 LibraryBrowser::retake(qint64 storeKey)
{
    const auto found =
        std::lower_bound(m_live.begin(), m_live.end(), storeKey,
                         [](const Candidate &candidate, qint64 key) { return candidate.storeKey < key; });
    if (found == m_live.end() || found->storeKey != storeKey)
        return -1;
    const Listing &listing = listingSlot(storeKey);
    if (!listing.live || m_context.poemWithKey(storeKey).get() != found->poem)
        return -1;
    found->published = listing.published;
    found->podcast = listing.podcast;
    found->matched = listing.matches;
    // Their verdicts were on the poem as it was.
    m_rememberedSearches.clear();
    m_unretaken.remove(storeKey);
    return qint32(found - m_live.begin());
}

// The orders kept since revision stay of use: the changed poems take their places again
// when an order is next used, so a change of the sort after an edit does not sort every
// poem again, and a keystroke does not place the poem in orders nobody looks at.
void LibraryBrowser::noteUnplaced(const std::vector<qint32> &positions, quint64 revision)
{
    for (BaseOrder &base : m_baseOrders) {
        if (!base.valid || base.revision != revision)
            continue;
        for (const qint32 position : positions) {
            if (std::find(base.unplaced.cbegin(), base.unplaced.cend(), position) == base.unplaced.cend())
                base.unplaced.push_back(position);
        }
        base.revision = m_cache.revision();
        base.valid = base.unplaced.size() <= unplacedLimit;
    }
}

void LibraryBrowser::placeAgain(BaseOrder &base, PoemSortMode sort)
{
    if (base.unplaced.empty())
        return;
    const quint64 revision = m_cache.revision();
    std::vector<qint32> leaving = base.unplaced;
    std::sort(leaving.begin(), leaving.end());
    std::erase_if(base.positions,
                  [&](qint32 position) { return std::binary_search(leaving.cbegin(), leaving.cend(), position); });
    for (const qint32 position : base.unplaced) {
        const Poem &poem = *m_live[size_t(position)].poem;
        const auto place = std::partition_point(base.positions.begin(), base.positions.end(), [&](qint32 other) {
            return sortsBefore(*m_live[size_t(other)].poem, poem, sort);
        });
        base.positions.insert(place, position);
    }
    base.unplaced.clear();
    // Comparing reads other poems, which may have changed unannounced; then sort anew.
    base.valid = m_cache.revision() == revision;
}

// By the pointer the rows hold, which keeps the poem alive: no poem is read on the way.
qsizetype LibraryBrowser::rowOf(const Poem *listed) const
{
    if (!listed)
        return -1;
    const auto found = std::find_if(m_rowPoems.cbegin(), m_rowPoems.cend(),
                                    [listed](const PoemPtr &row) { return row.get() == listed; });
    return found == m_rowPoems.cend() ? -1 : qsizetype(found - m_rowPoems.cbegin());
}

void LibraryBrowser::removeRow(qsizetype row, LibraryRowListener &listener)
{
    if (row < 0)
        return;
    listener.rowAboutToBeRemoved(row);
    m_rowPoems.removeAt(row);
    listener.rowRemoved();
}

void LibraryBrowser::insertRow(const PoemPtr &poem, qsizetype row, LibraryRowListener &listener)
{
    listener.rowAboutToBeInserted(row);
    m_rowPoems.insert(row, poem);
    listener.rowInserted();
}

// One changed poem keeps its row and moves it, so a view keeps its selection on it.
void LibraryBrowser::movePoem(const Relisting &relisted, LibraryRowListener &listener)
{
    const qsizetype from = rowOf(relisted.listedBefore);
    if (!relisted.poem) {
        removeRow(from, listener);
        return;
    }
    const qsizetype to = sortedPlace(*relisted.poem, from);
    if (from < 0) {
        insertRow(relisted.poem, to, listener);
        return;
    }
    if (to != from) {
        // Before the row it goes in front of, counted with the poem still in its old place.
        listener.rowAboutToBeMoved(from, to > from ? to + 1 : to);
        m_rowPoems.move(from, to);
        listener.rowMoved();
    }
    listener.rowChanged(to);
}

// The place among the rows, the poem's own row at skipped (or -1) left out.
qsizetype LibraryBrowser::sortedPlace(const Poem &poem, qsizetype skipped) const
{
    const qsizetype others = m_rowPoems.size() - (skipped >= 0 ? 1 : 0);
    qsizetype low = 0;
    qsizetype high = others;
    while (low < high) {
        const qsizetype middle = low + (high - low) / 2;
        const qsizetype row = skipped >= 0 && middle >= skipped ? middle + 1 : middle;
        if (sortsBefore(*m_rowPoems.at(row), poem, m_builtFor.sort))
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

// The order of sortCandidates, for two poems; the store's order is the order of the keys.
bool LibraryBrowser::sortsBefore(const Poem &a, const Poem &b, PoemSortMode sort) const
{
    const auto byStampThenStore = [&a, &b](qint64 stampA, qint64 stampB) {
        if (stampA != stampB)
            return stampA > stampB;
        return a.storeKey() < b.storeKey();
    };
    const auto byTitleKey = [this, &a, &b] {
        return m_cache.entry(a).titleSortKey(a).compare(m_cache.entry(b).titleSortKey(b));
    };
    switch (sort) {
    case PoemSortMode::recentlyChanged:
        return byStampThenStore(stampOf(a.updatedAt()), stampOf(b.updatedAt()));
    case PoemSortMode::date:
        return byStampThenStore(stampOf(a.date()), stampOf(b.date()));
    case PoemSortMode::title: {
        const int byKey = compareOptional(a.titleNormalized(), b.titleNormalized());
        return byKey != 0 ? byKey < 0 : a.storeKey() < b.storeKey();
    }
    case PoemSortMode::missingTextFirst: {
        const bool textA = m_cache.entry(a).hasUsableText();
        const bool textB = m_cache.entry(b).hasUsableText();
        if (textA != textB)
            return !textA;
        const int byTitle = byTitleKey();
        return byTitle != 0 ? byTitle < 0 : byStampThenStore(stampOf(a.updatedAt()), stampOf(b.updatedAt()));
    }
    case PoemSortMode::category: {
        const QString &nameA = m_cache.categories().name(m_cache.entry(a).categoryId());
        const QString &nameB = m_cache.categories().name(m_cache.entry(b).categoryId());
        if (nameA.isEmpty() != nameB.isEmpty())
            return nameB.isEmpty();
        if (const int byName = TextComparison::localizedStandardCompare(nameA, nameB); byName != 0)
            return byName < 0;
        if (const int byTitle = byTitleKey(); byTitle != 0)
            return byTitle < 0;
        if (const int byCategory = compareOptional(a.category(), b.category()); byCategory != 0)
            return byCategory < 0;
        if (const int byKey = compareOptional(a.titleNormalized(), b.titleNormalized()); byKey != 0)
            return byKey < 0;
        return a.storeKey() < b.storeKey();
    }
    }
    return false;
}

void LibraryBrowser::resetVanishedCategory()
{
    if (!selectedCategory)
        return;
    const bool present = std::any_of(m_categoryFilters.begin(), m_categoryFilters.end(),
                                     [this](const CategoryFilter &filter) { return filter.name == *selectedCategory; });
    if (!present)
        selectedCategory.reset();
}

bool LibraryBrowser::matchesSearch(DerivedPoemText &derived, const SearchNeedles &needles) const
{
    derived.fold();
    return matchesFolded(derived, needles);
}

bool LibraryBrowser::matchesFolded(const DerivedPoemText &derived, const SearchNeedles &needles) const
{
    switch (m_builtFor.mode) {
    case SearchMode::title:
        return derived.titleContains(needles.text) || derived.titleKeyContains(needles.titleKey);
    case SearchMode::text:
        return derived.textContains(needles.text);
    case SearchMode::category:
        return derived.categoryContains(needles.text);
    case SearchMode::all:
        return derived.anyFieldContains(needles.text) || derived.titleKeyContains(needles.titleKey);
    }
    return false;
}

bool LibraryBrowser::inScope(const Listing &listing, SidebarScope scope)
{
    switch (scope) {
    case SidebarScope::archive:
        return true;
    case SidebarScope::missingText:
        return !listing.hasText;
    case SidebarScope::published:
        return listing.published;
    case SidebarScope::podcast:
        return listing.podcast;
    }
    return false;
}

// The store sorts first and the in-memory stage re-sorts stably, which is one sort by the
// in-memory keys, then the store's keys, then the store's order.
void LibraryBrowser::sortCandidates(std::vector<Candidate> &candidates) const
{
    const auto byStampThenStore = [](const Candidate &a, const Candidate &b) {
        if (a.stamp != b.stamp)
            return a.stamp > b.stamp;
        return a.storeOrder < b.storeOrder;
    };
    switch (m_builtFor.sort) {
    case PoemSortMode::recentlyChanged:
        for (Candidate &candidate : candidates)
            candidate.stamp = candidate.derived->updatedStamp();
        std::sort(candidates.begin(), candidates.end(), byStampThenStore);
        return;
    case PoemSortMode::date:
        for (Candidate &candidate : candidates)
            candidate.stamp = candidate.derived->dateStamp();
        std::sort(candidates.begin(), candidates.end(), byStampThenStore);
        return;
    case PoemSortMode::title:
        std::sort(candidates.begin(), candidates.end(), [](const Candidate &a, const Candidate &b) {
            const int byKey = compareOptional(a.poem->titleNormalized(), b.poem->titleNormalized());
            return byKey != 0 ? byKey < 0 : a.storeOrder < b.storeOrder;
        });
        return;
    case PoemSortMode::missingTextFirst:
        for (Candidate &candidate : candidates) {
            candidate.stamp = candidate.derived->updatedStamp();
            candidate.hasText = candidate.derived->hasUsableText();
            setTitleKey(candidate);
        }
        std::sort(candidates.begin(), candidates.end(), [&](const Candidate &a, const Candidate &b) {
            if (a.hasText != b.hasText)
                return !a.hasText;
            const int byTitle = compareTitleKeys(a, b);
            return byTitle != 0 ? byTitle < 0 : byStampThenStore(a, b);
        });
        return;
    case PoemSortMode::category:
        sortByCategory(candidates);
        return;
    }
}

void LibraryBrowser::sortByCategory(std::vector<Candidate> &candidates) const
{
    const CategoryNameTable &names = m_cache.categories();
    std::vector<bool> present(size_t(names.size()), false);
    for (const Candidate &candidate : candidates)
        present[size_t(candidate.derived->categoryId())] = true;
    QStringList distinct;
    for (int id = 0; id < names.size(); ++id) {
        if (present[size_t(id)] && !names.name(id).isEmpty())
            distinct.append(names.name(id));
    }
    const QHash<QString, int> ranks = categoryRanks(distinct);
    std::vector<int> rankOfId(size_t(names.size()), std::numeric_limits<int>::max());
    for (auto it = ranks.cbegin(); it != ranks.cend(); ++it)
        rankOfId[size_t(names.find(it.key()))] = it.value();

    for (Candidate &candidate : candidates) {
        candidate.categoryRank = rankOfId[size_t(candidate.derived->categoryId())];
        setTitleKey(candidate);
    }
    std::sort(candidates.begin(), candidates.end(), [](const Candidate &a, const Candidate &b) {
        if (a.categoryRank != b.categoryRank)
            return a.categoryRank < b.categoryRank;
        if (const int byTitle = compareTitleKeys(a, b); byTitle != 0)
            return byTitle < 0;
        if (const int byCategory = compareOptional(a.poem->category(), b.poem->category()); byCategory != 0)
            return byCategory < 0;
        if (const int byKey = compareOptional(a.poem->titleNormalized(), b.poem->titleNormalized()); byKey != 0)
            return byKey < 0;
        return a.storeOrder < b.storeOrder;
    });
}

int LibraryBrowser::compareTitleKeys(const Candidate &a, const Candidate &b)
{
    if (a.titlePrefix != b.titlePrefix)
        return a.titlePrefix < b.titlePrefix ? -1 : 1;
    return a.titleKey->compare(*b.titleKey);
}

const PoemRow &LibraryBrowser::row(qsizetype index) const
{
    const Poem &poem = *m_rowPoems.at(index);
    const auto memo = m_rowMemo.find(poem.storeKey());
    if (memo != m_rowMemo.end())
        return memo->second;
    return m_rowMemo.emplace(poem.storeKey(), makeRow(poem, m_cache.entry(poem))).first->second;
}

const QList<PoemRow> &LibraryBrowser::rows() const
{
    if (!m_allRows) {
        QList<PoemRow> all;
        all.reserve(m_rowPoems.size());
        for (qsizetype i = 0; i < m_rowPoems.size(); ++i)
            all.append(row(i));
        m_allRows = std::move(all);
    }
    return *m_allRows;
}

qsizetype LibraryBrowser::indexOfObjectID(const QString &objectID) const
{
    const PoemPtr poem = m_context.poemWithObjectID(objectID);
    return poem ? m_rowPoems.indexOf(poem) : -1;
}

PoemRow LibraryBrowser::makeRow(const Poem &poem, DerivedPoemText &derived)
{
    PoemRow row;
    row.objectID = derived.objectID(poem);
    row.id = derived.idText(poem);
    row.title = derived.rowTitle(poem);
    row.dateText = derived.dateText(poem);
    row.category = poem.category();
    row.excerpt = derived.excerpt(poem);
    row.isPublished = poem.isPublished();
    row.inPodcast = poem.inPodcast();
    row.statusText = PoemRowText::statusText(row.isPublished, row.inPodcast);
    row.hasText = derived.hasUsableText();
    return row;
}

QList<CategoryFilter> LibraryBrowser::makeCategoryFilters(const QList<PoemPtr> &poems, const QStringList &configured)
{
    QHash<QString, int> countsByCategory;
    for (const PoemPtr &poem : poems)
        countsByCategory[poem->category() ? poem->category()->trimmed() : QString()] += 1;
    return filtersFromCounts(countsByCategory, configured);
}

QList<CategoryFilter> LibraryBrowser::filtersFromCounts(const QHash<QString, int> &countsByCategory,
                                                        const QStringList &configured)
{
    // Spelling is decided once per distinct name, not per poem.
    QHash<QString, int> byName;
    for (auto it = countsByCategory.cbegin(); it != countsByCategory.cend(); ++it) {
        QString name = it.key();
        for (const QString &entry : configured) {
            const QString configuredName = entry.trimmed();
            if (!name.isEmpty() && TextComparison::equalsIgnoringCaseAndDiacritics(configuredName, name)) {
                name = configuredName;
                break;
            }
        }
        byName[name] += it.value();
    }

    QList<CategoryFilter> filters;
    for (auto it = byName.cbegin(); it != byName.cend(); ++it)
        filters.append(CategoryFilter{it.key(), it.value()});
    std::sort(filters.begin(), filters.end(), [](const CategoryFilter &a, const CategoryFilter &b) {
        if (a.name.isEmpty() != b.name.isEmpty())
            return b.name.isEmpty();
        if (a.count != b.count)
            return a.count > b.count;
        const int byDisplayName = TextComparison::localizedStandardCompare(a.displayName(), b.displayName());
        return byDisplayName != 0 ? byDisplayName < 0 : a.name < b.name;
    });
    return filters;
}

bool LibraryBrowser::showsResultSummary() const
{
    return !m_summarySearch.isEmpty() || sidebarScope != SidebarScope::archive || selectedCategory.has_value();
}

QString LibraryBrowser::resultSummaryText() const
{
    const int found = int(m_rowPoems.size());
    if (!m_summarySearch.isEmpty()) {
        if (m_scopeTotal >= 1) {
            return countText(found, tr("%1 von %2 Gedicht gefunden"), tr("%1 von %2 Gedichte gefunden"))
                .arg(m_scopeTotal);
        }
        return countText(found, tr("%1 Gedicht gefunden"), tr("%1 Gedichte gefunden"));
    }
    if (selectedCategory) {
        const QString name = CategoryFilter{*selectedCategory, 0}.displayName();
        return countText(found, tr("%1 Gedicht in %2"), tr("%1 Gedichte in %2")).arg(name);
    }
    switch (sidebarScope) {
    case SidebarScope::archive:
        return {};
    case SidebarScope::missingText:
        return countText(found, tr("%1 Gedicht ohne Text"), tr("%1 Gedichte ohne Text"));
    case SidebarScope::published:
        return countText(found, tr("%1 veröffentlichte Gedicht"), tr("%1 veröffentlichte Gedichte"));
    case SidebarScope::podcast:
        return countText(found, tr("%1 Podcast-Gedicht"), tr("%1 Podcast-Gedichte"));
    }
    return {};
}

QString LibraryBrowser::missingTextHint()
{
    return tr("Diese Ansicht zeigt nur Gedichte ohne hinterlegten Text. Nutze „Ordner scan“ für mehrere Dateien "
              "oder „Text importieren“ am Gedicht.");
}

LibraryBrowser::ActionOutcome LibraryBrowser::addPoem(const QDateTime &now)
{
    ActionOutcome outcome;
    outcome.poem = PoemFactory::makeNewPoem(m_context, now);
    outcome.saveError = m_context.save().errorMessage();
    selectedPoemObjectID = outcome.poem->objectID();
    return outcome;
}

LibraryBrowser::ActionOutcome LibraryBrowser::duplicatePoem(const PoemPtr &source, const QDateTime &now)
{
    ActionOutcome outcome;
    if (!source || source->isInTrash())
        return outcome;
    outcome.poem = PoemFactory::makeDuplicate(m_context, *source, now);
    outcome.saveError = m_context.save().errorMessage();
    selectedPoemObjectID = outcome.poem->objectID();
    outcome.statusText = tr("Gedicht dupliziert: %1").arg(outcome.poem->title().value_or(QString()));
    return outcome;
}

LibraryBrowser::ActionOutcome LibraryBrowser::moveToTrash(const PoemPtr &poem, const QDateTime &now)
{
    ActionOutcome outcome;
    if (!poem || poem->isInTrash())
        return outcome;
    outcome.poem = poem;
    poem->setDeletedAt(now);
    poem->setUpdatedAt(now);
    outcome.saveError = m_context.save().errorMessage();
    if (selectedPoemObjectID == poem->objectID())
        selectedPoemObjectID.reset();
    const QString title = poem->title().value_or(QString()).trimmed();
    outcome.statusText =
        tr("Gedicht in den Papierkorb verschoben: %1").arg(title.isEmpty() ? tr("(ohne Titel)") : title);
    return outcome;
}
