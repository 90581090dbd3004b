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

namespace {

QString trimmedCategory(const Poem &poem)
{
    return poem.category() ? poem.category()->trimmed() : QString();
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

QList<PoemPtr> LibraryBrowser::livePoems() const
{
    return m_context.fetch([](const Poem &poem) { return !poem.isInTrash(); });
}

void LibraryBrowser::reloadRows()
{
    const int trashCount = refreshTrashCount();
    const QList<PoemPtr> live = livePoems();

    LibraryCounts counts;
    counts.trashCount = trashCount;
    counts.activePoemCount = int(live.size());
    for (const PoemPtr &poem : live) {
        counts.missingTextCount += m_cache.hasUsableText(*poem) ? 0 : 1;
        counts.publishedCount += poem->isPublished() ? 1 : 0;
        counts.podcastCount += poem->inPodcast() ? 1 : 0;
    }

    m_categoryFilters = makeCategoryFilters(live, m_configuredCategories.value_or(AppPreferences::poemCategories()));
    resetVanishedCategory();

    const QString trimmed = searchText.trimmed();
    const bool searching = !trimmed.isEmpty();
    const QString needle = TextComparison::folded(trimmed);
    const QString titleKeyNeedle = TextComparison::folded(normalize(trimmed));

    std::vector<Candidate> candidates;
    candidates.reserve(size_t(live.size()));
    int scopeTotal = 0;
    for (const PoemPtr &poem : live) {
        if (!matchesCategory(*poem))
            continue;
        const bool inCurrentScope = inScope(*poem, sidebarScope);
        scopeTotal += inCurrentScope ? 1 : 0;
        if (searching && !matchesSearch(*poem, needle, titleKeyNeedle))
            continue;
        const bool hasText = m_cache.hasUsableText(*poem);
        counts.scopedActivePoemCount += 1;
        counts.scopedMissingTextCount += hasText ? 0 : 1;
        counts.scopedPublishedCount += poem->isPublished() ? 1 : 0;
        counts.scopedPodcastCount += poem->inPodcast() ? 1 : 0;
        if (!inCurrentScope)
            continue;
        Candidate candidate;
        candidate.poem = poem.get();
        candidate.hasText = hasText;
        candidates.push_back(candidate);
    }

    sortStoreOrder(candidates);
    sortInMemory(candidates);

    QList<PoemRow> rows;
    rows.reserve(qsizetype(candidates.size()));
    for (const Candidate &candidate : candidates)
        rows.append(makeRow(*candidate.poem));

    m_rows = std::move(rows);
    m_counts = counts;
    m_summarySearch = trimmed;
    m_scopeTotal = scopeTotal;
    m_cache.pruneUnused(int(live.size()));
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

bool LibraryBrowser::matchesSearch(const Poem &poem, const QString &needle, const QString &titleKeyNeedle)
{
    // An empty argument finds nothing, as a containment test on an empty string does not.
    const auto contains = [](const QString &haystack, const QString &part) {
        return !part.isEmpty() && haystack.contains(part);
    };
    const auto inTitle = [&] {
        return contains(m_cache.foldedTitle(poem), needle) ||
               contains(m_cache.foldedTitleNormalized(poem), titleKeyNeedle);
    };
    switch (searchMode) {
    case SearchMode::title:
        return inTitle();
    case SearchMode::text:
        return contains(m_cache.foldedText(poem), needle);
    case SearchMode::category:
        return contains(m_cache.foldedCategory(poem), needle);
    case SearchMode::all:
        return inTitle() || contains(m_cache.foldedText(poem), needle) ||
               contains(m_cache.foldedCategory(poem), needle);
    }
    return false;
}

bool LibraryBrowser::matchesCategory(const Poem &poem) const
{
    return !selectedCategory || trimmedCategory(poem) == *selectedCategory;
}

bool LibraryBrowser::inScope(const Poem &poem, SidebarScope scope)
{
    switch (scope) {
    case SidebarScope::archive:
        return true;
    case SidebarScope::missingText:
        return !m_cache.hasUsableText(poem);
    case SidebarScope::published:
        return poem.isPublished();
    case SidebarScope::podcast:
        return poem.inPodcast();
    }
    return false;
}

void LibraryBrowser::sortStoreOrder(std::vector<Candidate> &candidates)
{
    const auto byStampDescending = [](const Candidate &a, const Candidate &b) { return a.stamp > b.stamp; };
    switch (sortMode) {
    case PoemSortMode::recentlyChanged:
    case PoemSortMode::missingTextFirst:
        for (Candidate &candidate : candidates)
            candidate.stamp = stampOf(candidate.poem->updatedAt());
        std::stable_sort(candidates.begin(), candidates.end(), byStampDescending);
        return;
    case PoemSortMode::date:
        for (Candidate &candidate : candidates)
            candidate.stamp = stampOf(candidate.poem->date());
        std::stable_sort(candidates.begin(), candidates.end(), byStampDescending);
        return;
    case PoemSortMode::title:
        std::stable_sort(candidates.begin(), candidates.end(), [](const Candidate &a, const Candidate &b) {
            return compareOptional(a.poem->titleNormalized(), b.poem->titleNormalized()) < 0;
        });
        return;
    case PoemSortMode::category:
        std::stable_sort(candidates.begin(), candidates.end(), [](const Candidate &a, const Candidate &b) {
            const int byCategory = compareOptional(a.poem->category(), b.poem->category());
            if (byCategory != 0)
                return byCategory < 0;
            return compareOptional(a.poem->titleNormalized(), b.poem->titleNormalized()) < 0;
        });
        return;
    }
}

void LibraryBrowser::sortInMemory(std::vector<Candidate> &candidates)
{
    if (sortMode != PoemSortMode::category && sortMode != PoemSortMode::missingTextFirst)
        return;
    for (Candidate &candidate : candidates)
        candidate.titleKey = &m_cache.titleSortKey(*candidate.poem);

    if (sortMode == PoemSortMode::missingTextFirst) {
        std::stable_sort(candidates.begin(), candidates.end(), [](const Candidate &a, const Candidate &b) {
            if (a.hasText != b.hasText)
                return !a.hasText;
            return a.titleKey->compare(*b.titleKey) < 0;
        });
        return;
    }

    QHash<QString, int> distinct;
    for (const Candidate &candidate : candidates)
        distinct.insert(trimmedCategory(*candidate.poem), 0);
    distinct.remove(QString());
    const QHash<QString, int> ranks = categoryRanks(distinct.keys());
    for (Candidate &candidate : candidates)
        candidate.categoryRank = ranks.value(trimmedCategory(*candidate.poem), std::numeric_limits<int>::max());
    std::stable_sort(candidates.begin(), candidates.end(), [](const Candidate &a, const Candidate &b) {
        if (a.categoryRank != b.categoryRank)
            return a.categoryRank < b.categoryRank;
        return a.titleKey->compare(*b.titleKey) < 0;
    });
}

PoemRow LibraryBrowser::makeRow(const Poem &poem)
{
    PoemRow row;
    row.objectID = m_cache.objectID(poem);
    row.id = m_cache.idText(poem);
    row.title = PoemRowText::title(poem.title());
    row.dateText = m_cache.dateText(poem);
    row.category = poem.category();
    row.excerpt = m_cache.excerpt(poem);
    row.isPublished = poem.isPublished();
    row.inPodcast = poem.inPodcast();
    row.statusText = PoemRowText::statusText(row.isPublished, row.inPodcast);
    row.hasText = m_cache.hasUsableText(poem);
    return row;
}

QList<CategoryFilter> LibraryBrowser::makeCategoryFilters(const QList<PoemPtr> &poems, const QStringList &configured)
{
    QHash<QString, int> byStoredName;
    for (const PoemPtr &poem : poems)
        byStoredName[trimmedCategory(*poem)] += 1;

    // Spelling is decided once per distinct name, not per poem.
    QHash<QString, int> byName;
    for (auto it = byStoredName.cbegin(); it != byStoredName.cend(); ++it) {
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
    const int found = int(m_rows.size());
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
    reloadRows();
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
    reloadRows();
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
    reloadRows();
    const QString title = poem->title().value_or(QString()).trimmed();
    outcome.statusText =
        tr("Gedicht in den Papierkorb verschoben: %1").arg(title.isEmpty() ? tr("(ohne Titel)") : title);
    return outcome;
}
