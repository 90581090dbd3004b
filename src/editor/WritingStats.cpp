#include "editor/WritingStats.h"

#include <QStringList>
#include <QStringView>

namespace {

bool isNewline(char32_t c)
{
    return (c >= 0x0A && c <= 0x0D) || c == 0x85 || c == 0x2028 || c == 0x2029;
}

bool isWhitespaceOrNewline(char32_t c)
{
    return isNewline(c) || QChar::isSpace(c);
}

bool isLetterOrDigit(char32_t c)
{
    return QChar::isLetterOrNumber(c) || QChar::isMark(c);
}

bool isBlank(QStringView piece)
{
    for (const char32_t c : piece.toUcs4()) {
        if (!isWhitespaceOrNewline(c))
            return false;
    }
    return true;
}

} // namespace

WritingStats WritingStats::of(const QString &text)
{
    WritingStats stats;
    bool inWord = false;
    bool lineHasContent = false;
    for (const char32_t c : text.toUcs4()) {
        if (isLetterOrDigit(c)) {
            if (!inWord)
                ++stats.words;
            inWord = true;
        } else {
            inWord = false;
        }
        if (!isWhitespaceOrNewline(c))
            ++stats.characters;
        if (isNewline(c)) {
            stats.lines += lineHasContent ? 1 : 0;
            lineHasContent = false;
        } else if (!isWhitespaceOrNewline(c)) {
            lineHasContent = true;
        }
    }
    stats.lines += lineHasContent ? 1 : 0;
    // Stanzas are split at two line feeds in a row and nowhere else: a line holding only a
    // space does not end a stanza.
    const QStringList pieces = text.split(QStringLiteral("\n\n"));
    for (const QString &piece : pieces) {
        if (!isBlank(piece))
            ++stats.stanzas;
    }
    return stats;
}
