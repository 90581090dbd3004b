#include "ArchiveFixtures.h"
#include "PeakMemory.h"

#include "archive/ApplicationSupport.h"
#include "archive/PersistenceController.h"
#include "archive/SqliteDatabase.h"
#include "backup/BackupExporter.h"
#include "backup/BackupReader.h"
#include "backup/RestorePlanner.h"
#include "matching/TitleKey.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <chrono>
#include <functional>

namespace {

constexpr int poemCount = 20000;
constexpr int richPoemCount = 200;

// 20,000 poems of 600 characters; every hundredth carries 50 KB of formatted text.
struct Archive {
    Archive() : controller(PersistenceController::inMemory())
    {
        ArchiveContext &context = controller->viewContext();
        ArchiveFixtures fixtures;
        const QDateTime now = QDateTime::currentDateTimeUtc();
        for (int i = 0; i < poemCount; ++i) {
            PoemPtr poem = context.insertPoem();
            poem->setId(QUuid::createUuid());
            poem->setTitle(fixtures.title());
            poem->setTitleNormalized(normalize(*poem->title()));
            poem->setText(fixtures.text(600));
            poem->setCategory(QStringLiteral("Kategorie %1").arg(i % 30));
            poem->setDate(now.addDays(-i));
            poem->setCreatedAt(now.addSecs(-i * 60));
            poem->setUpdatedAt(now.addSecs(-i));
            if (i % (poemCount / richPoemCount) == 0) {
                QByteArray rich(50 * 1024, Qt::Uninitialized);
                for (char &byte : rich)
                    byte = char(fixtures.next());
                poem->setRichTextData(rich);
            }
        }
        path = dir.filePath(QStringLiteral("OdeLeaf-Backup.json"));
        ApplicationSupport::setDirectory(dir.filePath(QStringLiteral("OdeLeaf")));
    }

    QList<PoemPtr> poems() { return controller->viewContext().fetch(); }

