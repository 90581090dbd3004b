#include "ArchiveFixtures.h"

#include "archive/LibraryBrowser.h"
#include "archive/PersistenceController.h"
#include "archive/PoemFactory.h"
#include "matching/TitleKey.h"

#include <QCoreApplication>
#include <QDateTime>

#include <benchmark/benchmark.h>

namespace {

constexpr int poemCount = 20000;
constexpr int textLength = 600;
constexpr int categoryCount = 30;

// One archive for every benchmark: 20,000 poems of about 600 characters in 30 categories.
PersistenceController &archive()
{
    static const std::unique_ptr<PersistenceController> controller = [] {
        auto made = PersistenceController::inMemory();
        ArchiveContext &context = made->viewContext();
        ArchiveFixtures fixtures;
        const QDateTime now = QDateTime::currentDateTimeUtc();
        for (int i = 0; i < poemCount; ++i) {
            PoemPtr poem = PoemFactory::makeNewPoem(context, now.addSecs(-i));
            poem->setTitle(fixtures.title());
            poem->setTitleNormalized(normalize(*poem->title()));
            if (fixtures.next() % 10 != 0)
                poem->setText(fixtures.text(textLength));
            poem->setCategory(QStringLiteral("Zyklus %1").arg(i % categoryCount));
            poem->setPublished(fixtures.next() % 3 == 0);
            poem->setInPodcast(fixtures.next() % 7 == 0);
        }
        (void)context.save();
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

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
