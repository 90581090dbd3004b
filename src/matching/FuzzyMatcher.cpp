#include "matching/FuzzyMatcher.h"

#include "matching/TextClusters.h"

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <memory>
#include <span>
#include <vector>

namespace {

struct NoiseWord {
    QString word;
    std::unique_ptr<icu::RegexPattern> pattern;
};

// Compiled once; RegexPattern is immutable and may be shared between threads.
const std::vector<NoiseWord> &noiseWords()
{
    static const std::vector<NoiseWord> words = [] {
        std::vector<NoiseWord> list;
        for (const char *word : {"final", "neu", "neue", "v2", "v3", "version", "kopie", "copy", "scan", "export",
                                 "druck", "pdf", "doc", "docx"}) {
            UErrorCode status = U_ZERO_ERROR;
            UParseError parseError;
            const icu::UnicodeString source = icu::UnicodeString::fromUTF8(std::string("\\b") + word + "\\b");
            list.push_back({QString::fromLatin1(word), std::unique_ptr<icu::RegexPattern>(
                                                           icu::RegexPattern::compile(source, 0, parseError, status))});
        }
        return list;
    }();
    return words;
}

QString removeWord(const QString &text, const icu::RegexPattern &pattern)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString input(false, reinterpret_cast<const UChar *>(text.utf16()), int32_t(text.size()));
    std::unique_ptr<icu::RegexMatcher> matcher(pattern.matcher(input, status));
    if (U_FAILURE(status))
        return text;
    const icu::UnicodeString replaced = matcher->replaceAll(icu::UnicodeString(), status);
    if (U_FAILURE(status))
        return text;
    return QString(reinterpret_cast<const QChar *>(replaced.getBuffer()), replaced.length());
}

bool isAsciiKept(QChar c)
{
    const char16_t u = c.unicode();
    return (u >= 'a' && u <= 'z') || (u >= '0' && u <= '9');
}

// Classic edit distance with one rolling row over b.
template <typename T> int editDistance(std::span<const T> a, std::span<const T> b)
{
    if (a.empty())
        return int(b.size());
    if (b.empty())
        return int(a.size());
    std::array<int, 128> fixedRow;
    std::vector<int> largeRow;
    int *row = fixedRow.data();
    if (b.size() + 1 > fixedRow.size()) {
        largeRow.resize(b.size() + 1);
        row = largeRow.data();
    }
    for (size_t j = 0; j <= b.size(); ++j)
        row[j] = int(j);
    for (size_t i = 1; i <= a.size(); ++i) {
        int diagonal = row[0];
        row[0] = int(i);
        const T &left = a[i - 1];
        for (size_t j = 1; j <= b.size(); ++j) {
            const int above = row[j];
            const int substitution = diagonal + (left == b[j - 1] ? 0 : 1);
            const int insertion = std::min(above, row[j - 1]) + 1;
            row[j] = std::min(insertion, substitution);
            diagonal = above;
        }
    }
    return row[b.size()];
}

int sharedCount(const QStringList &sortedA, const QStringList &sortedB)
{
    int shared = 0;
    auto a = sortedA.cbegin();
    auto b = sortedB.cbegin();
    while (a != sortedA.cend() && b != sortedB.cend()) {
        if (*a < *b) {
            ++a;
        } else if (*b < *a) {
            ++b;
        } else {
            ++shared;
            ++a;
            ++b;
        }
    }
    return shared;
}

} // namespace

QString FuzzyMatcher::normalize(const QString &text)
{
    QString key = text.toLower();
    for (const NoiseWord &noise : noiseWords()) {
        if (noise.pattern && key.contains(noise.word))
            key = removeWord(key, *noise.pattern);
    }
    // Everything but [a-z0-9] becomes a space, and runs of spaces collapse; a surrogate
    // pair gives two spaces here but the collapse makes that the same as one.
    QString result;
    result.reserve(key.size());
    for (const QChar c : key) {
        if (isAsciiKept(c))
            result.append(c);
        else if (!result.endsWith(QLatin1Char(' ')))
            result.append(QLatin1Char(' '));
    }
    return result.trimmed();
}

QSet<QString> FuzzyMatcher::tokens(const QString &fuzzyKey)
{
    QSet<QString> tokens;
    for (const QStringView piece : QStringView(fuzzyKey).split(QLatin1Char(' '), Qt::SkipEmptyParts))
        tokens.insert(piece.toString());
    return tokens;
}

double FuzzyMatcher::jaccard(const QSet<QString> &a, const QSet<QString> &b)
{
    const QSet<QString> &smaller = a.size() <= b.size() ? a : b;
    const QSet<QString> &larger = a.size() <= b.size() ? b : a;
    qsizetype shared = 0;
    for (const QString &token : smaller)
        shared += larger.contains(token) ? 1 : 0;
    const qsizetype unionSize = a.size() + b.size() - shared;
    return unionSize == 0 ? 0.0 : double(shared) / double(unionSize);
}

int FuzzyMatcher::levenshtein(const QString &a, const QString &b)
{
    if (TextClusters::isOneUnitPerCharacter(a) && TextClusters::isOneUnitPerCharacter(b))
        return editDistance(std::span<const QChar>(a.constData(), size_t(a.size())),
                            std::span<const QChar>(b.constData(), size_t(b.size())));
    const QList<QStringView> clustersA = TextClusters::split(a);
    const QList<QStringView> clustersB = TextClusters::split(b);
    return editDistance(std::span<const QStringView>(clustersA.constData(), size_t(clustersA.size())),
                        std::span<const QStringView>(clustersB.constData(), size_t(clustersB.size())));
}

int FuzzyMatcher::levenshtein(std::string_view a, std::string_view b)
{
    return editDistance(std::span<const char>(a.data(), a.size()), std::span<const char>(b.data(), b.size()));
}

FuzzyMatcher::Key FuzzyMatcher::key(const QString &text)
{
    Key key;
    key.text = normalize(text);
    key.ascii = key.text.toLatin1();
    key.sortedTokens = tokens(key.text).values();
    std::sort(key.sortedTokens.begin(), key.sortedTokens.end());
    return key;
}

double FuzzyMatcher::score(const QString &fileBaseName, const QString &title)
{
    return score(key(fileBaseName), key(title));
}

double FuzzyMatcher::score(const Key &name, const Key &title)
{
    if (name.isEmpty() || title.isEmpty())
        return 0.0;
    const int shared = sharedCount(name.sortedTokens, title.sortedTokens);
    const qsizetype tokenUnion = name.sortedTokens.size() + title.sortedTokens.size() - shared;
    const int distance = levenshtein(std::string_view(name.ascii.constData(), size_t(name.ascii.size())),
                                     std::string_view(title.ascii.constData(), size_t(title.ascii.size())));
    return score(shared, tokenUnion, distance, std::max(name.ascii.size(), title.ascii.size()));
}

double FuzzyMatcher::score(qsizetype sharedTokens, qsizetype tokenUnion, int distance, qsizetype longerLength)
{
    const double tokenSimilarity = tokenUnion == 0 ? 0.0 : double(sharedTokens) / double(tokenUnion);
    const double editSimilarity = longerLength == 0 ? 1.0 : 1.0 - double(distance) / double(longerLength);
    return jaccardWeight * tokenSimilarity + editDistanceWeight * editSimilarity;
}
