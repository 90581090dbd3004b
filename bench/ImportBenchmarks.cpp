#include "../tests/import/ImportTestSupport.h"
#include "ArchiveFixtures.h"
#include "SampleArchive.h"

#include "archive/ApplicationSupport.h"
#include "archive/PersistenceController.h"
#include "archive/PoemValues.h"
#include "import/DocumentBatchImporter.h"
#include "import/DocumentTextExtractor.h"
#include "import/ImportRun.h"
#include "import/IsolatedDocumentExtractor.h"
#include "matching/FuzzyMatcher.h"
#include "matching/TitleIndex.h"
#include "matching/TitleKey.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <zip.h>

#include <random>

#include <sys/resource.h>

namespace {

// Titles as a poet gives them: mostly distinct, but a few words ("Lied", "Nacht",
// "Herbst") come back again and again, and many titles carry a stop word.
class TitleGenerator {
public:
    explicit TitleGenerator(unsigned seed) : m_random(seed) {}

    QString title()
    {
        static const QStringList common = {"Lied", "Nacht", "Herbst", "Mond", "Abend", "Liebe", "Winter", "Sommer"};
        static const QStringList words = {
            "Amsel",    "Brunnen",    "Dämmerung",  "Efeu",      "Fährmann",   "Gewitter",  "Heide",      "Insel",
            "Jasmin",   "Kastanie",   "Lerche",     "Morgenrot", "Nebel",      "Orgel",     "Pappel",     "Quelle",
            "Regen",    "Schwalbe",   "Tau",        "Ufer",      "Veilchen",   "Wolke",     "Zypresse",   "Asche",
            "Birke",    "Dorf",       "Erinnerung", "Flieder",   "Glocke",     "Hafen",     "Kirschbaum", "Laterne",
            "Mühle",    "Nachtigall", "Obstgarten", "Pfad",      "Rabe",       "Sehnsucht", "Traum",      "Uhr",
            "Wanderer", "Zugvogel",   "Bahnhof",    "Schnee",    "Stille",     "Straße",    "Fluss",      "Meer",
            "Licht",    "Schatten",   "Garten",     "Rosen",     "Abschied",   "Heimkehr",  "Fenster",    "Spiegel",
            "Brücke",   "Kerze",      "Wiese",      "Kinder",    "Großmutter", "Vater",     "Tochter",    "Freund",
            "Stadt",    "Berge",      "Wald",       "Sterne",    "Sonne",      "Feuer",     "Erde",       "Himmel",
            "Frühling", "Ernte",      "Apfel",      "Brot",      "Wein",       "Salz",      "Stein",      "Sand",
            "Küste",    "Möwe",       "Leuchtturm", "Anker",     "Segel",      "Welle",     "Muschel",    "Düne"};
        static const QStringList adjectives = {"stille", "alte",   "kleine", "späte", "dunkle", "helle",
                                               "ferne",  "letzte", "erste",  "blaue", "graue",  "weiße"};
        static const QStringList stops = {"der", "die", "das", "im", "am", "und", "von", "zum", "über"};
        QStringList parts;
        const int pattern = int(m_random() % 10);
        if (pattern < 2)
            parts << pick(common) << pick(stops) << pick(words);
        else if (pattern < 4)
            parts << pick(adjectives) << pick(words);
        else if (pattern < 6)
            parts << pick(words) << pick(stops) << pick(words);
        else if (pattern < 8)
            parts << pick(words) << pick(words) << pick(common);
        else
            parts << pick(words) << pick(stops) << pick(adjectives) << pick(words) << pick(words);
        parts.first()[0] = parts.first()[0].toUpper();
        if (m_random() % 8 == 0)
            parts.append(QString::number(m_random() % 12 + 1));
        return parts.join(QLatin1Char(' '));
    }

    // A file name for a poem as it turns up in a folder of drafts.
    QString fileNameFor(const QString &title)
    {
        QString name = title;
        switch (m_random() % 6) {
        case 0:
            name += QStringLiteral(" final");
            break;
        case 1:
            name.replace(QLatin1Char(' '), QLatin1Char('_'));
            break;
        case 2:
            name = QStringLiteral("%1 %2").arg(2000 + m_random() % 25).arg(name);
            break;
        case 3:
            if (name.size() > 4)
                name.remove(qsizetype(m_random() % name.size()), 1); // a typo
            break;
        default:
            break;
        }
        return name + (m_random() % 3 == 0 ? QStringLiteral(".pdf") : QStringLiteral(".docx"));
    }

