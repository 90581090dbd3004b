#include "analysis/DuplicateChecker.h"

#include "archive/PoemRowText.h"
#include "archive/TextComparison.h"
#include "backup/ArchiveJson.h"
#include "matching/FuzzyMatcher.h"
#include "matching/TitleKey.h"

#include <QHash>
#include <QJsonArray>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace {

// A score needs both measures high: with the other measure perfect, the token similarity
// must reach minJaccard and the edit similarity minEdit. The margin covers rounding, so
// the bounds only ever let more pairs through to the exact score.
constexpr double boundMargin = 1e-9;
constexpr double minJaccard =
    (DuplicateChecker::similarityThreshold - FuzzyMatcher::editDistanceWeight) / FuzzyMatcher::jaccardWeight -
    boundMargin;
constexpr double minEdit =
    (DuplicateChecker::similarityThreshold - FuzzyMatcher::jaccardWeight) / FuzzyMatcher::editDistanceWeight -
    boundMargin;

// The most two key lengths may differ when the longer has `length` characters: the gate,
// and the edit distance, which is at least the difference.
int reachableLengthDifference(int length)
{
    return std::min(DuplicateChecker::maxLengthDifference, int(std::floor((1.0 - minEdit) * length)));
}

// One title prepared for comparing: its fuzzy key and its tokens as ranks, rarest first.
struct Entry {
    FuzzyMatcher::Key key;
    std::vector<int> ranks;
    int group = -1;
};

bool titleLess(const DuplicatePoemSnapshot &a, const DuplicatePoemSnapshot &b)
{
    return TextComparison::localizedStandardCompare(a.title, b.title) < 0;
}

// Sets with a Jaccard similarity of at least t share at least ceil(t * n) of the n tokens
// of either set; then, with every set ordered the same way, the rarest shared token lies
// within the first n - ceil(t * n) + 1 tokens of both. Pairs sharing no such token
// cannot reach the threshold and are never looked at.
int prefixLength(int tokenCount)
{
    const int required = int(std::ceil(minJaccard * tokenCount));
    return std::clamp(tokenCount - required + 1, 1, tokenCount);
}

std::vector<Entry> prepare(const QList<DuplicatePoemSnapshot> &snapshots, const std::vector<int> &groups)
{
    std::vector<Entry> entries(size_t(snapshots.size()));
    QHash<QString, int> frequency;
    for (qsizetype i = 0; i < snapshots.size(); ++i) {
        Entry &entry = entries[size_t(i)];
        entry.key = FuzzyMatcher::key(snapshots.at(i).title);
        entry.group = groups[size_t(i)];
        for (const QString &token : std::as_const(entry.key.sortedTokens))
            ++frequency[token];
    }
    std::vector<std::pair<int, QString>> order;
    order.reserve(size_t(frequency.size()));
    for (auto it = frequency.cbegin(); it != frequency.cend(); ++it)
        order.emplace_back(it.value(), it.key());
    std::sort(order.begin(), order.end());
    QHash<QString, int> rank;
    rank.reserve(qsizetype(order.size()));
    for (size_t i = 0; i < order.size(); ++i)
        rank.insert(order[i].second, int(i));
    for (Entry &entry : entries) {
        for (const QString &token : std::as_const(entry.key.sortedTokens))
            entry.ranks.push_back(rank.value(token));
        std::sort(entry.ranks.begin(), entry.ranks.end());
    }
    return entries;
}

int sharedCount(const std::vector<int> &a, const std::vector<int> &b)
{
    int shared = 0;
    auto x = a.cbegin();
    auto y = b.cbegin();
    while (x != a.cend() && y != b.cend()) {
        if (*x < *y) {
            ++x;
        } else if (*y < *x) {
            ++y;
        } else {
            ++shared;
            ++x;
            ++y;
        }
    }
    return shared;
}

std::string_view asciiOf(const Entry &entry)
{
    return {entry.key.ascii.constData(), size_t(entry.key.ascii.size())};
}

