#include "MatchingFixtures.h"

#include "archive/PoemValues.h"
#include "import/DocumentBatchImporter.h"
#include "import/ProposalFilter.h"
#include "matching/FuzzyMatcher.h"
#include "matching/TitleIndex.h"

#include <QJsonArray>
#include <QTest>

#include <algorithm>
#include <random>

namespace {

QList<ScannedFile> filesNamed(const QStringList &names)
{
    QList<ScannedFile> files;
    for (const QString &name : names)
        files.append({name, QStringLiteral("Ordner/") + name});
    return files;
}

ImportProposal proposalFor(const QString &fileName, const QStringList &titles)
{
    return DocumentBatchImporter::buildProposals(filesNamed({fileName}), snapshotOf(titles), 5).constFirst();
}

MatchCandidate candidate(const QString &title, double score)
{
    return {uuidText(QUuid::createUuid()), title, score};
}

constexpr double exactly = 1e-12;

// The matcher spelled out from the index's public queries, pair by pair, without any of
// the shortcuts of the real one.
QList<MatchCandidate> referenceCandidates(const TitleIndex &index, const QString &fileName)
{
    const QString base = DocumentBatchImporter::baseName(fileName);
    QList<MatchCandidate> candidates;
    const auto score = [&](const QUuid &id, bool gated) {
        const QString title = *index.title(id);
        if (gated && TitleIndex::quickScore(base, title) < 0.25)
            return;
        const double s = FuzzyMatcher::score(base, title);
        if (s > 0)
            candidates.append({uuidText(id), title, s});
    };
    for (const QUuid &id : index.candidateIDs(base))
        score(id, true);
    if (candidates.isEmpty()) {
        for (const QUuid &id : index.fallbackIDs(base, 120))
            score(id, false);
    }
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const MatchCandidate &a, const MatchCandidate &b) { return a.score > b.score; });
    return candidates.mid(0, 5);
}

QString randomTitle(std::mt19937 &random)
{
    static const QStringList words = {"Herbst", "Mond",  "über",   "der",    "Nacht",     "Lied",   "Straße",
                                      "Fluss",  "Rosen", "Winter", "Garten", "im",        "Stille", "Öde",
                                      "Meer",   "und",   "Licht",  "Abend",  "Sehnsucht", "Heide"};
    QStringList parts;
    const int count = 1 + int(random() % 4);
    for (int i = 0; i < count; ++i)
        parts.append(words.at(qsizetype(random() % words.size())));
    if (random() % 4 == 0)
        parts.append(QString::number(random() % 40));
    return parts.join(random() % 6 == 0 ? QStringLiteral("_") : QStringLiteral(" "));
}

} // namespace

class ProposalsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void workedExamplesEndToEnd()
    {
        const ImportProposal exact = proposalFor(QStringLiteral("Herbstlied.docx"), {QStringLiteral("Herbstlied")});
        QCOMPARE(exact.candidates.size(), 1);
        QVERIFY(qAbs(exact.suggestedScore - 1.0) < exactly);
        QCOMPARE(exact.chosenPoemObjectURI, exact.suggestedPoemObjectURI);
        QCOMPARE(exact.suggestedTitle, QStringLiteral("Herbstlied"));

        // Found through the prefix "her" only; suggested, never chosen.
        const ImportProposal prefix = proposalFor(QStringLiteral("Herbst.docx"), {QStringLiteral("Herbstlied")});
        QCOMPARE(prefix.candidates.size(), 1);
        QVERIFY(qAbs(prefix.suggestedScore - 0.24) < exactly);
        QCOMPARE(prefix.suggestedTitle, QStringLiteral("Herbstlied"));
        QVERIFY(!prefix.chosenPoemObjectURI);

        const ImportProposal stopWord = proposalFor(QStringLiteral("Mond.pdf"), {QStringLiteral("Der Mond")});
        QVERIFY(qAbs(stopWord.suggestedScore - 0.5) < exactly);
        QVERIFY(!stopWord.chosenPoemObjectURI);

        // Only the last extension goes; "v2" is noise to the fuzzy key.
        QCOMPARE(DocumentBatchImporter::baseName(QStringLiteral("Lied.v2.docx")), QStringLiteral("Lied.v2"));
        QCOMPARE(DocumentBatchImporter::baseName(QStringLiteral("Lied")), QStringLiteral("Lied"));
        const ImportProposal twoDots = proposalFor(QStringLiteral("Lied.v2.docx"), {QStringLiteral("Lied")});
        QVERIFY(qAbs(twoDots.suggestedScore - 1.0) < exactly);
    }

    void proposalsKeepFileOrderAndPaths()
    {
        const auto poems = snapshotOf({QStringLiteral("Winter"), QStringLiteral("Sommer")});
        const QList<ScannedFile> files = {{QStringLiteral("Sommer.docx"), QStringLiteral("b/Sommer.docx")},
                                          {QStringLiteral("Zzz.pdf"), QStringLiteral("a/Zzz.pdf")},
                                          {QStringLiteral("Winter.pdf"), QStringLiteral("Winter.pdf")}};
        const QList<ImportProposal> proposals = DocumentBatchImporter::buildProposals(files, poems, 5);
        QCOMPARE(proposals.size(), 3);
        QCOMPARE(proposals[0].relativePath, QStringLiteral("b/Sommer.docx"));
        QCOMPARE(proposals[0].chosenPoemObjectURI, uuidText(poems[1].id));
        QCOMPARE(proposals[1].fileName, QStringLiteral("Zzz.pdf"));
        QCOMPARE(proposals[2].chosenPoemObjectURI, uuidText(poems[0].id));
    }

    void symbolOnlyNameGetsNoCandidate()
    {
        QStringList titles;
        for (int i = 0; i < 200; ++i)
            titles.append(QStringLiteral("Lied %1").arg(i));
        const ImportProposal proposal = proposalFor(QStringLiteral("—!!!—.docx"), titles);
        QVERIFY(proposal.candidates.isEmpty());
        QVERIFY(!proposal.suggestedPoemObjectURI && !proposal.suggestedTitle && !proposal.chosenPoemObjectURI);
        QCOMPARE(proposal.suggestedScore, 0.0);
    }

    void fallbackScoresWhenNoWordMatches()
    {
        // "abendlied" shares neither a word nor a prefix key with "Lied", but holds it.
        const ImportProposal contained =
            proposalFor(QStringLiteral("Abendlied.docx"), {QStringLiteral("Rose"), QStringLiteral("Lied")});
        QCOMPARE(contained.candidates.size(), 1);
        QCOMPARE(contained.suggestedTitle, QStringLiteral("Lied"));
        QVERIFY(qAbs(contained.suggestedScore - 0.4 * (1.0 - 5.0 / 9.0)) < exactly);
        // Nothing holds anything: the first poems are scored, and the zero scores dropped.
        const ImportProposal loose =
            proposalFor(QStringLiteral("Xrosi.docx"), {QStringLiteral("Tulpe"), QStringLiteral("Rose")});
        QCOMPARE(loose.candidates.size(), 1);
        QCOMPARE(loose.suggestedTitle, QStringLiteral("Rose"));
        QVERIFY(qAbs(loose.suggestedScore - 0.24) < exactly);
    }

    void equalScoresKeepIndexOrderAndTopFive()
    {
        QStringList titles(7, QStringLiteral("Rose"));
        const auto poems = snapshotOf(titles);
        const ImportProposal proposal =
            DocumentBatchImporter::buildProposals(filesNamed({QStringLiteral("Rose.docx")}), poems, 5).constFirst();
        QCOMPARE(proposal.candidates.size(), 5);
        for (int i = 0; i < 5; ++i)
            QCOMPARE(proposal.candidates[i].poemObjectURI, uuidText(poems[i].id));
        const ImportProposal three =
            DocumentBatchImporter::buildProposals(filesNamed({QStringLiteral("Rose.docx")}), poems, 3).constFirst();
        QCOMPARE(three.candidates.size(), 3);
    }

    void candidatesAreSortedBestFirst()
    {
        const ImportProposal proposal =
            proposalFor(QStringLiteral("Mond über dem Meer.docx"),
                        {QStringLiteral("Mond"), QStringLiteral("Mond über dem Meer"), QStringLiteral("Meer")});
        QCOMPARE(proposal.suggestedTitle, QStringLiteral("Mond über dem Meer"));
        for (qsizetype i = 1; i < proposal.candidates.size(); ++i)
            QVERIFY(proposal.candidates[i - 1].score >= proposal.candidates[i].score);
    }

    void matcherAgreesWithThePairByPairRules()
    {
        std::mt19937 random(7);
        QStringList titles;
        for (int i = 0; i < 1500; ++i)
            titles.append(randomTitle(random));
        const auto poems = snapshotOf(titles);
        QStringList names;
        for (int i = 0; i < 300; ++i)
            names.append(randomTitle(random) + (i % 2 ? QStringLiteral(".docx") : QStringLiteral(" final.pdf")));
        names.append(QStringLiteral("Herbst.docx"));
        names.append(QStringLiteral("???.pdf"));
        const QList<ImportProposal> proposals = DocumentBatchImporter::buildProposals(filesNamed(names), poems, 5);
        const TitleIndex index(poems);
        for (qsizetype i = 0; i < names.size(); ++i)
            QCOMPARE(proposals[i].candidates, referenceCandidates(index, names[i]));
    }

    void preselectionNeedsAtLeast085()
    {
        const ScannedFile file{QStringLiteral("a.docx"), QStringLiteral("a.docx")};
        const ImportProposal below = ImportProposal::make(file, {candidate(QStringLiteral("A"), 0.849)});
        QCOMPARE(below.suggestedTitle, QStringLiteral("A"));
        QCOMPARE(below.suggestedScore, 0.849);
        QVERIFY(!below.chosenPoemObjectURI);
        const ImportProposal at = ImportProposal::make(file, {candidate(QStringLiteral("A"), 0.85)});
        QCOMPARE(at.chosenPoemObjectURI, at.candidates[0].poemObjectURI);
    }

    void imageNearTiesAreLeftToTheUser()
    {
        const ScannedFile file{QStringLiteral("a.png"), QStringLiteral("a.png")};
        QList<ImportProposal> proposals = {
            ImportProposal::make(file, {candidate(QStringLiteral("A"), 0.91), candidate(QStringLiteral("B"), 0.85)}),
            ImportProposal::make(file, {candidate(QStringLiteral("A"), 0.91), candidate(QStringLiteral("B"), 0.83)}),
            ImportProposal::make(file, {candidate(QStringLiteral("A"), 0.91)}),
        };
        DocumentBatchImporter::withdrawNearTieChoices(proposals);
        QVERIFY(!proposals[0].chosenPoemObjectURI);
        QCOMPARE(proposals[0].suggestedTitle, QStringLiteral("A")); // the suggestion stays
        QCOMPARE(proposals[1].chosenPoemObjectURI, proposals[1].candidates[0].poemObjectURI);
        QVERIFY(proposals[2].chosenPoemObjectURI);

        // Two poems of the same title: a text import takes the first, an image import asks.
        const auto poems = snapshotOf({QStringLiteral("Rose"), QStringLiteral("Rose")});
        const auto files = filesNamed({QStringLiteral("Rose.png")});
        QVERIFY(DocumentBatchImporter::buildProposals(files, poems, 5)[0].chosenPoemObjectURI);
        QVERIFY(!DocumentBatchImporter::buildImageProposals(files, poems)[0].chosenPoemObjectURI);
    }

    void imageProposalsFollowTheFileManagerOrder()
    {
        const QList<ScannedFile> files = {{QStringLiteral("b10.png"), QStringLiteral("b10.png")},
                                          {QStringLiteral("B2.png"), QStringLiteral("B2.png")},
                                          {QStringLiteral("a.jpg"), QStringLiteral("z/a.jpg")},
                                          {QStringLiteral("b1.png"), QStringLiteral("b1.png")}};
        QStringList order;
        for (const ImportProposal &proposal : DocumentBatchImporter::buildImageProposals(files, {}))
            order.append(proposal.relativePath);
        QCOMPARE(order, (QStringList{"b1.png", "B2.png", "b10.png", "z/a.jpg"}));
    }

    void filtersShowTheirProposals()
    {
        const ScannedFile file{QStringLiteral("a.docx"), QStringLiteral("a.docx")};
        const ImportProposal none = ImportProposal::make(file, {});
        const ImportProposal preselected = ImportProposal::make(file, {candidate(QStringLiteral("A"), 0.85)});
        ImportProposal byHand = ImportProposal::make(file, {candidate(QStringLiteral("B"), 0.849)});
        byHand.chosenPoemObjectURI = byHand.candidates[0].poemObjectURI;
        const QList<ImportProposal> proposals = {none, preselected, byHand};

        QCOMPARE(visibleIndices(ProposalFilter::needsMatch, proposals), (QList<qsizetype>{0}));
        QCOMPARE(visibleIndices(ProposalFilter::lowConfidence, proposals), (QList<qsizetype>{0, 2}));
        QCOMPARE(visibleIndices(ProposalFilter::matched, proposals), (QList<qsizetype>{1, 2}));
        QCOMPARE(visibleIndices(ProposalFilter::all, proposals), (QList<qsizetype>{0, 1, 2}));
        QCOMPARE(displayTitle(ProposalFilter::needsMatch), QStringLiteral("Offen"));
        QCOMPARE(displayTitle(ProposalFilter::lowConfidence), QStringLiteral("Unsicher"));
        QCOMPARE(displayTitle(ProposalFilter::matched), QStringLiteral("Zugeordnet"));
        QCOMPARE(displayTitle(ProposalFilter::all), QStringLiteral("Alle"));
        for (const ProposalFilter filter : allProposalFilters)
            QCOMPARE(proposalFilterFromRaw(rawValue(filter)), filter);
    }

    void onlyAChoiceThatParsesCounts()
    {
        const ScannedFile file{QStringLiteral("a.docx"), QStringLiteral("a.docx")};
        ImportProposal proposal = ImportProposal::make(file, {candidate(QStringLiteral("A"), 0.9)});
        QVERIFY(proposal.chosenPoemID());
        QCOMPARE(proposal.chosenCandidateTitle(), QStringLiteral("A"));
        proposal.chosenPoemObjectURI = QStringLiteral("x-coredata://nonsense");
        QVERIFY(!proposal.chosenPoemID());
        QVERIFY(!proposal.chosenCandidateTitle());
    }

    void proposalJsonRoundTrips()
    {
        const ScannedFile file{QStringLiteral("Mond.docx"), QStringLiteral("2020/Mond.docx")};
        const ImportProposal proposal = ImportProposal::make(
            file, {candidate(QStringLiteral("Mond"), 0.9), candidate(QStringLiteral("Der Mond"), 0.5)});
        const QJsonObject json = proposal.toJson();
        QCOMPARE(json.keys(), (QStringList{"candidates", "chosenPoemObjectURI", "fileName", "relativePath",
                                           "suggestedPoemObjectURI", "suggestedScore", "suggestedTitle"}));
        QCOMPARE(json.value("candidates").toArray().at(0).toObject().keys(),
                 (QStringList{"poemObjectURI", "poemTitle", "score"}));
        QCOMPARE(ImportProposal::fromJson(json), proposal);
        // Absent optionals are left out, not written as null.
        const QJsonObject empty = ImportProposal::make(file, {}).toJson();
        QVERIFY(!empty.contains("suggestedTitle") && !empty.contains("chosenPoemObjectURI"));
        QCOMPARE(ImportProposal::fromJson(empty), ImportProposal::make(file, {}));
        QVERIFY(!ImportProposal::fromJson(QJsonObject{{"fileName", 3}}));
    }
};

QTEST_GUILESS_MAIN(ProposalsTest)
#include "tst_proposals.moc"
