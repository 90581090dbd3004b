#include "matching/TitleIndex.h"

#include "matching/TextClusters.h"
#include "matching/TitleKey.h"

#include <algorithm>

namespace {

// tokenize() gives a set; walking the key keeps the order fixed from run to run.
QStringList orderedTokens(const QString &key)
{
    const QSet<QString> significant = tokenize(key);
    QStringList ordered;
    ordered.reserve(significant.size());
    for (const QStringView piece : QStringView(key).split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QString word = piece.toString();
        if (significant.contains(word) && !ordered.contains(word))
            ordered.append(word);
    }
    return ordered;
}

bool hasPrefixKey(const QString &token)
{
    return TextClusters::count(token) >= TitleIndex::prefixLength;
}

QString prefixKey(const QString &token)
{
    return TextClusters::prefix(token, TitleIndex::prefixLength).toString();
}

double boundedScore(double tokenOverlap, bool titleContainsName, bool nameContainsTitle)
{
    double score = tokenOverlap;
    if (titleContainsName)
        score += TitleIndex::titleContainsNameBonus;
    if (nameContainsTitle)
        score += TitleIndex::nameContainsTitleBonus;
    return std::min(score, 1.0);
}

} // namespace

TitleIndex::TitleIndex(const QList<PoemSnapshotEntry> &poems)
{
    m_allIDs.reserve(poems.size());
    m_allPoems.reserve(size_t(poems.size()));
    m_poems.reserve(size_t(poems.size()));
    for (const PoemSnapshotEntry &entry : poems) {
        auto known = m_poemByID.constFind(entry.id);
        const int poem = known != m_poemByID.constEnd() ? *known : int(m_poems.size());
        if (known == m_poemByID.constEnd()) {
            m_poems.push_back({});
            m_poemByID.insert(entry.id, poem);
        }
        m_allIDs.append(entry.id);
        m_allPoems.push_back(poem);

        IndexedPoem &indexed = m_poems[size_t(poem)];
        indexed.id = entry.id;
        indexed.title = entry.title;
        indexed.normalized = normalize(entry.title);
        indexed.tokens = orderedTokens(indexed.normalized);
        indexed.sortedTokenNumbers.clear();
        for (const QString &token : std::as_const(indexed.tokens)) {
            const int number = numberForToken(token);
            indexed.sortedTokenNumbers.push_back(number);
            m_tokenIndex[size_t(number)].push_back(poem);
            if (hasPrefixKey(token))
                m_prefixIndex[prefixKey(token)].push_back(poem);
        }
        std::sort(indexed.sortedTokenNumbers.begin(), indexed.sortedTokenNumbers.end());
    }
}

int TitleIndex::numberForToken(const QString &token)
{
    const auto known = m_tokenNumbers.constFind(token);
    if (known != m_tokenNumbers.constEnd())
        return *known;
    const int number = int(m_tokenIndex.size());
    m_tokenNumbers.insert(token, number);
    m_tokenIndex.emplace_back();
    return number;
}

// An empty title is not "contained" in a name: poems without a title would otherwise
// fill every fallback list.
bool TitleIndex::titleContains(const QString &haystack, const QString &needle)
{
    return !needle.isEmpty() && haystack.contains(needle);
}

TitleIndex::Name TitleIndex::prepare(const QString &fileName) const
{
    Name name;
    name.normalized = normalize(fileName);
    name.tokens = orderedTokens(name.normalized);
    name.tokenNumbers.reserve(size_t(name.tokens.size()));
    for (const QString &token : std::as_const(name.tokens))
        name.tokenNumbers.push_back(m_tokenNumbers.value(token, -1));
    return name;
}

std::vector<int> TitleIndex::candidatePoems(const Name &name) const
{
    std::vector<int> candidates;
    std::vector<char> seen(m_poems.size(), 0);
    const auto appendAll = [&](const std::vector<int> &poems) {
        for (const int poem : poems) {
            if (!seen[size_t(poem)]) {
                seen[size_t(poem)] = 1;
                candidates.push_back(poem);
            }
        }
    };
    for (qsizetype i = 0; i < name.tokens.size(); ++i) {
        if (const int number = name.tokenNumbers[size_t(i)]; number >= 0)
            appendAll(m_tokenIndex[size_t(number)]);
        const QString &token = name.tokens.at(i);
        if (hasPrefixKey(token)) {
            const auto prefixed = m_prefixIndex.constFind(prefixKey(token));
            if (prefixed != m_prefixIndex.constEnd())
                appendAll(*prefixed);
        }
    }
    if (qsizetype(candidates.size()) <= refineTrigger)
        return candidates;

    // A very common word pulled in much of the archive: prefer titles holding the whole name.
    std::vector<int> refined;
    for (const int poem : candidates) {
        if (titleContains(m_poems[size_t(poem)].normalized, name.normalized)) {
            refined.push_back(poem);
            if (qsizetype(refined.size()) >= refineCap)
                break;
        }
    }
    if (qsizetype(refined.size()) >= refineMinimum)
        return refined;
    candidates.resize(size_t(unrefinedCap));
    return candidates;
}

