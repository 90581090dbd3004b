#pragma once

#include "archive/CategoryFilter.h"
#include "archive/LibraryCounts.h"
#include "archive/LibraryRowListener.h"
#include "archive/Poem.h"
#include "archive/PoemRow.h"
#include "archive/PoemSortMode.h"
#include "archive/PoemTextCache.h"
#include "archive/SearchMode.h"
#include "archive/SidebarScope.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QHash>
#include <QList>
#include <QSet>
#include <QStringList>

#include <array>
#include <optional>
#include <unordered_map>
#include <vector>

class ArchiveContext;

// The library list behind the main window: the filter state, the rows it yields with their
// counts and category filters, and the list actions. Plain state without widgets, so the
// window, the command line and the tests run the same rebuild.
class LibraryBrowser {
    Q_DECLARE_TR_FUNCTIONS(LibraryBrowser)

public:
    explicit LibraryBrowser(ArchiveContext &context);
    ~LibraryBrowser();
    LibraryBrowser(const LibraryBrowser &) = delete;
    LibraryBrowser &operator=(const LibraryBrowser &) = delete;

    // The outcome of a list action: the poem it made or moved and the status line. The rows
    // follow through applyChanges with the context's notice of the save. A failed
    // save is not reported to the user (the changes stay and go with the next save), but
    // callers that must not claim success can read saveError.
    struct ActionOutcome {
        PoemPtr poem;
        QString statusText;
        QString saveError;
    };

    QString searchText;
    SearchMode searchMode = SearchMode::title;
    SidebarScope sidebarScope = SidebarScope::archive;
    PoemSortMode sortMode = PoemSortMode::recentlyChanged;
    std::optional<QString> selectedCategory;
    std::optional<QString> selectedPoemObjectID;

    // Rebuilds the counts, the category filters and the rows from the context.
    void reloadRows();
    // Takes over changed poems (the keys the context announced) without reading every
    // poem again: each changed poem leaves its row and takes its sorted place, counts and
    // category filters change by the difference. When the filters were changed since the
    // last rebuild, or a selected category vanishes, or many poems changed, it rebuilds.
    // Answers whether anything the rows, counts or filters show has changed.
    bool applyChanges(const QSet<qint64> &poemKeys, LibraryRowListener &listener);
    // Beyond this many changed poems one rebuild is cheaper than placing each.
    static constexpr qsizetype incrementalLimit = 256;
    // Prepares the search fields of up to count more poems, so that the first search does
    // not wait for all of them; answers true once every poem is prepared. Searching before
    // that is right, only slower.
    bool prepareSearch(qsizetype count);
    // The configured category names that decide the filters' spelling; read from the
    // preferences unless set (the command line and the tests set them).
    void setConfiguredCategories(std::optional<QStringList> categories)
    {
        m_configuredCategories = std::move(categories);
    }

    // The rows are made when first asked for: a rebuild orders the poems, and a window
    // shows a screenful of them.
    qsizetype rowCount() const { return m_rowPoems.size(); }
    const PoemRow &row(qsizetype index) const;
    const QList<PoemRow> &rows() const;
    const PoemPtr &poemAt(qsizetype index) const { return m_rowPoems.at(index); }
    // -1 when the poem is not among the rows.
    qsizetype indexOfObjectID(const QString &objectID) const;
    const QList<CategoryFilter> &categoryFilters() const { return m_categoryFilters; }
    const LibraryCounts &counts() const { return m_counts; }
    bool showsResultSummary() const;
    QString resultSummaryText() const;
    // The hint above the list in the scope of poems without text.
    static QString missingTextHint();

    ActionOutcome addPoem(const QDateTime &now);
    ActionOutcome duplicatePoem(const PoemPtr &source, const QDateTime &now);
    ActionOutcome moveToTrash(const PoemPtr &poem, const QDateTime &now);

    static bool hasUsableText(const Poem &poem);
    static QList<CategoryFilter> makeCategoryFilters(const QList<PoemPtr> &poems, const QStringList &configured);
    int refreshTrashCount();

    ArchiveContext &context() const { return m_context; }

private:
    // A live poem of the last walk: what the filters and the sort read of it, kept until
    // a poem changes.
    struct Candidate {
        const Poem *poem = nullptr;
        DerivedPoemText *derived = nullptr;
        qsizetype storeOrder = 0;
        qint64 stamp = 0; // msecs of the date the store sorts by; nil sorts lowest
        int categoryRank = 0;
        const QByteArray *titleKey = nullptr;
        // The key's first eight bytes, so most comparisons stay in the candidate.
        quint64 titlePrefix = 0;
        qint64 storeKey = 0;
        qint32 poemIndex = 0;    // in m_poems
        qint32 listedIndex = -1; // among the poems fetched for the rows
        bool hasText = false;
        bool published = false;
        bool podcast = false;
        bool matched = false; // by the last search
    };

    // Walk positions in one sort mode's order, as of a revision of the cache.
    struct BaseOrder {
        std::vector<qint32> positions;
        quint64 revision = 0;
        bool valid = false;
        // Positions whose poems changed since, to be placed again when the order is used.
        std::vector<qint32> unplaced;
    };
    // Beyond this many changed poems one sort is cheaper than placing each.
    static constexpr size_t unplacedLimit = 1024;

    struct SearchNeedles {
        QByteArray text;     // for title, text and category
        QByteArray titleKey; // for titleNormalized: the search text's own title key
        bool operator==(const SearchNeedles &other) const = default;
    };

