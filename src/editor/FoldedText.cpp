#include "editor/FoldedText.h"

namespace {

// Appends the folded form of one character (a code point).
void appendFolded(QString &out, const QString &character)
{
    if (character.size() == 1 && character.at(0).unicode() < 0x80) {
        out.append(character.at(0).toLower());
        return;
    }
    const QString decomposed = character.normalized(QString::NormalizationForm_D);
    QString stripped;
    for (const QChar c : decomposed) {
        if (c.category() != QChar::Mark_NonSpacing)
            stripped.append(c);
    }
    out.append(stripped.toCaseFolded());
}

} // namespace

FoldedText::FoldedText(const QString &text)
{
    m_folded.reserve(text.size());
    m_origin.reserve(text.size());
    m_originEnd.reserve(text.size());
    for (int i = 0; i < text.size();) {
        const int width =
            text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate() ? 2 : 1;
        const qsizetype before = m_folded.size();
        appendFolded(m_folded, text.mid(i, width));
        for (qsizetype k = before; k < m_folded.size(); ++k) {
            m_origin.append(i);
            m_originEnd.append(i + width);
        }
        i += width;
    }
}

QString FoldedText::fold(const QString &text)
{
    return FoldedText(text).m_folded;
}

QList<TextRange> FoldedText::matches(const QString &needle) const
{
    QList<TextRange> found;
    const QString foldedNeedle = fold(needle);
    if (foldedNeedle.isEmpty())
        return found;
    qsizetype at = 0;
    while ((at = m_folded.indexOf(foldedNeedle, at)) >= 0) {
        const qsizetype last = at + foldedNeedle.size() - 1;
        const TextRange range{m_origin.at(at), m_originEnd.at(last)};
        // A folded character that expands (ß to ss) can yield two hits inside one original.
        if (found.isEmpty() || range.start >= found.last().end)
            found.append(range);
        at += foldedNeedle.size();
    }
    return found;
}