    unsigned next() { return m_random(); }

private:
    const QString &pick(const QStringList &list) { return list.at(qsizetype(m_random() % list.size())); }
    std::mt19937 m_random;
};

struct MatchingWorkload {
    QList<PoemSnapshotEntry> poems;
    QList<ScannedFile> files;
};

const MatchingWorkload &workload()
{
    static const MatchingWorkload data = [] {
        MatchingWorkload w;
        TitleGenerator generator(2024);
        ArchiveFixtures fixtures(7); // a share of the archive's short, word-sharing titles
        for (int i = 0; i < 5000; ++i) {
            const QString title = i % 5 == 0 ? fixtures.title() : generator.title();
            w.poems.append({QUuid::createUuidV5(QUuid(), title + QString::number(i)), title});
        }
        for (int i = 0; i < 5000; ++i) {
            // Two thirds belong to a poem of the archive, the rest are new poems.
            const QString title =
                generator.next() % 3 != 0 ? w.poems.at(qsizetype(generator.next() % 5000)).title : generator.title();
            const QString name = generator.fileNameFor(title);
            w.files.append({name, QStringLiteral("Entwürfe/") + name});
        }
        return w;
    }();
    return data;
}

void BM_buildProposals5000Files5000Poems(benchmark::State &state)
{
    const MatchingWorkload &w = workload();
    for (auto _ : state)
        benchmark::DoNotOptimize(DocumentBatchImporter::buildProposals(w.files, w.poems, 5));
    state.counters["files"] = double(w.files.size());
}
BENCHMARK(BM_buildProposals5000Files5000Poems)->Unit(benchmark::kMillisecond)->Iterations(3);

bool sharesTokenOrPrefix(const QString &baseName, const QString &title)
{
    const QSet<QString> nameTokens = tokenize(normalize(baseName));
    const QSet<QString> titleTokens = tokenize(normalize(title));
    for (const QString &a : nameTokens) {
        for (const QString &b : titleTokens) {
            if (a == b || (a.size() >= 3 && b.size() >= 3 && a.left(3) == b.left(3)))
                return true;
        }
    }
    return false;
}

// The index against the naive way: every pair fuzzy-scored (keys prepared once, so the
// comparison is about the pairs, not the key building).
void BM_indexedVersusAllPairs(benchmark::State &state)
{
    const MatchingWorkload &w = workload();
    for (auto _ : state) {
        QElapsedTimer timer;
        timer.start();
        const QList<ImportProposal> proposals = DocumentBatchImporter::buildProposals(w.files, w.poems, 5);
        const double indexedSeconds = double(timer.nsecsElapsed()) / 1e9;

        timer.restart();
        std::vector<FuzzyMatcher::Key> titleKeys;
        titleKeys.reserve(size_t(w.poems.size()));
        for (const PoemSnapshotEntry &poem : w.poems)
            titleKeys.push_back(FuzzyMatcher::key(poem.title));
        // Where the naive best differs, say why the index did not offer it: it shared no
        // word or prefix with the name, it was found but below the quick-score gate, or a
        // cap cut it off.
        const TitleIndex index(w.poems);
        int different = 0;
        int noSharedWord = 0;
        int belowGate = 0;
        int capped = 0;
        int naiveWouldPreselect = 0;
        for (qsizetype f = 0; f < w.files.size(); ++f) {
            const QString base = DocumentBatchImporter::baseName(w.files.at(f).fileName);
            const FuzzyMatcher::Key name = FuzzyMatcher::key(base);
            double bestScore = 0.0;
            qsizetype best = -1;
            for (size_t p = 0; p < titleKeys.size(); ++p) {
                const double score = FuzzyMatcher::score(name, titleKeys[p]);
                if (score > bestScore) {
                    bestScore = score;
                    best = qsizetype(p);
                }
            }
            const ImportProposal &proposal = proposals.at(f);
            if (best < 0 || uuidText(w.poems.at(best).id) == proposal.suggestedPoemObjectURI.value_or(QString()))
                continue;
            if (qAbs(bestScore - proposal.suggestedScore) < 1e-12)
                continue; // a tie at the top, not a different suggestion
            ++different;
            naiveWouldPreselect += bestScore >= ImportProposal::preselectThreshold ? 1 : 0;
            const PoemSnapshotEntry &poem = w.poems.at(best);
            if (!sharesTokenOrPrefix(base, poem.title))
                ++noSharedWord;
            else if (index.candidateIDs(base).contains(poem.id))
                ++belowGate;
            else
                ++capped;
        }
        const double naiveSeconds = double(timer.nsecsElapsed()) / 1e9;
        state.counters["indexed_s"] = indexedSeconds;
        state.counters["naive_s"] = naiveSeconds;
        state.counters["speedup"] = naiveSeconds / indexedSeconds;
        state.counters["different"] = different;
        state.counters["noSharedWord"] = noSharedWord;
        state.counters["belowGate"] = belowGate;
        state.counters["capped"] = capped;
        state.counters["naive>=0.85"] = naiveWouldPreselect;
    }
}
BENCHMARK(BM_indexedVersusAllPairs)->Unit(benchmark::kSecond)->Iterations(1);

// 100 one-page poems as DOCX, written from LibreOffice's package with a new text each.
class DocxFolder {
public:
    DocxFolder()
    {
        const QString templatePath = QStringLiteral(ODELEAF_TEST_DATA "/import/Herbstlied.docx");
        TitleGenerator generator(5);
        for (int i = 0; i < 100; ++i) {
            const QString path = m_dir.filePath(QStringLiteral("Gedicht %1.docx").arg(i));
            QFile::copy(templatePath, path);
            QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
            replaceDocument(path, documentXml(generator));
            m_paths.append(path);
        }
    }
    const QStringList &paths() const { return m_paths; }

private:
    static QByteArray documentXml(TitleGenerator &generator)
    {
        QByteArray body;
        for (int stanza = 0; stanza < 6; ++stanza) {
            for (int line = 0; line < 4; ++line)
                body += "<w:p><w:r><w:rPr><w:i/></w:rPr><w:t>" + generator.title().toUtf8().toLower() +
                        ",</w:t></w:r><w:r><w:t xml:space=\"preserve\"> " + generator.title().toUtf8() +
                        "</w:t></w:r></w:p>";
            body += "<w:p/>";
        }
        return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><w:document "
               "xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\"><w:body>" +
               body + "</w:body></w:document>";
    }

