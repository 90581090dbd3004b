#include "verse/BackgroundVerseAnalyzer.h"
#include "verse/VerseAnalyzer.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QStringList>

#include <benchmark/benchmark.h>

namespace {

// Sixty lines of real verse, German and English, so the words repeat as much as in a poem.
QString sixtyLinePoem()
{
    QStringList lines;
    for (const char *name : {"rilke-panther", "frost-stopping-by-woods", "eichendorff-mondnacht",
                             "shakespeare-sonnet-18", "schiller-glocke", "eichendorff-wuenschelrute"}) {
        QFile file(QStringLiteral(ODELEAF_TEST_DATA "/verse/%1.txt").arg(QLatin1String(name)));
        if (file.open(QIODevice::ReadOnly))
            lines += QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    }
    QStringList verse;
    for (const QString &line : lines) {
        if (verse.size() == 60)
            break;
        verse.append(line);
    }
    return verse.join(QLatin1Char('\n'));
}

// A poem opened for the first time: nothing remembered, every word goes to espeak-ng, and
// the result travels back from the analysis thread as it does to the gutter.
void BM_VerseFirstOpen60Lines(benchmark::State &state)
{
    const QString poem = sixtyLinePoem();
    for (auto _ : state) {
        BackgroundVerseAnalyzer analyzer;
        QEventLoop loop;
        int lines = 0;
        QObject::connect(&analyzer, &BackgroundVerseAnalyzer::analysed, &loop, [&](const VerseAnalysis &analysis) {
            lines = int(analysis.lines().size());
            loop.quit();
        });
        analyzer.request(poem, QStringLiteral("de"));
        loop.exec();
        benchmark::DoNotOptimize(lines);
    }
    state.counters["lines"] = 60;
}
BENCHMARK(BM_VerseFirstOpen60Lines)->Unit(benchmark::kMillisecond)->Iterations(5);

// A keystroke in a poem already analysed: the edited line with a word never seen before is
// pronounced again, its stanza lettered again, the metre counted again.
void BM_VerseReanalyseAfterOneLineEdit(benchmark::State &state)
{
    const QString poem = sixtyLinePoem();
    VerseAnalyzer analyzer;
    (void)analyzer.analyse(poem, QStringLiteral("de"));
    int edit = 0;
    for (auto _ : state) {
        QString word;
        for (int n = ++edit; n > 0; n /= 26)
            word.append(QChar(u'a' + n % 26));
        QString edited = poem;
        edited.replace(QStringLiteral("keine Welt"), QStringLiteral("keine Welt") + word);
        benchmark::DoNotOptimize(analyzer.analyse(edited, QStringLiteral("de")));
    }
}
BENCHMARK(BM_VerseReanalyseAfterOneLineEdit)->Unit(benchmark::kMillisecond);

} // namespace