    // A search's verdict on each poem of the walk, by position.
    struct RememberedSearch {
        SearchMode mode = SearchMode::title;
        SearchNeedles needles;
        std::vector<bool> matched;
    };
    static constexpr size_t rememberedSearchLimit = 8;

    // The search whose verdicts the candidates keep.
    struct SearchedFor {
        bool everything = true;
        SearchMode mode = SearchMode::title;
        SearchNeedles needles;
    };

    // What the rows were last rebuilt for; a change of any of it needs a rebuild.
    struct Filters {
        QString search;
        SearchMode mode = SearchMode::title;
        SidebarScope scope = SidebarScope::archive;
        PoemSortMode sort = PoemSortMode::recentlyChanged;
        std::optional<QString> category;
        bool operator==(const Filters &other) const = default;
    };

    // Where one poem counts and whether it has a row, as of the last time it was looked at.
    struct Listing {
        const Poem *row = nullptr; // while it has a row, which keeps the poem alive
        int categoryId = -1;
        bool known = false;
        bool live = false;
        bool hasText = false;
        bool published = false;
        bool podcast = false;
        bool inCategory = false;
        bool inScope = false;
        bool matches = false;
        bool listed() const { return live && inCategory && matches && inScope; }
    };

    Filters currentFilters() const;
    bool matchesSearch(DerivedPoemText &derived, const SearchNeedles &needles) const;
    bool matchesFolded(const DerivedPoemText &derived, const SearchNeedles &needles) const;
    // The search's verdict on each poem of the walk that the scan would read, worked out
    // on every core: 1 or 0, or -1 where the scan decides (not folded yet, or not read).
    std::vector<signed char> searchAcrossCores(bool narrows) const;
    static bool inScope(const Listing &listing, SidebarScope scope);
    void decide(Listing &listing, DerivedPoemText &texts, std::optional<bool> knownMatch) const;
    const RememberedSearch *rememberedSearch() const;
    void rememberSearch();
    // derived: the poem's entry when the caller has it, else null.
    Listing listingOf(const Poem &poem, DerivedPoemText *derived) const;
    void count(const Listing &listing, int sign);
    Listing &listingSlot(qint64 storeKey);
    void rebuildCategoryFilters();
    bool walkPoems(QList<PoemPtr> &listed);
    void relistWalked(QList<PoemPtr> &listed);
    void noteChangedPoems(const QSet<qint64> &poemKeys);
    QList<PoemPtr> rowsInOrder(QList<PoemPtr> &listed);
    void sortCandidates(std::vector<Candidate> &candidates) const;
    void sortByCategory(std::vector<Candidate> &candidates) const;
    bool sortsBefore(const Poem &a, const Poem &b, PoemSortMode sort) const;
    qsizetype sortedPlace(const Poem &poem, qsizetype skipped) const;
    qint32 retake(qint64 storeKey);
    void noteUnplaced(const std::vector<qint32> &positions, quint64 revision);
    void placeAgain(BaseOrder &base, PoemSortMode sort);
    // A changed poem's counts taken over: whether it had a row, and the poem when it
    // has one now.
    struct Relisting {
        const Poem *listedBefore = nullptr;
        PoemPtr poem;
    };
    Relisting relist(qint64 storeKey);
    qsizetype rowOf(const Poem *listed) const;
    void removeRow(qsizetype row, LibraryRowListener &listener);
    void insertRow(const PoemPtr &poem, qsizetype row, LibraryRowListener &listener);
    void movePoem(const Relisting &relisted, LibraryRowListener &listener);
    static PoemRow makeRow(const Poem &poem, DerivedPoemText &derived);
    static int compareTitleKeys(const Candidate &a, const Candidate &b);
    void resetVanishedCategory();
    static QList<CategoryFilter> filtersFromCounts(const QHash<QString, int> &countsByName,
                                                   const QStringList &configured);

    ArchiveContext &m_context;
    mutable PoemTextCache m_cache;
    std::optional<QStringList> m_configuredCategories;
    QList<PoemPtr> m_rowPoems;
    mutable std::unordered_map<qint64, PoemRow> m_rowMemo; // by store key
    mutable std::optional<QList<PoemRow>> m_allRows;
    QList<CategoryFilter> m_categoryFilters;
    LibraryCounts m_counts;
    QString m_summarySearch; // the trimmed search text of the last rebuild
    int m_scopeTotal = 0;    // poems in the scope and category, search aside
    Filters m_builtFor;
    bool m_built = false;
    SearchNeedles m_needles;
    QStringList m_spelling; // the configured names the filters were spelled with
    std::vector<int> m_countsByCategoryId;
    std::vector<Listing> m_listings; // by store key
    qsizetype m_preparePosition = 0;
    std::array<BaseOrder, allPoemSortModes.size()> m_baseOrders;
    std::vector<PoemPtr> m_poems; // every poem of the last walk, by store key
    bool m_poemsCurrent = false;  // whether the context still holds exactly those
    bool m_unchangedSinceWalk = false;
    QSet<qint64> m_unretaken;      // changed since the walk and not yet taken over by applyChanges
    std::vector<Candidate> m_live; // the live poems of the last walk, in its order
    int m_trashCount = 0;          // as the last walk counted
    SearchedFor m_searchedFor;
    std::vector<RememberedSearch> m_rememberedSearches; // while no poem changed
    QMetaObject::Connection m_changeConnection;
};
