#include "SampleArchive.h"

#include "archive/LibraryBrowser.h"
#include "archive/PersistenceController.h"
#include "archive/PoemEdit.h"

#include <QDateTime>

#include <benchmark/benchmark.h>

#include <map>

namespace {

// One archive per size, shared by the benchmarks: poems of about 600 characters in 30
// categories. Every benchmark runs at 20,000 and at 100,000 poems.
PersistenceController &archive(int poemCount)
{
    static std::map<int, std::unique_ptr<PersistenceController>> archives;
    auto &controller = archives[poemCount];
    if (!controller) {
        controller = PersistenceController::inMemory();
        (void)fillSampleArchive(controller->viewContext(), poemCount);
    }
    return *controller;
}

LibraryBrowser &browser(int poemCount)
{
    static std::map<int, std::unique_ptr<LibraryBrowser>> browsers;
    auto &instance = browsers[poemCount];
    if (!instance) {
        instance = std::make_unique<LibraryBrowser>(archive(poemCount).viewContext());
        instance->setConfiguredCategories(QStringList{});
    }
    return *instance;
}

// One rebuild after the keystrokes `before` (search texts) in sort mode sortBefore. With
// edited, one poem is edited first and the list takes the edit over, as in the window, so
// nothing is known from earlier repetitions but what those keystrokes left.
void reloadWith(benchmark::State &state, const QStringList &before, const QString &search, SearchMode mode,
                PoemSortMode sortBefore, PoemSortMode sort, bool edited)
{
    const int poemCount = int(state.range(0));
    LibraryBrowser &library = browser(poemCount);
    ArchiveContext &context = archive(poemCount).viewContext();
    const PoemPtr poem = context.fetch().constFirst();
    library.searchMode = mode;
    LibraryRowListener unseen;
    for (auto _ : state) {
        state.PauseTiming();
        if (edited) {
            (void)PoemEdit::apply(
                context, *poem,
                [](Poem &changed) { changed.setText(changed.text().value_or(QString()) + QLatin1Char('a')); },
                QDateTime::currentDateTimeUtc());
            library.applyChanges({poem->storeKey()}, unseen);
        }
        library.sortMode = sortBefore;
        for (const QString &text : before) {
            library.searchText = text;
            library.reloadRows();
        }
        library.searchText = search;
        library.sortMode = sort;
        state.ResumeTiming();
        library.reloadRows();
        benchmark::DoNotOptimize(library.rowCount());
    }
    state.counters["rows"] = double(library.rowCount());
}

void bothSizes(benchmark::internal::Benchmark *benchmark, int repetitions)
{
    benchmark->Arg(20000)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(repetitions);
    benchmark->ReportAggregatesOnly(true);
}

// A keystroke in mode "Alles": the first letter, which reads every text; a letter typed
// after a common syllable and one typed where nothing is found, which read the texts that
// matched before; and a letter deleted, whose search was made a keystroke ago.
void BM_reloadRowsAllModeFirstLetter(benchmark::State &state)
{
    reloadWith(state, {QString()}, QStringLiteral("q"), SearchMode::all, PoemSortMode::recentlyChanged,
               PoemSortMode::recentlyChanged, true);
}
BENCHMARK(BM_reloadRowsAllModeFirstLetter)->Apply([](auto *b) { bothSizes(b, 30); });

void BM_reloadRowsAllModeCommonSearch(benchmark::State &state)
{
    reloadWith(state, {QStringLiteral("ac")}, QStringLiteral("ach"), SearchMode::all, PoemSortMode::recentlyChanged,
               PoemSortMode::recentlyChanged, true);
}
BENCHMARK(BM_reloadRowsAllModeCommonSearch)->Apply([](auto *b) { bothSizes(b, 30); });

void BM_reloadRowsAllModeRareSearch(benchmark::State &state)
{
    reloadWith(state, {QStringLiteral("qü")}, QStringLiteral("qüx"), SearchMode::all, PoemSortMode::recentlyChanged,
               PoemSortMode::recentlyChanged, true);
}
BENCHMARK(BM_reloadRowsAllModeRareSearch)->Apply([](auto *b) { bothSizes(b, 30); });

void BM_reloadRowsAllModeDeletedLetter(benchmark::State &state)
{
    reloadWith(state, {QStringLiteral("qü"), QStringLiteral("qüx")}, QStringLiteral("qü"), SearchMode::all,
               PoemSortMode::recentlyChanged, PoemSortMode::recentlyChanged, true);
}
BENCHMARK(BM_reloadRowsAllModeDeletedLetter)->Apply([](auto *b) { bothSizes(b, 30); });

// A change of the sort mode from the default, the orders known from before.
void BM_reloadRowsSortedByCategory(benchmark::State &state)
{
    reloadWith(state, {QString()}, QString(), SearchMode::all, PoemSortMode::recentlyChanged, PoemSortMode::category,
               false);
}
BENCHMARK(BM_reloadRowsSortedByCategory)->Apply([](auto *b) { bothSizes(b, 20); });

void BM_reloadRowsMissingTextFirst(benchmark::State &state)
{
    reloadWith(state, {QString()}, QString(), SearchMode::all, PoemSortMode::recentlyChanged,
               PoemSortMode::missingTextFirst, false);
}
BENCHMARK(BM_reloadRowsMissingTextFirst)->Apply([](auto *b) { bothSizes(b, 20); });

// The same after one poem was edited: the edited poem takes its place in each order again.
void BM_reloadRowsSortedByCategoryAfterEdit(benchmark::State &state)
{
    reloadWith(state, {QString()}, QString(), SearchMode::all, PoemSortMode::recentlyChanged, PoemSortMode::category,
               true);
}
BENCHMARK(BM_reloadRowsSortedByCategoryAfterEdit)->Apply([](auto *b) { bothSizes(b, 10); });

// A keystroke in one poem as the list takes it over: the edit saved, its row moved to
// its sorted place, the counts changed by the difference.
void editOnePoem(benchmark::State &state, PoemSortMode sort, bool inTitle)
{
    const int poemCount = int(state.range(0));
    LibraryBrowser &library = browser(poemCount);
    library.searchText.clear();
    library.sortMode = sort;
    library.reloadRows();
    ArchiveContext &context = archive(poemCount).viewContext();
    const PoemPtr poem = library.poemAt(library.rowCount() / 2);
    LibraryRowListener unseen;
    QString typed = poem->title().value_or(QString());
    for (auto _ : state) {
        typed.append(QLatin1Char('a'));
        const auto saved = PoemEdit::apply(
            context, *poem,
            [&](Poem &edited) {
                if (inTitle)
                    PoemEdit::setTitle(edited, typed);
                else
                    edited.setText(edited.text().value_or(QString()) + QLatin1Char('a'));
            },
            QDateTime::currentDateTimeUtc());
        library.applyChanges({poem->storeKey()}, unseen);
        benchmark::DoNotOptimize(saved.ok());
    }
}

void BM_keystrokeInTextTakenOver(benchmark::State &state)
{
    editOnePoem(state, PoemSortMode::recentlyChanged, false);
}
BENCHMARK(BM_keystrokeInTextTakenOver)->Apply([](auto *b) { bothSizes(b, 200); });

void BM_keystrokeInTitleSortedByTitle(benchmark::State &state)
{
    editOnePoem(state, PoemSortMode::title, true);
}
BENCHMARK(BM_keystrokeInTitleSortedByTitle)->Apply([](auto *b) { bothSizes(b, 200); });

// The very first rebuild after opening, when nothing is derived yet.
void BM_firstReloadRowsSearchAll(benchmark::State &state)
{
    for (auto _ : state) {
        LibraryBrowser fresh(archive(int(state.range(0))).viewContext());
        fresh.setConfiguredCategories(QStringList{});
        fresh.searchText = QStringLiteral("ach");
        fresh.searchMode = SearchMode::all;
        fresh.reloadRows();
        benchmark::DoNotOptimize(fresh.rowCount());
    }
}
BENCHMARK(BM_firstReloadRowsSearchAll)->Arg(20000)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
