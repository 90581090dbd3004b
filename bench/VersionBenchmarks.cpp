#include "ArchiveFixtures.h"

#include "archive/ArchiveContext.h"
#include "archive/PersistenceController.h"
#include "archive/PoemEdit.h"
#include "archive/PoemFactory.h"
#include "archive/PoemVersions.h"
#include "archive/VerseDiff.h"
#include "editor/PoemRichText.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <sqlite3.h>

namespace {

// Poems of `lines` verse lines, about five words each, in stanzas of four.
class PoemDraft {
public:
    PoemDraft(ArchiveFixtures &fixtures, int lines) : m_fixtures(fixtures)
    {
        for (int i = 0; i < lines; ++i)
            m_words.append((m_fixtures.title() + QLatin1Char(' ') + m_fixtures.title()).split(QLatin1Char(' ')));
    }

    // A session's work: about `count` words replaced here and there.
    void change(int count)
    {
        for (int i = 0; i < count; ++i) {
            QStringList &line = m_words[qsizetype(m_fixtures.next() % m_words.size())];
            line[qsizetype(m_fixtures.next() % line.size())] = m_fixtures.title().section(QLatin1Char(' '), 0, 0);
        }
    }

    QString text() const
    {
        QStringList out;
        for (qsizetype i = 0; i < m_words.size(); ++i) {
            if (i > 0 && i % 4 == 0)
                out.append(QString());
            out.append(m_words.at(i).join(QLatin1Char(' ')));
        }
        return out.join(QLatin1Char('\n'));
    }

private:
    ArchiveFixtures &m_fixtures;
    QList<QStringList> m_words;
};

// The rich text the editor writes for the text, with a photograph's bytes when there is one.
QByteArray richTextFor(const QString &text, const QByteArray &photo)
{
    QByteArray rtf = PoemRichText::encodePlainText(text).value();
    if (!photo.isEmpty())
        rtf.insert(rtf.lastIndexOf('}'),
                   "{\\pict\\jpegblip\\bin" + QByteArray::number(photo.size()) + ' ' + photo + "}\\par ");
    return rtf;
}

qint64 storeBytes(const QString &path)
{
    sqlite3 *db = nullptr;
    if (sqlite3_open(path.toUtf8().constData(), &db) == SQLITE_OK)
        sqlite3_exec(db, "PRAGMA wal_checkpoint(TRUNCATE)", nullptr, nullptr, nullptr);
    sqlite3_close(db);
    return QFileInfo(path).size();
}

// The dry run of a year: only the figures below, never part of the tests. tmpfs, so the
// machine's disk does not set the pace of 120,000 commits.
QString scratchFolder()
{
    return QDir(QStringLiteral("/dev/shm")).exists() ? QStringLiteral("/dev/shm") : QDir::tempPath();
}

// A year of a poet's work: 200 poems of 60 lines, 300 editing sessions each of about 20
// changed words, spread over the year, one 2 MB photograph in 20 of them; retention runs as
// the versions are kept. Reported: what the versions add to the store, and what listing the
// versions of a poem, reading its oldest one and comparing two of them cost at the end.
void BM_versionsOfAYear(benchmark::State &state)
{
    constexpr int poemCount = 200;
    constexpr int sessions = 300;
    for (auto _ : state) {
        QTemporaryDir dir(scratchFolder() + QStringLiteral("/odeleaf-bench-XXXXXX"));
        const QString path = dir.filePath(QStringLiteral("OdeLeaf.sqlite"));
        auto opened = PersistenceController::open(path);
        if (!opened) {
            state.SkipWithError("could not open the store");
            return;
        }
        ArchiveContext &context = (*opened)->viewContext();
        QDateTime now(QDate(2025, 1, 1), QTime(8, 0), Qt::UTC);
        context.setClock([&now] { return now; });
        ArchiveFixtures fixtures;
        std::vector<PoemDraft> drafts;
        std::vector<PoemPtr> poems;
        std::vector<QByteArray> photos;
        QRandomGenerator random(5);
        for (int i = 0; i < poemCount; ++i) {
            drafts.emplace_back(fixtures, 60);
            QByteArray photo;
            if (i % 10 == 0) {
                photo.resize(2 << 20);
                random.fillRange(reinterpret_cast<quint32 *>(photo.data()), photo.size() / 4);
            }
            photos.push_back(photo);
            PoemPtr poem = PoemFactory::makeNewPoem(context, now);
            PoemEdit::setTitle(*poem, fixtures.title());
            poem->setText(drafts.back().text());
            poem->setRichTextData(richTextFor(drafts.back().text(), photo));
            poems.push_back(poem);
        }
        if (!context.save()) {
            state.SkipWithError("could not save the poems");
            return;
        }
        const qint64 before = storeBytes(path);

        QElapsedTimer sessionClock;
        qint64 sessionNanos = 0;
        for (int session = 0; session < sessions; ++session) {
            for (int i = 0; i < poemCount; ++i) {
                now = QDateTime(QDate(2025, 1, 1), QTime(8, 0), Qt::UTC)
                          .addSecs(qint64(session) * 365 * 86400 / sessions + i * 60);
                drafts[size_t(i)].change(20);
                const QString text = drafts[size_t(i)].text();
                const QByteArray rich = richTextFor(text, photos[size_t(i)]);
                sessionClock.start();
                const auto saved = PoemEdit::apply(
                    context, *poems[size_t(i)],
                    [&](Poem &poem) {
                        poem.setText(text);
                        poem.setRichTextData(rich);
                    },
                    now);
                const auto kept = PoemVersions::recordSessionEnd(context, *poems[size_t(i)]);
                sessionNanos += sessionClock.nsecsElapsed();
                if (!saved || !kept || !*kept) {
                    state.SkipWithError("a session was not kept");
                    return;
                }
            }
        }
        const qint64 after = storeBytes(path);

        const Poem &sample = *poems[1];
        const auto versions = PoemVersions::list(context, sample);
        QElapsedTimer clock;
        clock.start();
        for (int i = 0; i < 100; ++i)
            benchmark::DoNotOptimize(PoemVersions::list(context, sample));
        const double listMs = double(clock.nsecsElapsed()) / 1e6 / 100;
        clock.start();
        const auto oldest = PoemVersions::version(context, sample, versions->back().number);
        const double oldestMs = double(clock.nsecsElapsed()) / 1e6;
        const auto newest = PoemVersions::version(context, sample, versions->front().number);
        clock.start();
        const VerseDiff diff =
            VerseDiff::compare(oldest->values.text.value_or(QString()), newest->values.text.value_or(QString()));
        const double compareMs = double(clock.nsecsElapsed()) / 1e6;
        benchmark::DoNotOptimize(diff.wordsAdded());

        state.counters["growthMB"] = double(after - before) / (1 << 20);
        state.counters["versionsPerPoem"] = double(versions->size());
        state.counters["sessionMs"] = double(sessionNanos) / 1e6 / (poemCount * sessions);
        state.counters["listMs"] = listMs;
        state.counters["readOldestMs"] = oldestMs;
        state.counters["compareMs"] = compareMs;
    }
}
BENCHMARK(BM_versionsOfAYear)->Unit(benchmark::kSecond)->Iterations(1);

// Comparing two versions of a 60-line poem some sessions apart, as the panel does.
void BM_compareTwoVersionsOf60Lines(benchmark::State &state)
{
    ArchiveFixtures fixtures;
    PoemDraft draft(fixtures, 60);
    const QString older = draft.text();
    for (int i = 0; i < state.range(0); ++i)
        draft.change(20);
    const QString newer = draft.text();
    for (auto _ : state)
        benchmark::DoNotOptimize(VerseDiff::compare(older, newer).wordsAdded());
}
BENCHMARK(BM_compareTwoVersionsOf60Lines)->Arg(1)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);

} // namespace
