#include "import/DocumentBatchImporter.h"

#include "archive/PoemValues.h"
#include "archive/TextComparison.h"
#include "matching/FuzzyMatcher.h"
#include "matching/TitleIndex.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace {

// A fuzzy key ready for many comparisons: its ASCII text and its words as numbers.
struct PreparedKey {
    QByteArray text;
    std::vector<int> sortedTokens;
};

// The index plus each title's fuzzy key, made the first time a poem is scored. Words of
// names and titles are numbered per run, so comparing two keys' words compares integers.
class ScoringContext {
public:
    explicit ScoringContext(const QList<PoemSnapshotEntry> &poems)
        : m_index(poems), m_titleKeys(size_t(m_index.poemCount())), m_idTexts(size_t(m_index.poemCount()))
    {
    }

    const TitleIndex &index() const { return m_index; }

    PreparedKey prepareName(const QString &base) { return prepare(FuzzyMatcher::normalize(base)); }

    // 0 when the pair is no candidate.
    double score(const PreparedKey &name, int poem)
    {
        const PreparedKey &title = titleKey(poem);
        if (name.text.isEmpty() || title.text.isEmpty())
            return 0.0;
        qsizetype shared = 0;
        auto a = name.sortedTokens.begin();
        auto b = title.sortedTokens.begin();
        while (a != name.sortedTokens.end() && b != title.sortedTokens.end()) {
            if (*a < *b) {
                ++a;
            } else if (*b < *a) {
                ++b;
            } else {
                ++shared, ++a, ++b;
            }
        }
        const qsizetype tokenUnion = qsizetype(name.sortedTokens.size() + title.sortedTokens.size()) - shared;
        const int distance =
            FuzzyMatcher::levenshtein(std::string_view(name.text.constData(), size_t(name.text.size())),
                                      std::string_view(title.text.constData(), size_t(title.text.size())));
        return FuzzyMatcher::score(shared, tokenUnion, distance, std::max(name.text.size(), title.text.size()));
    }

    MatchCandidate candidate(int poem, double score)
    {
        QString &idText = m_idTexts[size_t(poem)];
        if (idText.isEmpty())
            idText = uuidText(m_index.id(poem));
        return {idText, m_index.title(poem), score};
    }

private:
    const PreparedKey &titleKey(int poem)
    {
        std::optional<PreparedKey> &key = m_titleKeys[size_t(poem)];
        if (!key)
            key = prepare(FuzzyMatcher::normalize(m_index.title(poem)));
        return *key;
    }

    PreparedKey prepare(const QString &fuzzyKey)
    {
        PreparedKey prepared{fuzzyKey.toLatin1(), {}};
        for (const QString &token : FuzzyMatcher::tokens(fuzzyKey)) {
            const auto known = m_tokenNumbers.constFind(token);
            prepared.sortedTokens.push_back(known != m_tokenNumbers.constEnd()
                                                ? *known
                                                : *m_tokenNumbers.insert(token, int(m_tokenNumbers.size())));
        }
        std::sort(prepared.sortedTokens.begin(), prepared.sortedTokens.end());
        return prepared;
    }

    TitleIndex m_index;
    QHash<QString, int> m_tokenNumbers;
    std::vector<std::optional<PreparedKey>> m_titleKeys;
    std::vector<QString> m_idTexts;
};

struct ScoredPoem {
    int poem;
    double score;
};

QList<MatchCandidate> rankedCandidates(ScoringContext &scoring, const QString &base, int topK)
{
    const PreparedKey nameKey = scoring.prepareName(base);
    if (nameKey.text.isEmpty())
        return {}; // no title can score above 0 against an empty key
    const TitleIndex &index = scoring.index();
    const TitleIndex::Name name = index.prepare(base);
    std::vector<ScoredPoem> scored;
    const auto scoreIfCandidate = [&](int poem) {
        if (const double score = scoring.score(nameKey, poem); score > 0.0)
            scored.push_back({poem, score});
    };
    for (const int poem : index.candidatePoems(name)) {
        if (index.passesQuickScoreGate(name, poem))
            scoreIfCandidate(poem);
    }
    if (scored.empty()) {
        for (const int poem : index.fallbackPoems(name, TitleIndex::fallbackLimit))
            scoreIfCandidate(poem);
    }
    // Stable, so equal scores stay in the order the index produced them.
    std::stable_sort(scored.begin(), scored.end(),
                     [](const ScoredPoem &a, const ScoredPoem &b) { return a.score > b.score; });
    QList<MatchCandidate> candidates;
    const size_t kept = std::min(scored.size(), size_t(std::max(topK, 0)));
    for (size_t i = 0; i < kept; ++i)
        candidates.append(scoring.candidate(scored[i].poem, scored[i].score));
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