    QTemporaryDir dir;
    std::unique_ptr<PersistenceController> controller;
    QString path;
};

Archive &archive()
{
    static Archive instance;
    return instance;
}

double seconds(const std::function<void()> &work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double fileMegabytes()
{
    return double(QFileInfo(archive().path).size()) / (1 << 20);
}

double ownWriteSeconds = 0;
double ownReadSeconds = 0;

void BM_writeBackupOf20000Poems(benchmark::State &state)
{
    Archive &data = archive();
    const qint64 extra = peakExtraMemory([&] {
        if (!BackupExporter::writeBackup(data.poems(), data.path))
            state.SkipWithError("the backup could not be written");
    });
    double total = 0;
    for (auto _ : state)
        total += seconds([&] { benchmark::DoNotOptimize(BackupExporter::writeBackup(data.poems(), data.path)); });
    ownWriteSeconds = total / double(state.iterations());
    state.counters["fileMB"] = fileMegabytes();
    state.counters["peakExtraMB"] = double(extra) / (1 << 20);
    state.counters["peakPerFileSize"] = double(extra) / (fileMegabytes() * (1 << 20));
}
BENCHMARK(BM_writeBackupOf20000Poems)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_readBackupOf20000Poems(benchmark::State &state)
{
    Archive &data = archive();
    if (!QFileInfo::exists(data.path))
        (void)BackupExporter::writeBackup(data.poems(), data.path);
    qsizetype read = 0;
    const qint64 extra = peakExtraMemory([&] {
        const auto backup = BackupReader::read(data.path);
        read = backup ? backup->poems.size() : 0;
    });
    if (read != poemCount)
        state.SkipWithError("the backup did not read back whole");
    double total = 0;
    for (auto _ : state)
        total += seconds([&] { benchmark::DoNotOptimize(BackupReader::read(data.path)); });
    ownReadSeconds = total / double(state.iterations());
    state.counters["fileMB"] = fileMegabytes();
    state.counters["peakExtraMB"] = double(extra) / (1 << 20);
    state.counters["peakPerFileSize"] = double(extra) / (fileMegabytes() * (1 << 20));
}
BENCHMARK(BM_readBackupOf20000Poems)->Unit(benchmark::kMillisecond)->Iterations(5);

// A restore of 20,000 poems into a store on disk, in its one transaction: another
// process that wants to write waits this long at most, so it must stay well inside the
// busy timeout. Argument 0 brings every poem in new, 1 gives each stored poem a new text.
void BM_restore20000PoemsInOneTransaction(benchmark::State &state)
{
    const bool update = state.range(0) == 1;
    const Backup backup = Backup::make(archive().poems(), QDateTime::currentDateTimeUtc()).value();
    Backup changed = backup;
    for (PoemBackup &entry : changed.poems)
        entry.text = entry.text.value_or(QString()) + QStringLiteral("\nNachtrag");
    double total = 0;
    for (auto _ : state) {
        state.PauseTiming();
        QTemporaryDir dir;
        auto store = PersistenceController::open(dir.filePath(QStringLiteral("OdeLeaf.sqlite")));
        if (!store) {
            state.SkipWithError("the store could not be opened");
            return;
        }
        ArchiveContext &context = store.value()->viewContext();
        if (update && !RestorePlanner::restore(backup, context, RestoreMode::addMissing)) {
            state.SkipWithError("the archive could not be filled");
            return;
        }
        state.ResumeTiming();
        const double taken = seconds([&] {
            const auto restored =
                RestorePlanner::restore(update ? changed : backup, context,
                                        update ? RestoreMode::addMissingAndUpdate : RestoreMode::addMissing);
            if (!restored || restored->created + restored->updated != poemCount)
                state.SkipWithError("the restore did not go through whole");
        });
        total += taken;
    }
    const double average = total / double(state.iterations());
    state.counters["restoreMs"] = average * 1000;
    state.counters["busyTimeoutShare"] = average * 1000 / SqliteDatabase::busyTimeoutMs;
}
BENCHMARK(BM_restore20000PoemsInOneTransaction)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(3);

// Python's json module on the same document: load, then dump with sorted keys and
// indentation. The ratios say how many times faster our reader and writer are.
void BM_pythonJsonOnTheSameDocument(benchmark::State &state)
{
    static const char *script = "import json, sys, time\n"
                                "t0 = time.perf_counter()\n"
                                "with open(sys.argv[1], encoding='utf-8') as f: d = json.load(f)\n"
                                "t1 = time.perf_counter()\n"
                                "s = json.dumps(d, sort_keys=True, indent=2)\n"
                                "t2 = time.perf_counter()\n"
                                "print(t1 - t0, t2 - t1)\n";
    double load = 0;
    double dump = 0;
    for (auto _ : state) {
        QProcess python;
        python.start(QStringLiteral("python3"), {QStringLiteral("-c"), QString::fromLatin1(script), archive().path});
        if (!python.waitForFinished(120000) || python.exitCode() != 0) {
            state.SkipWithError("python3 did not run");
            return;
        }
        const QList<QByteArray> times = python.readAllStandardOutput().trimmed().split(' ');
        load += times.value(0).toDouble();
        dump += times.value(1).toDouble();
    }
    load /= double(state.iterations());
    dump /= double(state.iterations());
    state.counters["pyLoadMs"] = load * 1000;
    state.counters["pyDumpMs"] = dump * 1000;
    state.counters["ownReadMs"] = ownReadSeconds * 1000;
    state.counters["ownWriteMs"] = ownWriteSeconds * 1000;
    if (ownReadSeconds > 0 && ownWriteSeconds > 0) {
        state.counters["pyLoad/ownRead"] = load / ownReadSeconds;
        state.counters["pyDump/ownWrite"] = dump / ownWriteSeconds;
    }
}
BENCHMARK(BM_pythonJsonOnTheSameDocument)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