std::vector<int> TitleIndex::fallbackPoems(const Name &name, qsizetype limit) const
{
    const size_t cap = size_t(std::max<qsizetype>(limit, 0));
    const auto firstOfAll = [&] {
        return std::vector<int>(m_allPoems.begin(), m_allPoems.begin() + std::min(cap, m_allPoems.size()));
    };
    if (name.normalized.isEmpty())
        return firstOfAll();
    std::vector<int> kept;
    for (const int poem : m_allPoems) {
        if (kept.size() >= cap)
            break;
        const QString &normalizedTitle = m_poems[size_t(poem)].normalized;
        if (titleContains(normalizedTitle, name.normalized) || titleContains(name.normalized, normalizedTitle))
            kept.push_back(poem);
    }
    return kept.empty() ? firstOfAll() : kept;
}

std::optional<double> TitleIndex::tokenOverlap(const Name &name, const IndexedPoem &poem) const
{
    if (name.tokens.isEmpty() || poem.sortedTokenNumbers.empty())
        return std::nullopt;
    qsizetype shared = 0;
    for (const int number : name.tokenNumbers) {
        if (number >= 0 && std::binary_search(poem.sortedTokenNumbers.begin(), poem.sortedTokenNumbers.end(), number))
            ++shared;
    }
    const qsizetype unionSize = name.tokens.size() + qsizetype(poem.sortedTokenNumbers.size()) - shared;
    return double(shared) / double(unionSize);
}

// A string only holds one at most as long as itself.
bool TitleIndex::titleHoldsName(const Name &name, const IndexedPoem &poem)
{
    return poem.normalized.size() >= name.normalized.size() && titleContains(poem.normalized, name.normalized);
}

bool TitleIndex::nameHoldsTitle(const Name &name, const IndexedPoem &poem)
{
    return name.normalized.size() >= poem.normalized.size() && titleContains(name.normalized, poem.normalized);
}

double TitleIndex::quickScore(const Name &name, int poem) const
{
    const IndexedPoem &indexed = m_poems[size_t(poem)];
    const std::optional<double> overlap = tokenOverlap(name, indexed);
    if (!overlap)
        return 0.0;
    return boundedScore(*overlap, titleHoldsName(name, indexed), nameHoldsTitle(name, indexed));
}

bool TitleIndex::passesQuickScoreGate(const Name &name, int poem) const
{
    const IndexedPoem &indexed = m_poems[size_t(poem)];
    const std::optional<double> overlap = tokenOverlap(name, indexed);
    if (!overlap)
        return false;
    // The bonuses only add, and the cap at 1 lies above the gate.
    if (*overlap >= quickScoreGate)
        return true;
    if (titleHoldsName(name, indexed))
        return boundedScore(*overlap, true, nameHoldsTitle(name, indexed)) >= quickScoreGate;
    return boundedScore(*overlap, false, nameHoldsTitle(name, indexed)) >= quickScoreGate;
}

double TitleIndex::quickScore(const QString &fileName, const QString &poemTitle)
{
    const QString normalizedName = normalize(fileName);
    const QString normalizedTitle = normalize(poemTitle);
    const QSet<QString> nameTokens = tokenize(normalizedName);
    const QSet<QString> titleTokens = tokenize(normalizedTitle);
    if (nameTokens.isEmpty() || titleTokens.isEmpty())
        return 0.0;
    const qsizetype shared = QSet<QString>(nameTokens).intersect(titleTokens).size();
    const qsizetype unionSize = nameTokens.size() + titleTokens.size() - shared;
    return boundedScore(double(shared) / double(unionSize), titleContains(normalizedTitle, normalizedName),
                        titleContains(normalizedName, normalizedTitle));
}

QList<QUuid> TitleIndex::candidateIDs(const QString &fileName) const
{
    return idsOf(candidatePoems(prepare(fileName)));
}

QList<QUuid> TitleIndex::fallbackIDs(const QString &fileName, qsizetype limit) const
{
    return idsOf(fallbackPoems(prepare(fileName), limit));
}

QList<QUuid> TitleIndex::idsOf(const std::vector<int> &poems) const
{
    QList<QUuid> ids;
    ids.reserve(qsizetype(poems.size()));
    for (const int poem : poems)
        ids.append(m_poems[size_t(poem)].id);
    return ids;
}

std::optional<QString> TitleIndex::title(const QUuid &id) const
{
    const auto poem = m_poemByID.constFind(id);
    return poem == m_poemByID.constEnd() ? std::nullopt : std::optional(m_poems[size_t(*poem)].title);
}

std::optional<QString> TitleIndex::normalizedTitle(const QUuid &id) const
{
    const auto poem = m_poemByID.constFind(id);
    return poem == m_poemByID.constEnd() ? std::nullopt : std::optional(m_poems[size_t(*poem)].normalized);
}

std::optional<QSet<QString>> TitleIndex::tokens(const QUuid &id) const
{
    const auto poem = m_poemByID.constFind(id);
    if (poem == m_poemByID.constEnd())
        return std::nullopt;
    const QStringList &tokens = m_poems[size_t(*poem)].tokens;
    return QSet<QString>(tokens.begin(), tokens.end());
}