// The exact score when the pair can reach the threshold, else nothing. The cheap bounds
// come first; each is computed as the score itself is, so none rejects a reported pair.
std::optional<double> scoreIfSimilar(const Entry &a, const Entry &b)
{
    if (a.group >= 0 && a.group == b.group)
        return std::nullopt;
    const qsizetype lengthA = a.key.ascii.size();
    const qsizetype lengthB = b.key.ascii.size();
    const qsizetype lengthDifference = std::abs(lengthA - lengthB);
    if (lengthDifference > DuplicateChecker::maxLengthDifference)
        return std::nullopt;
    const qsizetype longer = std::max(lengthA, lengthB);
    const int shared = sharedCount(a.ranks, b.ranks);
    const qsizetype tokenUnion = qsizetype(a.ranks.size() + b.ranks.size()) - shared;
    // The edit distance is at least the length difference.
    if (FuzzyMatcher::score(shared, tokenUnion, int(lengthDifference), longer) < DuplicateChecker::similarityThreshold)
        return std::nullopt;
    const int distance = FuzzyMatcher::levenshtein(asciiOf(a), asciiOf(b));
    const double score = FuzzyMatcher::score(shared, tokenUnion, distance, longer);
    if (score < DuplicateChecker::similarityThreshold)
        return std::nullopt;
    return score;
}

std::vector<int> groupIndices(const QList<DuplicatePoemSnapshot> &snapshots,
                              const QList<DuplicateTitleGroup> &exactGroups)
{
    QHash<QString, int> groupOf;
    for (qsizetype g = 0; g < exactGroups.size(); ++g) {
        for (const DuplicatePoemSnapshot &poem : exactGroups.at(g).poems)
            groupOf.insert(poem.objectID, int(g));
    }
    std::vector<int> groups;
    groups.reserve(size_t(snapshots.size()));
    for (const DuplicatePoemSnapshot &snapshot : snapshots)
        groups.push_back(groupOf.value(snapshot.objectID, -1));
    return groups;
}

QJsonObject snapshotJson(const DuplicatePoemSnapshot &poem)
{
    return {{QStringLiteral("id"), poem.id},
            {QStringLiteral("objectID"), poem.objectID},
            {QStringLiteral("title"), poem.title},
            {QStringLiteral("dateText"), poem.dateText},
            {QStringLiteral("category"), poem.category},
            {QStringLiteral("hasText"), poem.hasText}};
}

QString snapshotLine(const DuplicatePoemSnapshot &poem)
{
    return QStringLiteral("  ") +
           QStringList{poem.id, poem.title, poem.dateText, poem.category}.join(QLatin1Char('\t'));
}

} // namespace

DuplicateCheckReport DuplicateChecker::check(const QList<PoemPtr> &poems, const QDateTime &now)
{
    QList<DuplicatePoemSnapshot> snapshots;
    snapshots.reserve(poems.size());
    for (const PoemPtr &poem : poems) {
        if (poem && !poem->isInTrash())
            snapshots.append(snapshot(*poem));
    }
    DuplicateCheckReport report;
    report.createdAt = now;
    report.poemCount = int(snapshots.size());
    report.exactGroups = findExactGroups(snapshots);
    report.similarPairs = findSimilarPairs(snapshots, report.exactGroups);
    return report;
}

DuplicatePoemSnapshot DuplicateChecker::snapshot(const Poem &poem)
{
    DuplicatePoemSnapshot snapshot;
    snapshot.objectID = poem.objectID();
    snapshot.id = poem.id() ? uuidText(*poem.id()) : QString();
    snapshot.title = poem.title().value_or(QString());
    snapshot.dateText = poem.date() ? PoemRowText::dateText(poem.date()) : QString();
    snapshot.category = poem.category().value_or(QString());
    snapshot.hasText = PoemRowText::hasUsableText(poem.text());
    return snapshot;
}

