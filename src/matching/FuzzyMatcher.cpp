#include "matching/FuzzyMatcher.h"

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <memory>
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
