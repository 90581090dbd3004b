#include "SampleArchive.h"

#include "archive/LibraryBrowser.h"
#include "archive/PersistenceController.h"

#include <QDateTime>

#include <benchmark/benchmark.h>

namespace {

constexpr int poemCount = 20000;

// One archive for every benchmark: 20,000 poems of about 600 characters in 30 categories.
PersistenceController &archive()
{
    static const std::unique_ptr<PersistenceController> controller = [] {
        auto made = PersistenceController::inMemory();
        (void)fillSampleArchive(made->viewContext(), poemCount);
        return made;
    }();
    return *controller;
}

LibraryBrowser &browser()
{
    static LibraryBrowser instance(archive().viewContext());
    instance.setConfiguredCategories(QStringList{});
    return instance;
}

void reloadWith(benchmark::State &state, const QString &search, SearchMode mode, PoemSortMode sort)
{
    LibraryBrowser &library = browser();
    library.searchText = search;
    library.searchMode = mode;
    library.sortMode = sort;
    library.reloadRows(); // the keystroke before: the per-poem values are in place
    for (auto _ : state) {
        library.reloadRows();
        benchmark::DoNotOptimize(library.rowCount());
    }
    state.counters["rows"] = double(library.rowCount());
}

// One rebuild after a keystroke in mode "Alles": a common syllable and one found nowhere,
// which makes every text be read to its end.
void BM_reloadRowsAllModeCommonSearch(benchmark::State &state)
{
    reloadWith(state, QStringLiteral("ach"), SearchMode::all, PoemSortMode::recentlyChanged);
}
BENCHMARK(BM_reloadRowsAllModeCommonSearch)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(50)
    ->ReportAggregatesOnly(true);

void BM_reloadRowsAllModeRareSearch(benchmark::State &state)
{
    reloadWith(state, QStringLiteral("qüx"), SearchMode::all, PoemSortMode::recentlyChanged);
}
BENCHMARK(BM_reloadRowsAllModeRareSearch)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(50)
    ->ReportAggregatesOnly(true);

void BM_reloadRowsSortedByCategory(benchmark::State &state)
{
    reloadWith(state, QString(), SearchMode::all, PoemSortMode::category);
}
BENCHMARK(BM_reloadRowsSortedByCategory)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(50)
    ->ReportAggregatesOnly(true);

void BM_reloadRowsMissingTextFirst(benchmark::State &state)
{
    reloadWith(state, QString(), SearchMode::all, PoemSortMode::missingTextFirst);
}
BENCHMARK(BM_reloadRowsMissingTextFirst)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(20)
    ->ReportAggregatesOnly(true);

// The very first rebuild after opening, when nothing is derived yet.
void BM_firstReloadRowsSearchAll(benchmark::State &state)
{
    for (auto _ : state) {
        LibraryBrowser fresh(archive().viewContext());
        fresh.setConfiguredCategories(QStringList{});
        fresh.searchText = QStringLiteral("ach");
        fresh.searchMode = SearchMode::all;
        fresh.reloadRows();
        benchmark::DoNotOptimize(fresh.rowCount());
    }
}
BENCHMARK(BM_firstReloadRowsSearchAll)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
