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

// The search text as the folded fields hold it. NUL separates the fields, so it is no
// character a search can ask for.
QByteArray searchNeedle(const QString &text)
{
    QByteArray needle = TextComparison::folded(text).toUtf8();
    needle.replace('\0', QByteArray());
    return needle;
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

void LibraryBrowser::reloadRows()
{
    LibraryCounts counts;
    const QList<PoemPtr> all = m_context.fetch();
    std::vector<const PoemPtr *> live;
    live.reserve(size_t(all.size()));
    for (const PoemPtr &poem : all) {
        if (poem->isInTrash())
            ++counts.trashCount;
        else
            live.push_back(&poem);
    }

    counts.activePoemCount = int(live.size());
    std::vector<DerivedPoemText *> derived;
    derived.reserve(size_t(live.size()));
    std::vector<int> countsByCategoryId;
    for (size_t i = 0; i < live.size(); ++i) {
        const PoemPtr &poem = *live[i];
        DerivedPoemText &texts = m_cache.entryAt(qsizetype(i), *poem);
        derived.push_back(&texts);
        counts.missingTextCount += texts.hasUsableText() ? 0 : 1;
        counts.publishedCount += poem->isPublished() ? 1 : 0;
        counts.podcastCount += poem->inPodcast() ? 1 : 0;
        if (size_t(texts.categoryId()) >= countsByCategoryId.size())
            countsByCategoryId.resize(size_t(texts.categoryId()) + 1, 0);
        countsByCategoryId[size_t(texts.categoryId())] += 1;
    }

    QHash<QString, int> countsByCategory;
    for (size_t id = 0; id < countsByCategoryId.size(); ++id) {
        if (countsByCategoryId[id] > 0)
            countsByCategory.insert(m_cache.categories().name(int(id)), countsByCategoryId[id]);
    }
    m_categoryFilters =
        filtersFromCounts(countsByCategory, m_configuredCategories.value_or(AppPreferences::poemCategories()));
    resetVanishedCategory();
    const int selectedCategoryId = selectedCategory ? m_cache.categories().find(*selectedCategory) : -1;

    const QString trimmed = searchText.trimmed();
    const bool searching = !trimmed.isEmpty();
    const SearchNeedles needles{searchNeedle(trimmed), searchNeedle(normalize(trimmed))};

    std::vector<Candidate> candidates;
    candidates.reserve(size_t(live.size()));
    int scopeTotal = 0;
    for (size_t i = 0; i < live.size(); ++i) {
        const Poem &poem = **live[i];
        DerivedPoemText &texts = *derived[i];
        if (selectedCategory && texts.categoryId() != selectedCategoryId)
            continue;
        const bool inCurrentScope = inScope(poem, texts, sidebarScope);
        scopeTotal += inCurrentScope ? 1 : 0;
        if (searching && !matchesSearch(texts, needles))
            continue;
        const bool hasText = texts.hasUsableText();
        counts.scopedActivePoemCount += 1;
        counts.scopedMissingTextCount += hasText ? 0 : 1;
        counts.scopedPublishedCount += poem.isPublished() ? 1 : 0;
        counts.scopedPodcastCount += poem.inPodcast() ? 1 : 0;
        if (!inCurrentScope)
            continue;
        Candidate candidate;
        candidate.poem = &poem;
        candidate.derived = &texts;
        candidate.storeOrder = qsizetype(i);
        candidate.hasText = hasText;
        candidates.push_back(candidate);
    }

    sortCandidates(candidates);

    QList<PoemPtr> rowPoems;
    rowPoems.reserve(qsizetype(candidates.size()));
    for (const Candidate &candidate : candidates)
        rowPoems.append(*live[size_t(candidate.storeOrder)]);

    m_rowPoems = std::move(rowPoems);
    m_rowMemo.assign(candidates.size(), std::nullopt);
    m_allRows.reset();
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

bool LibraryBrowser::matchesSearch(const DerivedPoemText &derived, const SearchNeedles &needles) const
{
    switch (searchMode) {
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

bool LibraryBrowser::inScope(const Poem &poem, DerivedPoemText &derived, SidebarScope scope) const
{
    switch (scope) {
    case SidebarScope::archive:
        return true;
    case SidebarScope::missingText:
        return !derived.hasUsableText();
    case SidebarScope::published:
        return poem.isPublished();
    case SidebarScope::podcast:
        return poem.inPodcast();
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
    switch (sortMode) {
    case PoemSortMode::recentlyChanged:
        for (Candidate &candidate : candidates)
            candidate.stamp = stampOf(candidate.poem->updatedAt());
        std::sort(candidates.begin(), candidates.end(), byStampThenStore);
        return;
    case PoemSortMode::date:
        for (Candidate &candidate : candidates)
            candidate.stamp = stampOf(candidate.poem->date());
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
            candidate.stamp = stampOf(candidate.poem->updatedAt());
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
    if (a.titlePrefixNext != b.titlePrefixNext)
        return a.titlePrefixNext < b.titlePrefixNext ? -1 : 1;
    return a.titleKey->compare(*b.titleKey);
}

const PoemRow &LibraryBrowser::row(qsizetype index) const
{
    std::optional<PoemRow> &memo = m_rowMemo[size_t(index)];
    if (!memo) {
        const Poem &poem = *m_rowPoems.at(index);
        memo = makeRow(poem, m_cache.entry(poem));
    }
    return *memo;
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
