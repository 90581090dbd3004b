#include "PeakMemory.h"
#include "SampleArchive.h"

#include "archive/ApplicationSupport.h"
#include "archive/PersistenceController.h"
#include "import/CSVDocument.h"
#include "import/CSVFileReader.h"
#include "import/CSVImporter.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <chrono>
#include <ctime>

namespace {

constexpr int archivePoems = 20000;
constexpr int listRows = 100000;

// A poem list as a spreadsheet exports it: every fifth row names a poem of the archive
// (in other letter case), the others are new; dates and flags in the usual spellings.
QByteArray poemList(const QStringList &knownTitles, int rows)
{
    QByteArray csv = "Gedicht;Kategorie;Datum;Veröffentlicht;Podcast;Familie\r\n";
    const char *dates[] = {"03.09.21", "3. Sept. 70", "2021-09-03", "12. Jan. 2020", ""};
    const char *flags[] = {"x", "", "nein", "n. veröf.", "ja"};
    for (int i = 0; i < rows; ++i) {
        const QString title = i % 5 == 0 ? knownTitles.at((i / 5) % knownTitles.size()).toUpper()
                                         : QStringLiteral("\"Neues Lied Nr. %1; über Wind\"").arg(i);
        csv += title.toUtf8() + ';' + (i % 3 == 0 ? "Natur" : "") + ';' + dates[i % 5] + ';' + flags[i % 5] + ';' +
               flags[(i + 2) % 5] + ';' + (i % 7 == 0 ? "x" : "") + "\r\n";
    }
    return csv;
}

double cpuSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

struct ImportRun {
    double seconds = 0;
    double cpuSeconds = 0;
    qint64 peakExtra = 0;
    CSVImportResult result;
};

// A fresh on-disk archive of 20,000 poems per run, so that every run inserts and updates
// the same rows.
ImportRun importIntoSampleArchive(const QString &csvPath, const QTemporaryDir &dir, int run)
{
    const QString store = dir.filePath(QStringLiteral("archive-%1.sqlite").arg(run));
    auto controller = PersistenceController::open(store);
    ArchiveContext &context = controller.value()->viewContext();
    (void)fillSampleArchive(context, archivePoems);
    ImportRun outcome;
    outcome.peakExtra = peakExtraMemory([&] {
        const auto start = std::chrono::steady_clock::now();
        const double cpuStart = cpuSeconds();
        outcome.result = CSVImporter::importGedichte(csvPath, context);
        outcome.cpuSeconds = cpuSeconds() - cpuStart;
        outcome.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    });
    QFile::remove(store);
    return outcome;
}

void BM_importPoemListOf100000RowsInto20000Poems(benchmark::State &state)
{
    QTemporaryDir dir;
    ApplicationSupport::setDirectory(dir.filePath(QStringLiteral("OdeLeaf")));
    QStringList knownTitles;
    {
        auto controller = PersistenceController::inMemory();
        (void)fillSampleArchive(controller->viewContext(), archivePoems);
        for (const PoemPtr &poem : controller->viewContext().fetch())
            knownTitles.append(poem->title().value_or(QString()));
    }
    const QByteArray csv = poemList(knownTitles, listRows);
    const QString csvPath = dir.filePath(QStringLiteral("liste.csv"));
    QFile file(csvPath);
    if (!file.open(QIODevice::WriteOnly) || file.write(csv) != csv.size()) {
        state.SkipWithError("the poem list could not be written");
        return;
    }
    file.close();
    int run = 0;
    ImportRun last;
    for (auto _ : state) {
        last = importIntoSampleArchive(csvPath, dir, run++);
        if (last.result.error) {
            state.SkipWithError(qPrintable(*last.result.error));
            return;
        }
        state.SetIterationTime(last.seconds);
    }
    // On a shared machine the wall time includes waiting for a core; the CPU time does not.
    state.counters["importCpuS"] = last.cpuSeconds;
    state.counters["inserted"] = last.result.inserted;
    state.counters["updated"] = last.result.updated;
    state.counters["fileMB"] = double(csv.size()) / (1 << 20);
    state.counters["peakExtraMB"] = double(last.peakExtra) / (1 << 20);
    state.counters["peakPerFileSize"] = double(last.peakExtra) / double(csv.size());
}
BENCHMARK(BM_importPoemListOf100000RowsInto20000Poems)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

// What reading costs at the largest size the importer accepts: decoded text and rows.
void BM_readPoemListAtTheSizeLimit(benchmark::State &state)
{
    QStringList titles;
    for (int i = 0; i < 1000; ++i)
        titles.append(QStringLiteral("Altes Gedicht %1").arg(i));
    QByteArray csv = poemList(titles, 10);
    const QByteArray rows = poemList(titles, 20000).mid(csv.size());
    while (csv.size() + rows.size() < CSVFileReader::maxBytes)
        csv += rows;
    qint64 extra = 0;
    for (auto _ : state) {
        extra = peakExtraMemory([&] {
            const auto document = CSVDocument::read(csv);
            benchmark::DoNotOptimize(document.ok());
        });
    }
    state.counters["fileMB"] = double(csv.size()) / (1 << 20);
    state.counters["peakExtraMB"] = double(extra) / (1 << 20);
    state.counters["peakPerFileSize"] = double(extra) / double(csv.size());
}
BENCHMARK(BM_readPoemListAtTheSizeLimit)->Unit(benchmark::kMillisecond)->Iterations(1);

// A 200 MB file is refused while it is read, before it can fill the memory.
void BM_refuse200MegabyteFile(benchmark::State &state)
{
    QTemporaryDir dir;
    ApplicationSupport::setDirectory(dir.filePath(QStringLiteral("OdeLeaf")));
    const QString path = dir.filePath(QStringLiteral("riesig.csv"));
    {
        QFile file(path);
        const QByteArray line = "Gedicht;Kategorie;Datum\r\n";
        if (!file.open(QIODevice::WriteOnly)) {
            state.SkipWithError("the file could not be written");
            return;
        }
        QByteArray block;
        while (block.size() < (1 << 20))
            block += line;
        for (int i = 0; i < 200; ++i)
            file.write(block);
    }
    auto controller = PersistenceController::inMemory();
    CSVImportResult result;
    qint64 extra = 0;
    for (auto _ : state)
        extra = peakExtraMemory([&] { result = CSVImporter::importGedichte(path, controller->viewContext()); });
    const bool refused = result.error && result.error->contains(QStringLiteral("größer als"));
    if (!refused)
        state.SkipWithError("the 200 MB file was not refused");
    state.counters["fileMB"] = double(QFileInfo(path).size()) / (1 << 20);
    state.counters["refused"] = refused ? 1 : 0;
    state.counters["peakExtraMB"] = double(extra) / (1 << 20);
    state.SetLabel(qPrintable(result.error.value_or(QString())));
}
BENCHMARK(BM_refuse200MegabyteFile)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace

namespace {

// Files of 32 MB that are nearly all cells: separators only, one-letter lines, and one line
// of a million columns. Reading must stay within ten times the file's size, and the message
// about the file within a readable length.
void BM_readHostileList(benchmark::State &state)
{
    QByteArray csv;
    switch (state.range(0)) {
    case 0:
        state.SetLabel("separators");
        csv = QByteArray(32 << 20, ';');
        break;
    case 1:
        state.SetLabel("one-letter lines");
        csv = QByteArray("a\n").repeated(16 << 20);
        break;
    default:
        state.SetLabel("a million columns");
        csv = QByteArray("Spalte;").repeated(1000000);
    }
    QTemporaryDir dir;
    ApplicationSupport::setDirectory(dir.filePath(QStringLiteral("OdeLeaf")));
    const QString path = dir.filePath(QStringLiteral("liste.csv"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(csv) != csv.size()) {
        state.SkipWithError("the list could not be written");
        return;
    }
    file.close();
    auto controller = PersistenceController::inMemory();
    CSVImportResult result;
    qint64 extra = 0;
    for (auto _ : state)
        extra = peakExtraMemory([&] { result = CSVImporter::importGedichte(path, controller->viewContext()); });
    state.counters["fileMB"] = double(csv.size()) / (1 << 20);
    state.counters["peakExtraMB"] = double(extra) / (1 << 20);
    state.counters["peakPerFileSize"] = double(extra) / double(csv.size());
    state.counters["statusChars"] = double(CSVImporter::statusLine(result).size());
}
BENCHMARK(BM_readHostileList)->DenseRange(0, 2)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace
