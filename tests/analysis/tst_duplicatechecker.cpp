#include "AnalysisTestArchive.h"

#include "analysis/DuplicateChecker.h"
#include "matching/FuzzyMatcher.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <cstdlib>
#include <map>

namespace {

using PairScores = std::map<std::pair<QString, QString>, double>;

std::pair<QString, QString> unordered(const QString &a, const QString &b)
{
    return a < b ? std::pair(a, b) : std::pair(b, a);
}

// The similar-pair rule applied to every pair, without any shortcut: the reference the
// checker's pruned search must reproduce exactly.
PairScores allPairsReference(const QList<DuplicatePoemSnapshot> &snapshots)
{
    QStringList titleKeys;
    QStringList fuzzyKeys;
    QList<QSet<QString>> tokens;
    for (const DuplicatePoemSnapshot &snapshot : snapshots) {
        titleKeys.append(normalize(snapshot.title));
        fuzzyKeys.append(FuzzyMatcher::normalize(snapshot.title));
        tokens.append(FuzzyMatcher::tokens(fuzzyKeys.last()));
    }
    PairScores pairs;
    for (qsizetype i = 0; i < snapshots.size(); ++i) {
        for (qsizetype j = i + 1; j < snapshots.size(); ++j) {
            if (!titleKeys[i].isEmpty() && titleKeys[i] == titleKeys[j])
                continue;
            const QString &a = fuzzyKeys[i];
            const QString &b = fuzzyKeys[j];
            if (std::abs(a.size() - b.size()) > 10)
                continue;
            const double tokenSimilarity = FuzzyMatcher::jaccard(tokens[i], tokens[j]);
            const qsizetype longer = std::max(a.size(), b.size());
            const double editSimilarity =
                longer == 0 ? 1.0 : 1.0 - double(FuzzyMatcher::levenshtein(a, b)) / double(longer);
            const double score = 0.6 * tokenSimilarity + 0.4 * editSimilarity;
            if (score >= 0.88)
                pairs[unordered(snapshots[i].objectID, snapshots[j].objectID)] = score;
        }
    }
    return pairs;
}

PairScores pairScores(const QList<SimilarTitlePair> &pairs)
{
    PairScores scores;
    for (const SimilarTitlePair &pair : pairs)
        scores[unordered(pair.first.objectID, pair.second.objectID)] = pair.score;
    return scores;
}

// Long and short titles with the slips an archive collects: typing errors, repeated and
// dropped words, swapped words, case and punctuation, and titles without any letters.
QString nearDuplicateTitle(QRandomGenerator &random, QStringList &seen)
{
    static const QStringList words = {
        QStringLiteral("abend"), QStringLiteral("lied"),    QStringLiteral("mond"),      QStringLiteral("über"),
        QStringLiteral("den"),   QStringLiteral("stillen"), QStringLiteral("wassern"),   QStringLiteral("herbst"),
        QStringLiteral("zeit"),  QStringLiteral("im"),      QStringLiteral("garten"),    QStringLiteral("der"),
        QStringLiteral("rosen"), QStringLiteral("nacht"),   QStringLiteral("und"),       QStringLiteral("meer"),
        QStringLiteral("licht"), QStringLiteral("straße"),  QStringLiteral("sehnsucht"), QStringLiteral("winter"),
        QStringLiteral("final"), QStringLiteral("2"),       QStringLiteral("17"),        QStringLiteral("ö"),
    };
    if (!seen.isEmpty() && random.bounded(3) != 0) {
        QString title = seen.at(random.bounded(seen.size()));
        switch (random.bounded(6)) {
        case 0: { // a typing error
            const int at = random.bounded(title.size());
            title[at] = QChar(u'a' + random.bounded(26));
            break;
        }
        case 1:
            title += QLatin1Char(' ') + words.at(random.bounded(words.size()));
            break;
        case 2:
            title = title.section(QLatin1Char(' '), 0, -2);
            break;
        case 3: {
            QStringList parts = title.split(QLatin1Char(' '));
            if (parts.size() > 1)
                parts.swapItemsAt(0, 1);
            title = parts.join(QLatin1Char(' '));
            break;
        }
        case 4:
            title = title.toUpper() + QStringLiteral("!");
            break;
        default:
            title.remove(random.bounded(title.size()), 1);
        }
        return title;
    }
    if (random.bounded(40) == 0)
        return QStringLiteral("„…“");
    QStringList parts;
    const int count = 1 + random.bounded(random.bounded(2) ? 4 : 12);
    for (int i = 0; i < count; ++i)
        parts.append(words.at(random.bounded(words.size())));
    seen.append(parts.join(QLatin1Char(' ')));
    return seen.last();
}

} // namespace

class DuplicateCheckerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void titlesDifferingInCaseAndPunctuationFormOneGroupAndNoPair()
    {
        AnalysisTestArchive archive;
        const PoemPtr a = archive.add(QStringLiteral("Herbst-Lied!"));
        const PoemPtr b = archive.add(QStringLiteral("herbst lied"));
        archive.add(QStringLiteral("Winter"));
        archive.add(QStringLiteral("..."));
        archive.add(QStringLiteral("?!"));
        const DuplicateCheckReport report = DuplicateChecker::check(archive.poems());
        QCOMPARE(report.poemCount, 5);
        QCOMPARE(report.exactGroups.size(), 1); // titles without letters form no group
        QCOMPARE(report.exactGroups[0].normalizedTitle, QStringLiteral("herbst lied"));
        QCOMPARE(report.exactGroups[0].poems.size(), 2);
        QCOMPARE(report.exactGroups[0].poems[0].objectID, b->objectID()); // sorted by title
        QCOMPARE(report.exactGroups[0].poems[1].objectID, a->objectID());
        QVERIFY(report.similarPairs.isEmpty());
        QCOMPARE(DuplicateChecker::statusLine(report),
                 QStringLiteral("Duplikatprüfung: 1 gleiche Titel, 0 ähnliche Titel gefunden."));
        QCOMPARE(DuplicateChecker::summaryText(report),
                 QStringLiteral("5 Gedichte geprüft. 1 gleiche Titel, 0 ähnliche Titel gefunden. Es wurde nichts "
                                "verändert."));
        DuplicateCheckReport one;
        one.poemCount = 1;
        QVERIFY(DuplicateChecker::summaryText(one).startsWith(QStringLiteral("1 Gedicht geprüft. 0 gleiche Titel")));
    }

    void similarPairsAtTheThreshold()
    {
        AnalysisTestArchive archive;
        // Same words, four more letters: 0.6 + 0.4 × (1 − 4/17), just above the threshold.
        const PoemPtr short1 = archive.add(QStringLiteral("Mond und Meer"));
        const PoemPtr short2 = archive.add(QStringLiteral("Mond und Meer und"));
        // Swapped words keep the tokens but lose on the edit distance.
        archive.add(QStringLiteral("Rose Nacht"));
        archive.add(QStringLiteral("Nacht Rose"));
        // One word of three changed: the tokens fall to a half.
        archive.add(QStringLiteral("Mond und Mehr"));
        const DuplicateCheckReport report = DuplicateChecker::check(archive.poems());
        QCOMPARE(report.similarPairs.size(), 1);
        const SimilarTitlePair &pair = report.similarPairs[0];
        QCOMPARE(unordered(pair.first.objectID, pair.second.objectID),
                 unordered(short1->objectID(), short2->objectID()));
        QCOMPARE(pair.first.title, QStringLiteral("Mond und Meer")); // the earlier title first
        QCOMPARE(pair.score, 0.6 + 0.4 * (1.0 - 4.0 / 17.0));
        QCOMPARE(DuplicateChecker::percent(pair.score), 90);
        QCOMPARE(DuplicateChecker::statusLine(report),
                 QStringLiteral("Duplikatprüfung: 0 gleiche Titel, 1 ähnliche Titel gefunden."));

        // Five of six words and 38 of 40 letters: 0.6 × 5/6 + 0.4 × 38/40 is the threshold itself,
        // which counts as similar.
        const QString sunset = QStringLiteral("Sonnenuntergang ueber dem stillen Meer");
        QCOMPARE(FuzzyMatcher::score(sunset, sunset + QStringLiteral(" 2")), DuplicateChecker::similarityThreshold);
        AnalysisTestArchive exact;
        exact.add(sunset);
        exact.add(sunset + QStringLiteral(" 2"));
        QCOMPARE(DuplicateChecker::check(exact.poems()).similarPairs.size(), 1);
    }

    void titlesMoreThanTenCharactersApartAreNeverPaired()
    {
        const QString base = QStringLiteral("Sonnenuntergang ueber dem stillen Meer");
        for (const auto &[suffix, paired] :
             {std::pair(QStringLiteral(" Meer Meer"), true), std::pair(QStringLiteral(" Meer Meer dem"), false),
              std::pair(QStringLiteral(" Meer Meer Meer"), false)}) {
            AnalysisTestArchive archive;
            archive.add(base);
            archive.add(base + suffix);
            // Without the gate the scores would all pass: the same words, a short distance.
            QVERIFY(FuzzyMatcher::score(base, base + suffix) >= 0.88);
            QCOMPARE(DuplicateChecker::check(archive.poems()).similarPairs.size(), paired ? 1 : 0);
        }
        AnalysisTestArchive archive;
        archive.add(QStringLiteral("Mond!"));
        archive.add(QStringLiteral("Mond mond MOND mond"));
        QVERIFY(DuplicateChecker::check(archive.poems()).similarPairs.isEmpty());
    }

    void poemsInTheTrashTakeNoPart()
    {
        AnalysisTestArchive archive;
        archive.add(QStringLiteral("Abendlied"));
        const PoemPtr trashed = archive.add(QStringLiteral("Abendlied"));
        trashed->setDeletedAt(QDateTime::currentDateTimeUtc());
        archive.add(QStringLiteral("Abendlied am Meer"))->setDeletedAt(QDateTime::currentDateTimeUtc());
        const DuplicateCheckReport report = DuplicateChecker::check(archive.poems());
        QCOMPARE(report.poemCount, 1);
        QVERIFY(!report.hasFindings());
        QCOMPARE(DuplicateChecker::noFindingsHeading(), QStringLiteral("Keine Auffälligkeiten gefunden"));
    }

    void snapshotsCarryDateCategoryAndTextState()
    {
        AnalysisTestArchive archive;
        const PoemPtr poem = archive.add(QStringLiteral("Abend"), QStringLiteral("  \n\t"));
        poem->setCategory(QStringLiteral("Lyrik"));
        poem->setDate(QDateTime(QDate(2024, 2, 29), QTime(12, 0), Qt::UTC));
        const DuplicatePoemSnapshot snapshot = DuplicateChecker::snapshot(*poem);
        QCOMPARE(snapshot.dateText, QStringLiteral("29.02.2024"));
        QCOMPARE(snapshot.category, QStringLiteral("Lyrik"));
        QVERIFY(!snapshot.hasText);
        QCOMPARE(snapshot.id, uuidText(*poem->id()));
        QVERIFY(DuplicateChecker::snapshot(*archive.add(QStringLiteral("Ohne"))).dateText.isEmpty());
    }

    void prunedSearchReportsExactlyTheAllPairsResult()
    {
        AnalysisTestArchive archive;
        QRandomGenerator random(20261122);
        QStringList seen;
        for (int i = 0; i < 2000; ++i)
            archive.add(nearDuplicateTitle(random, seen));
        QList<DuplicatePoemSnapshot> snapshots;
        for (const PoemPtr &poem : archive.poems())
            snapshots.append(DuplicateChecker::snapshot(*poem));

        const QList<SimilarTitlePair> found =
            DuplicateChecker::findSimilarPairs(snapshots, DuplicateChecker::findExactGroups(snapshots));
        const PairScores reference = allPairsReference(snapshots);
        // Enough pairs, and enough near the threshold, for the comparison to mean something.
        QVERIFY2(reference.size() > 300, qPrintable(QString::number(reference.size())));
        const auto nearThreshold =
            std::count_if(reference.begin(), reference.end(), [](const auto &pair) { return pair.second < 0.9; });
        QVERIFY2(nearThreshold > 20, qPrintable(QString::number(nearThreshold)));
        QCOMPARE(qsizetype(pairScores(found).size()), found.size()); // no pair twice
        QVERIFY(pairScores(found) == reference);
        for (qsizetype i = 1; i < found.size(); ++i)
            QVERIFY(found[i - 1].score >= found[i].score);
    }
};

QTEST_GUILESS_MAIN(DuplicateCheckerTest)
#include "tst_duplicatechecker.moc"
