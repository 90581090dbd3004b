#include "ArchiveFixtures.h"

#include "archive/PersistenceController.h"
#include "archive/PoemFactory.h"
#include "matching/FuzzyMatcher.h"
#include "matching/TitleKey.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

QStringList sampleTitles()
{
    ArchiveFixtures fixtures;
    QStringList titles;
    for (int i = 0; i < 10000; ++i)
        titles.append(fixtures.title());
    return titles;
}

void BM_normalize(benchmark::State &state)
{
    const QStringList titles = sampleTitles();
    for (auto _ : state) {
        for (const QString &title : titles)
            benchmark::DoNotOptimize(normalize(title));
    }
    state.counters["titles/s"] =
        benchmark::Counter(double(state.iterations()) * titles.size(), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_normalize)->Unit(benchmark::kMillisecond);

void BM_fuzzyNormalize(benchmark::State &state)
{
    const QStringList titles = sampleTitles();
    for (auto _ : state) {
        for (const QString &title : titles)
            benchmark::DoNotOptimize(FuzzyMatcher::normalize(title));
    }
    state.counters["titles/s"] =
        benchmark::Counter(double(state.iterations()) * titles.size(), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_fuzzyNormalize)->Unit(benchmark::kMillisecond);

// Opening the store reads every poem into the view context, as start-up does.
void BM_openStoreOf20000Poems(benchmark::State &state)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("OdeLeaf.sqlite"));
    {
        auto controller = PersistenceController::open(path);
        ArchiveContext &context = controller.value()->viewContext();
        ArchiveFixtures fixtures;
        const QDateTime now = QDateTime::currentDateTimeUtc();
        for (int i = 0; i < 20000; ++i) {
            PoemPtr poem = PoemFactory::makeNewPoem(context, now.addSecs(-i));
            poem->setTitle(fixtures.title());
            poem->setTitleNormalized(normalize(*poem->title()));
            poem->setText(fixtures.text(600));
            poem->setCategory(QStringLiteral("Kategorie %1").arg(i % 30));
        }
        if (!context.save())
            state.SkipWithError("could not write the sample store");
    }
    for (auto _ : state) {
        auto controller = PersistenceController::open(path);
        benchmark::DoNotOptimize(controller.value()->viewContext().fetch().size());
    }
}
BENCHMARK(BM_openStoreOf20000Poems)->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
