#include "SampleArchive.h"

#include "analysis/DuplicateChecker.h"
#include "analysis/StatisticsReport.h"
#include "archive/PersistenceController.h"
#include "export/OdeLeafReaderPackageExporter.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

constexpr int poemCount = 20000;

struct Archive {
    Archive() : controller(PersistenceController::inMemory())
    {
        if (!fillSampleArchive(controller->viewContext(), poemCount))
            qFatal("the sample archive could not be saved");
    }

    QList<PoemPtr> activePoems() const
    {
        return controller->viewContext().fetch([](const Poem &poem) { return !poem.isInTrash(); });
    }

    std::unique_ptr<PersistenceController> controller;
};

Archive &archive()
{
    static Archive instance;
    return instance;
}

// Each repetition is one full run, from the poems to the report, as the window starts it.
void BM_duplicateCheckOf20000Poems(benchmark::State &state)
{
    const QList<PoemPtr> poems = archive().activePoems();
    DuplicateCheckReport report;
    for (auto _ : state)
        report = DuplicateChecker::check(poems);
    state.counters["exactGroups"] = double(report.exactGroups.size());
    state.counters["similarPairs"] = double(report.similarPairs.size());
}
BENCHMARK(BM_duplicateCheckOf20000Poems)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5);

void BM_statisticsOf20000Poems(benchmark::State &state)
{
    const QList<PoemPtr> poems = archive().activePoems();
    for (auto _ : state) {
        const StatisticsReport report = StatisticsReport::make(poems);
        benchmark::DoNotOptimize(report.jsonDocument());
    }
}
BENCHMARK(BM_statisticsOf20000Poems)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5);

void BM_readerPackageOf20000Poems(benchmark::State &state)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("archive.odeleafreader"));
    const QList<PoemPtr> poems = archive().activePoems();
    const QStringList categories = {QStringLiteral("Zyklus 1"), QStringLiteral("Zyklus 2")};
    for (auto _ : state) {
        if (!OdeLeafReaderPackageExporter::write(poems, categories, path))
            state.SkipWithError("the reader package could not be written");
    }
    state.counters["fileMB"] = double(QFileInfo(path).size()) / (1 << 20);
}
BENCHMARK(BM_readerPackageOf20000Poems)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5);

} // namespace
