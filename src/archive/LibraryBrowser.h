#pragma once

#include "archive/CategoryFilter.h"
#include "archive/LibraryCounts.h"
#include "archive/Poem.h"
#include "archive/PoemRow.h"
#include "archive/PoemSortMode.h"
#include "archive/PoemTextCache.h"
#include "archive/SearchMode.h"
#include "archive/SidebarScope.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QList>
#include <QStringList>

#include <optional>

class ArchiveContext;

// The library list behind the main window: the filter state, the rows it yields with their
// counts and category filters, and the list actions. Plain state without widgets, so the
// window, the command line and the tests run the same rebuild.
class LibraryBrowser {
    Q_DECLARE_TR_FUNCTIONS(LibraryBrowser)

public:
    explicit LibraryBrowser(ArchiveContext &context);

    // The outcome of a list action: the poem it made or moved and the status line. A failed
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
    // The configured category names that decide the filters' spelling; read from the
    // preferences unless set (the command line and the tests set them).
    void setConfiguredCategories(std::optional<QStringList> categories)
    {
        m_configuredCategories = std::move(categories);
    }

    const QList<PoemRow> &rows() const { return m_rows; }
    const QList<CategoryFilter> &categoryFilters() const { return m_categoryFilters; }
    const LibraryCounts &counts() const { return m_counts; }
    bool showsResultSummary() const;
    QString resultSummaryText() const;
    // The hint the list shows instead of rows in the scope of poems without text.
    static QString missingTextHint();

    ActionOutcome addPoem(const QDateTime &now);
    ActionOutcome duplicatePoem(const PoemPtr &source, const QDateTime &now);
    ActionOutcome moveToTrash(const PoemPtr &poem, const QDateTime &now);

    static bool hasUsableText(const Poem &poem);
    static QList<CategoryFilter> makeCategoryFilters(const QList<PoemPtr> &poems, const QStringList &configured);
    int refreshTrashCount();

    ArchiveContext &context() const { return m_context; }

private:
    // A poem on its way into the rows, with the keys its sort compares.
    struct Candidate {
        const Poem *poem = nullptr;
        qint64 stamp = 0; // msecs of the date the store sorts by; nil sorts lowest
        int categoryRank = 0;
        const QCollatorSortKey *titleKey = nullptr;
        bool hasText = false;
    };

    QList<PoemPtr> livePoems() const;
    bool matchesSearch(const Poem &poem, const QString &needle, const QString &titleKeyNeedle);
    bool matchesCategory(const Poem &poem) const;
    bool inScope(const Poem &poem, SidebarScope scope);
    void sortStoreOrder(std::vector<Candidate> &candidates);
    void sortInMemory(std::vector<Candidate> &candidates);
    PoemRow makeRow(const Poem &poem);
    void resetVanishedCategory();

    ArchiveContext &m_context;
    PoemTextCache m_cache;
    std::optional<QStringList> m_configuredCategories;
    QList<PoemRow> m_rows;
    QList<CategoryFilter> m_categoryFilters;
    LibraryCounts m_counts;
    QString m_summarySearch; // the trimmed search text of the last rebuild
    int m_scopeTotal = 0;    // poems in the scope and category, search aside
};