QList<DuplicateTitleGroup> DuplicateChecker::findExactGroups(const QList<DuplicatePoemSnapshot> &snapshots)
{
    QHash<QString, qsizetype> indexOfKey;
    QList<DuplicateTitleGroup> groups;
    for (const DuplicatePoemSnapshot &snapshot : snapshots) {
        const QString key = normalize(snapshot.title);
        if (key.isEmpty())
            continue;
        const auto found = indexOfKey.constFind(key);
        if (found == indexOfKey.cend()) {
            indexOfKey.insert(key, groups.size());
            groups.append({key, {snapshot}});
            continue;
        }
        groups[*found].poems.append(snapshot);
    }
    groups.removeIf([](const DuplicateTitleGroup &group) { return group.poems.size() < 2; });
    for (DuplicateTitleGroup &group : groups)
        std::stable_sort(group.poems.begin(), group.poems.end(), titleLess);
    std::stable_sort(groups.begin(), groups.end(), [](const DuplicateTitleGroup &a, const DuplicateTitleGroup &b) {
        return TextComparison::localizedStandardCompare(a.normalizedTitle, b.normalizedTitle) < 0;
    });
    return groups;
}

QList<SimilarTitlePair> DuplicateChecker::findSimilarPairs(const QList<DuplicatePoemSnapshot> &snapshots,
                                                           const QList<DuplicateTitleGroup> &exactGroups)
{
    const std::vector<Entry> entries = prepare(snapshots, groupIndices(snapshots, exactGroups));
    // What the cheap rejections read, kept apart from the keys so a candidate costs little.
    std::vector<int> lengths;
    std::vector<int> groups;
    for (const Entry &entry : entries) {
        lengths.push_back(int(entry.key.ascii.size()));
        groups.push_back(entry.group);
    }
    // Shortest key first: every title already indexed is at most as long as the current
    // one, and each index list stays sorted by length, so the titles too short to pair
    // are a prefix of the list that is passed over for good.
    std::vector<int> order(entries.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return lengths[size_t(a)] < lengths[size_t(b)]; });

    // Titles are indexed under each prefix token together with their token count: the
    // Jaccard similarity of sets of m and n tokens is at most min/max, so only counts
    // within that ratio are looked up.
    struct Posting {
        std::vector<int> members;
        size_t firstInReach = 0;
    };
    std::unordered_map<quint64, Posting> postings;
    const auto postingKey = [](int rank, size_t tokenCount) { return (quint64(rank) << 32) | quint64(tokenCount); };
    std::vector<int> lastSeenBy(entries.size(), -1);
    std::vector<int> candidates;
    QList<SimilarTitlePair> pairs;
    for (const int i : order) {
        const Entry &entry = entries[size_t(i)];
        const size_t tokenCount = entry.ranks.size();
        if (tokenCount == 0)
            continue;
        candidates.clear();
        const int shortest = lengths[size_t(i)] - reachableLengthDifference(lengths[size_t(i)]);
        const size_t fewest = size_t(std::ceil(minJaccard * double(tokenCount)));
        const size_t most = size_t(std::floor(double(tokenCount) / minJaccard));
        const int prefix = prefixLength(int(tokenCount));
        for (int p = 0; p < prefix; ++p) {
            const int rank = entry.ranks[size_t(p)];
            for (size_t count = fewest; count <= most; ++count) {
                const auto found = postings.find(postingKey(rank, count));
                if (found == postings.end())
                    continue;
                Posting &posting = found->second;
                while (posting.firstInReach < posting.members.size() &&
                       lengths[size_t(posting.members[posting.firstInReach])] < shortest)
                    ++posting.firstInReach;
                for (size_t k = posting.firstInReach; k < posting.members.size(); ++k) {
                    const int j = posting.members[k];
                    if (lastSeenBy[size_t(j)] == i)
                        continue;
                    lastSeenBy[size_t(j)] = i;
                    if (entry.group < 0 || groups[size_t(j)] != entry.group)
                        candidates.push_back(j);
                }
            }
            postings[postingKey(rank, tokenCount)].members.push_back(i);
        }
        for (const int j : candidates) {
            const auto score = scoreIfSimilar(entries[size_t(j)], entry);
            if (!score)
                continue;
            SimilarTitlePair pair{snapshots.at(j), snapshots.at(i), *score};
            if (titleLess(pair.second, pair.first))
                std::swap(pair.first, pair.second);
            pairs.append(pair);
        }
    }
    std::sort(pairs.begin(), pairs.end(), [](const SimilarTitlePair &a, const SimilarTitlePair &b) {
        if (a.score != b.score)
            return a.score > b.score;
        if (const int c = TextComparison::localizedStandardCompare(a.first.title, b.first.title))
            return c < 0;
        if (const int c = TextComparison::localizedStandardCompare(a.second.title, b.second.title))
            return c < 0;
        return std::tie(a.first.objectID, a.second.objectID) < std::tie(b.first.objectID, b.second.objectID);
    });
    return pairs;
}