    static void replaceDocument(const QString &path, const QByteArray &xml)
    {
        int error = 0;
        zip_t *archive = zip_open(QFile::encodeName(path).constData(), 0, &error);
        if (!archive)
            return;
        auto *copy = new QByteArray(xml); // libzip reads it when the archive is closed
        zip_source_t *source = zip_source_buffer(archive, copy->constData(), zip_uint64_t(copy->size()), 0);
        zip_file_add(archive, "word/document.xml", source, ZIP_FL_OVERWRITE | ZIP_FL_ENC_UTF_8);
        zip_close(archive);
        delete copy;
    }

    QTemporaryDir m_dir;
    QStringList m_paths;
};

void BM_extract100DocxInProcess(benchmark::State &state)
{
    const DocxFolder folder;
    for (auto _ : state) {
        for (const QString &path : folder.paths())
            benchmark::DoNotOptimize(DocumentTextExtractor::extract(path));
    }
}
BENCHMARK(BM_extract100DocxInProcess)->Unit(benchmark::kMillisecond)->Iterations(5);

// The way the import reads them: through the helper process, one helper for the run.
void BM_extract100DocxIsolated(benchmark::State &state)
{
    const DocxFolder folder;
    int failed = 0;
    for (auto _ : state) {
        IsolatedDocumentExtractor extractor;
        for (const QString &path : folder.paths())
            failed += extractor.extract(path, 8000).result ? 0 : 1;
    }
    state.counters["failed"] = failed;
}
BENCHMARK(BM_extract100DocxIsolated)->Unit(benchmark::kMillisecond)->Iterations(5);

// The whole import as the poet starts it: 5,000 one-page DOCX files into a store of 20,000
// poems, overwriting (every file is applied), safety backup, undo file and report included.
void BM_apply5000DocxTo20000Poems(benchmark::State &state)
{
    QTemporaryDir dir;
    ApplicationSupport::setDirectory(dir.filePath(QStringLiteral("OdeLeaf")));
    auto opened = PersistenceController::open(dir.filePath(QStringLiteral("OdeLeaf.sqlite")));
    if (!opened || !fillSampleArchive(opened.value()->viewContext(), 20000)) {
        state.SkipWithError("no archive");
        return;
    }
    ArchiveContext &context = opened.value()->viewContext();
    const QString folder = dir.filePath(QStringLiteral("Texte"));
    QDir().mkpath(folder);
    TitleGenerator generator(9);
    QList<ImportProposal> proposals;
    const QList<PoemPtr> poems = context.fetch();
    for (int i = 0; i < 5000; ++i) {
        const QString name = QStringLiteral("Gedicht %1.docx").arg(i);
        QStringList lines;
        for (int line = 0; line < 24; ++line)
            lines.append(line % 5 == 4 ? QString() : generator.title());
        lines.first().prepend(QLatin1Char('*'));
        ImportTestSupport::writeDocx(QDir(folder).filePath(name), lines);
        proposals.append(ImportTestSupport::proposalFor(name, poems.at(i * 4)));
    }
    ImportRunSettings settings;
    settings.folder = folder;
    settings.proposals = proposals;
    settings.options.onlyIfPoemTextEmpty = false;
    for (auto _ : state) {
        QElapsedTimer clock;
        clock.start();
        ImportRun run(context, settings);
        run.runToEnd();
        const double seconds = double(clock.nsecsElapsed()) / 1e9;
        state.counters["wall_s"] = seconds;
        state.counters["files_per_s"] = double(run.counts().applied) / seconds;
        state.counters["applied"] = run.counts().applied;
    }
    rusage self{};
    rusage helpers{};
    getrusage(RUSAGE_SELF, &self);
    getrusage(RUSAGE_CHILDREN, &helpers);
    const auto seconds = [](const timeval &time) { return double(time.tv_sec) + double(time.tv_usec) / 1e6; };
    state.counters["peak_MiB"] = double(self.ru_maxrss) / 1024.0;
    state.counters["helper_peak_MiB"] = double(helpers.ru_maxrss) / 1024.0;
    // Whole-process figures, setup included: they tell a loaded machine from a slow import.
    state.counters["cpu_s"] = seconds(self.ru_utime) + seconds(self.ru_stime);
    state.counters["helper_cpu_s"] = seconds(helpers.ru_utime) + seconds(helpers.ru_stime);
}
BENCHMARK(BM_apply5000DocxTo20000Poems)->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime();

} // namespace
