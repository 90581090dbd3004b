#include "MatchingFixtures.h"

#include "matching/FuzzyMatcher.h"
#include "matching/TitleIndex.h"

#include <QTest>

namespace {

QList<QUuid> idsOf(const QList<PoemSnapshotEntry> &poems, qsizetype from = 0, qsizetype count = -1)
{
    QList<QUuid> ids;
    for (const PoemSnapshotEntry &poem : poems.mid(from, count))
        ids.append(poem.id);
    return ids;
}

constexpr double exactly = 1e-12;

} // namespace

class TitleIndexTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void indexMapsEveryPoem()
    {
        const auto poems = snapshotOf({QStringLiteral("Der Mond"), QStringLiteral("—"), QStringLiteral("Über-Fluss")});
        const TitleIndex index(poems);
        QCOMPARE(index.allIDs(), idsOf(poems));
        QCOMPARE(index.title(poems[0].id), QStringLiteral("Der Mond"));
        QCOMPARE(index.normalizedTitle(poems[2].id), QStringLiteral("ueber fluss"));
        QCOMPARE(index.tokens(poems[0].id), QSet<QString>{QStringLiteral("mond")});
        // A title without a key is indexed all the same, just without words.
        QCOMPARE(index.normalizedTitle(poems[1].id), QString());
        QVERIFY(index.tokens(poems[1].id)->isEmpty());
        QVERIFY(!index.title(QUuid::createUuid()));
    }

    void candidatesComeFromWordsAndPrefixes()
    {
        const auto poems = snapshotOf({QStringLiteral("Herbstlied"), QStringLiteral("Winter"), QStringLiteral("Herbst"),
                                       QStringLiteral("Heringe"), QStringLiteral("Mond über dem Herbst")});
        const TitleIndex index(poems);
        // "herbst" itself, then everything under the prefix "her", each id once.
        QCOMPARE(index.candidateIDs(QStringLiteral("Herbst")),
                 (QList<QUuid>{poems[2].id, poems[4].id, poems[0].id, poems[3].id}));
        // Short words have no prefix key: "ei" only finds the word itself.
        QVERIFY(index.candidateIDs(QStringLiteral("Ei")).isEmpty());
        QVERIFY(index.candidateIDs(QStringLiteral("!!!")).isEmpty());
    }

    void commonWordIsNarrowedToTitlesHoldingTheName()
    {
        QStringList titles;
        for (int i = 0; i < 1000; ++i)
            titles.append(QStringLiteral("Herbst w%1").arg(i));
        const auto poems = snapshotOf(titles);
        const TitleIndex index(poems);
        // 1000 candidates, every title holds "herbst": the first 400 are kept.
        QCOMPARE(index.candidateIDs(QStringLiteral("Herbst")), idsOf(poems, 0, 400));
    }

    void narrowingTooFewFallsBackToTheFirst600()
    {
        QStringList titles;
        for (int i = 0; i < 1000; ++i)
            titles.append(i == 900 ? QStringLiteral("Herbst im Garten") : QStringLiteral("Herbst w%1").arg(i));
        const auto poems = snapshotOf(titles);
        const TitleIndex index(poems);
        const QList<QUuid> candidates = index.candidateIDs(QStringLiteral("Herbst im Garten"));
        // Only one title holds the whole name, fewer than 60: the unnarrowed list is cut
        // at 600, so even the exact title at position 900 is not scored.
        QCOMPARE(candidates, idsOf(poems, 0, 600));
        QVERIFY(!candidates.contains(poems[900].id));
    }

    void narrowingKeepsSixtyOrMore()
    {
        QStringList titles;
        for (int i = 0; i < 900; ++i)
            titles.append(i % 10 == 0 ? QStringLiteral("Herbst im Garten %1").arg(i)
                                      : QStringLiteral("Herbst w%1").arg(i));
        const auto poems = snapshotOf(titles);
        const QList<QUuid> candidates = TitleIndex(poems).candidateIDs(QStringLiteral("Herbst im Garten"));
        QCOMPARE(candidates.size(), 90);
        QCOMPARE(candidates.first(), poems[0].id);
        QCOMPARE(candidates.last(), poems[890].id);
    }

    void atMost800CandidatesAreKeptWhole()
    {
        QStringList titles;
        for (int i = 0; i < 800; ++i)
            titles.append(QStringLiteral("Rose w%1").arg(i));
        const auto poems = snapshotOf(titles);
        QCOMPARE(TitleIndex(poems).candidateIDs(QStringLiteral("Rose")).size(), 800);
    }

    void fallbackListsContainingTitles()
    {
        QStringList titles;
        for (int i = 0; i < 200; ++i)
            titles.append(QStringLiteral("Lied w%1").arg(i));
        titles.append(QStringLiteral("Abendlied"));
        titles.append(QStringLiteral("Ein Abendlied am Meer"));
        titles.append(QString()); // an empty title is not "contained" in every name
        const auto poems = snapshotOf(titles);
        const TitleIndex index(poems);
        QCOMPARE(index.fallbackIDs(QStringLiteral("Abendlied"), 120), (QList<QUuid>{poems[200].id, poems[201].id}));
        // The name contains the title "lied w3".
        QCOMPARE(index.fallbackIDs(QStringLiteral("xx lied w3 xx"), 120), QList<QUuid>{poems[3].id});
        // Nothing contains anything: the first poems of the snapshot, up to the limit.
        QCOMPARE(index.fallbackIDs(QStringLiteral("Zzz"), 120), idsOf(poems, 0, 120));
        // A name of symbols only has no key at all.
        QCOMPARE(index.fallbackIDs(QStringLiteral("—…!"), 120), idsOf(poems, 0, 120));
        QCOMPARE(index.fallbackIDs(QStringLiteral("lied"), 5), idsOf(poems, 0, 5));
    }

    void quickScoreCombinesOverlapAndContainment_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("title");
        QTest::addColumn<double>("score");
        QTest::newRow("identical, capped from 1.35") << "Herbstlied"
                                                     << "Herbstlied" << 1.0;
        QTest::newRow("title contains name only") << "Herbst"
                                                  << "Herbstlied" << 0.25;
        QTest::newRow("stop word dropped") << "Mond"
                                           << "Der Mond" << 1.0;
        QTest::newRow("name contains title") << "Mond Nacht Lied"
                                             << "Nacht" << 1.0 / 3.0 + 0.1;
        QTest::newRow("half the words") << "Nacht Wind"
                                        << "Wind Meer" << 1.0 / 3.0;
        QTest::newRow("few words shared, title holds name") << "Abend"
                                                            << "Abend Wind Meer Nacht Lied" << 0.2 + 0.25;
        QTest::newRow("few words shared, name holds title") << "Rose Tulpe Nelke Lilie Wind Meer"
                                                            << "Meer" << 1.0 / 6.0 + 0.1;
        QTest::newRow("name holds title, still below") << "Rose Tulpe Nelke Lilie Wind Meer Nacht"
                                                       << "Meer" << 1.0 / 7.0 + 0.1;
        QTest::newRow("one word of many") << "Rose Tulpe Nelke Lilie Wind"
                                          << "Wind Meer" << 1.0 / 6.0;
        QTest::newRow("no words on one side") << "A und O"
                                              << "A und O" << 0.0;
        QTest::newRow("nothing shared") << "Rose"
                                        << "Tulpe" << 0.0;
    }

    void quickScoreCombinesOverlapAndContainment()
    {
        QFETCH(QString, name);
        QFETCH(QString, title);
        QFETCH(double, score);
        QVERIFY(qAbs(TitleIndex::quickScore(name, title) - score) < exactly);
        // The prepared form used by the matcher gives the same number.
        const TitleIndex index({{QUuid::createUuid(), title}});
        QVERIFY(qAbs(index.quickScore(index.prepare(name), 0) - score) < exactly);
        QCOMPARE(index.passesQuickScoreGate(index.prepare(name), 0), score >= 0.25);
        QCOMPARE(index.passesQuickScoreGate(index.prepare(name), 0), score >= 0.25);
    }

    void jaccardAndLevenshtein()
    {
        QCOMPARE(FuzzyMatcher::jaccard({}, {}), 0.0);
        QCOMPARE(FuzzyMatcher::jaccard({QStringLiteral("a"), QStringLiteral("b")},
                                       {QStringLiteral("b"), QStringLiteral("c")}),
                 1.0 / 3.0);
        QCOMPARE(FuzzyMatcher::levenshtein(QStringLiteral("kitten"), QStringLiteral("sitting")), 3);
        QCOMPARE(FuzzyMatcher::levenshtein(QString(), QStringLiteral("mond")), 4);
        QCOMPARE(FuzzyMatcher::levenshtein(QStringLiteral("mond"), QString()), 4);
        QCOMPARE(FuzzyMatcher::levenshtein(QStringLiteral("mond"), QStringLiteral("der mond")), 4);
        // Characters, not UTF-16 units: an accent, a flag and CR LF are one character each.
        QCOMPARE(FuzzyMatcher::levenshtein(QStringLiteral("cafe\u0301"), QStringLiteral("cafe")), 1);
        QCOMPARE(FuzzyMatcher::levenshtein(QStringLiteral("🇩🇪"), QStringLiteral("🇫🇷")), 1);
        QCOMPARE(FuzzyMatcher::levenshtein(QStringLiteral("a\r\nb"), QStringLiteral("axb")), 1);
        const QString longer(300, QLatin1Char('a'));
        QCOMPARE(FuzzyMatcher::levenshtein(longer, longer + QStringLiteral("b")), 1);
    }

    void fuzzyScoreOfTheWorkedExamples()
    {
        QVERIFY(qAbs(FuzzyMatcher::score(QStringLiteral("Herbstlied"), QStringLiteral("Herbstlied")) - 1.0) < exactly);
        QVERIFY(qAbs(FuzzyMatcher::score(QStringLiteral("Herbst"), QStringLiteral("Herbstlied")) - 0.24) < exactly);
        QVERIFY(qAbs(FuzzyMatcher::score(QStringLiteral("Mond"), QStringLiteral("Der Mond")) - 0.5) < exactly);
        // Noise words go before scoring.
        QVERIFY(qAbs(FuzzyMatcher::score(QStringLiteral("Herbst final v2"), QStringLiteral("Herbst")) - 1.0) < exactly);
        // An empty fuzzy key on either side is no candidate.
        QCOMPARE(FuzzyMatcher::score(QStringLiteral("Ü"), QStringLiteral("Ü")), 0.0);
        QCOMPARE(FuzzyMatcher::score(QStringLiteral("Rose"), QStringLiteral("—")), 0.0);
        // The prepared keys give the same number as the plain call.
        const double direct = FuzzyMatcher::score(QStringLiteral("Sommer am See"), QStringLiteral("Am See im Sommer"));
        QCOMPARE(FuzzyMatcher::score(FuzzyMatcher::key(QStringLiteral("Sommer am See")),
                                     FuzzyMatcher::key(QStringLiteral("Am See im Sommer"))),
                 direct);
        QVERIFY(direct > 0.0 && direct < 1.0);
    }
};

QTEST_GUILESS_MAIN(TitleIndexTest)
#include "tst_titleindex.moc"
