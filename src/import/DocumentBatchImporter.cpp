#include "import/DocumentBatchImporter.h"

#include "archive/PoemValues.h"
#include "archive/TextComparison.h"
#include "matching/FuzzyMatcher.h"
#include "matching/TitleIndex.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace {

// The index plus each title's fuzzy key, made the first time a poem is scored.
class ScoringContext {
public:
    explicit ScoringContext(const QList<PoemSnapshotEntry> &poems)
        : m_index(poems), m_fuzzyKeys(size_t(m_index.poemCount())), m_idTexts(size_t(m_index.poemCount()))
    {
    }

    const TitleIndex &index() const { return m_index; }

    void appendIfCandidate(const FuzzyMatcher::Key &name, int poem, QList<MatchCandidate> &candidates)
    {
        const double score = FuzzyMatcher::score(name, fuzzyKey(poem));
        if (score > 0.0)
            candidates.append({idText(poem), m_index.title(poem), score});
    }

private:
    const FuzzyMatcher::Key &fuzzyKey(int poem)
    {
        std::optional<FuzzyMatcher::Key> &key = m_fuzzyKeys[size_t(poem)];
        if (!key)
            key = FuzzyMatcher::key(m_index.title(poem));
        return *key;
    }

    const QString &idText(int poem)
    {
        QString &text = m_idTexts[size_t(poem)];
        if (text.isEmpty())
            text = uuidText(m_index.id(poem));
        return text;
    }

    TitleIndex m_index;
    std::vector<std::optional<FuzzyMatcher::Key>> m_fuzzyKeys;
    std::vector<QString> m_idTexts;
};

QList<MatchCandidate> rankedCandidates(ScoringContext &scoring, const QString &base, int topK)
{
    QList<MatchCandidate> candidates;
    const FuzzyMatcher::Key nameKey = FuzzyMatcher::key(base);
    if (nameKey.isEmpty())
        return candidates; // no title can score above 0 against an empty key
    const TitleIndex &index = scoring.index();
    const TitleIndex::Name name = index.prepare(base);
    for (const int poem : index.candidatePoems(name)) {
        if (index.quickScore(name, poem) >= TitleIndex::quickScoreGate)
            scoring.appendIfCandidate(nameKey, poem, candidates);
    }
    if (candidates.isEmpty()) {
        for (const int poem : index.fallbackPoems(name, TitleIndex::fallbackLimit))
            scoring.appendIfCandidate(nameKey, poem, candidates);
    }
    // Stable, so equal scores stay in the order the index produced them.
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const MatchCandidate &a, const MatchCandidate &b) { return a.score > b.score; });
    if (candidates.size() > topK)
        candidates.resize(std::max(topK, 0));
    return candidates;
}

} // namespace

QString DocumentBatchImporter::baseName(const QString &fileName)
{
    const qsizetype dot = fileName.lastIndexOf(QLatin1Char('.'));
    return dot < 0 ? fileName : fileName.left(dot);
}

QList<ImportProposal> DocumentBatchImporter::buildProposals(const QList<ScannedFile> &files,
                                                            const QList<PoemSnapshotEntry> &poemSnapshot, int topK)
{
    ScoringContext scoring(poemSnapshot);
    QList<ImportProposal> proposals;
    proposals.reserve(files.size());
    for (const ScannedFile &file : files)
        proposals.append(ImportProposal::make(file, rankedCandidates(scoring, baseName(file.fileName), topK)));
    return proposals;
}

QList<ImportProposal> DocumentBatchImporter::buildImageProposals(const QList<ScannedFile> &files,
                                                                 const QList<PoemSnapshotEntry> &poemSnapshot)
{
    QList<ImportProposal> proposals = buildProposals(files, poemSnapshot, topK);
    withdrawNearTieChoices(proposals);
    sortByRelativePath(proposals);
    return proposals;
}

void DocumentBatchImporter::withdrawNearTieChoices(QList<ImportProposal> &proposals)
{
    for (ImportProposal &proposal : proposals) {
        if (proposal.candidates.size() < 2)
            continue;
        if (proposal.candidates.at(0).score - proposal.candidates.at(1).score < imageAmbiguityMargin)
            proposal.chosenPoemObjectURI.reset();
    }
}

void DocumentBatchImporter::sortByRelativePath(QList<ImportProposal> &proposals)
{
    std::stable_sort(proposals.begin(), proposals.end(), [](const ImportProposal &a, const ImportProposal &b) {
        return TextComparison::localizedStandardCompare(a.relativePath, b.relativePath) < 0;
    });
}
