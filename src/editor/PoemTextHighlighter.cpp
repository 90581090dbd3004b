#include "editor/PoemTextHighlighter.h"

#include "editor/DisplayedPoemText.h"
#include "editor/FoldedText.h"
#include "editor/SpellChecker.h"

PoemTextHighlighter::PoemTextHighlighter(QTextDocument *document, SpellChecker *spellChecker)
    : QSyntaxHighlighter(document), m_spellChecker(spellChecker)
{
}

void PoemTextHighlighter::setSearchHighlight(const QString &term)
{
    const QString trimmed = term.trimmed();
    if (trimmed == m_term)
        return;
    m_term = trimmed;
    rehighlight();
}

void PoemTextHighlighter::setSpellCheckingEnabled(bool enabled)
{
    if (enabled == m_spellChecking)
        return;
    m_spellChecking = enabled;
    rehighlight();
}

void PoemTextHighlighter::highlightBlock(const QString &text)
{
    if (m_spellChecking && m_spellChecker && m_spellChecker->isAvailable()) {
        QTextCharFormat misspelt;
        misspelt.setUnderlineStyle(QTextCharFormat::SpellCheckUnderline);
        misspelt.setUnderlineColor(Qt::red);
        for (const TextRange &word : m_spellChecker->misspellings(text))
            setFormat(word.start, word.length(), misspelt);
    }
    if (m_term.isEmpty())
        return;
    // Character by character, so a misspelt word inside a match keeps its underline.
    for (const TextRange &match : FoldedText(text).matches(m_term)) {
        for (int i = match.start; i < match.end; ++i) {
            QTextCharFormat marked = format(i);
            marked.setBackground(DisplayedPoemText::highlightBackground());
            marked.setForeground(DisplayedPoemText::highlightForeground());
            setFormat(i, 1, marked);
        }
    }
}