QString DuplicateChecker::statusLine(const DuplicateCheckReport &report)
{
    return tr("Duplikatprüfung: %1 gleiche Titel, %2 ähnliche Titel gefunden.")
        .arg(report.exactGroups.size())
        .arg(report.similarPairs.size());
}

QString DuplicateChecker::summaryText(const DuplicateCheckReport &report)
{
    // German counts of one are chosen here; English takes its plurals from the translation.
    const QString checked =
        report.poemCount == 1 ? tr("1 Gedicht geprüft.") : tr("%1 Gedichte geprüft.").arg(report.poemCount);
    return checked + QLatin1Char(' ') + tr("%n gleiche Titel", nullptr, int(report.exactGroups.size())) +
           QStringLiteral(", ") + tr("%n ähnliche Titel gefunden.", nullptr, int(report.similarPairs.size())) +
           QLatin1Char(' ') + tr("Es wurde nichts verändert.");
}

QString DuplicateChecker::noFindingsHeading()
{
    return tr("Keine Auffälligkeiten gefunden");
}

QString DuplicateChecker::noFindingsText()
{
    return tr("Die Prüfung hat keine gleichen oder sehr ähnlichen Titel gefunden.");
}

int DuplicateChecker::percent(double score)
{
    return int(std::floor(score * 100.0));
}

QJsonObject DuplicateChecker::toJson(const DuplicateCheckReport &report)
{
    QJsonArray groups;
    for (const DuplicateTitleGroup &group : report.exactGroups) {
        QJsonArray poems;
        for (const DuplicatePoemSnapshot &poem : group.poems)
            poems.append(snapshotJson(poem));
        groups.append(
            QJsonObject{{QStringLiteral("normalizedTitle"), group.normalizedTitle}, {QStringLiteral("poems"), poems}});
    }
    QJsonArray pairs;
    for (const SimilarTitlePair &pair : report.similarPairs) {
        pairs.append(QJsonObject{{QStringLiteral("first"), snapshotJson(pair.first)},
                                 {QStringLiteral("second"), snapshotJson(pair.second)},
                                 {QStringLiteral("score"), pair.score}});
    }
    return {{QStringLiteral("createdAt"), ArchiveJson::dateText(report.createdAt)},
            {QStringLiteral("poemCount"), report.poemCount},
            {QStringLiteral("exactGroups"), groups},
            {QStringLiteral("similarPairs"), pairs}};
}

QStringList DuplicateChecker::textLines(const DuplicateCheckReport &report)
{
    QStringList lines;
    for (const DuplicateTitleGroup &group : report.exactGroups) {
        lines.append(tr("Gleicher Titel „%1“:").arg(group.normalizedTitle));
        for (const DuplicatePoemSnapshot &poem : group.poems)
            lines.append(snapshotLine(poem));
    }
    for (const SimilarTitlePair &pair : report.similarPairs) {
        lines.append(tr("Ähnliche Titel (%1 %):").arg(percent(pair.score)));
        lines.append(snapshotLine(pair.first));
        lines.append(snapshotLine(pair.second));
    }
    return lines;
}
