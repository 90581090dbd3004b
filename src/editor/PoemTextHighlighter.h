#pragma once

#include <QPointer>
#include <QSyntaxHighlighter>

class SpellChecker;

// Marks in the editor's layout only, so nothing of it reaches the stored text or the undo
// history: the library's search text (yellow) and misspelt words (red wavy underline).
class PoemTextHighlighter : public QSyntaxHighlighter {
    Q_OBJECT

public:
    explicit PoemTextHighlighter(QTextDocument *document, SpellChecker *spellChecker = nullptr);

    void setSearchHighlight(const QString &term);
    QString searchHighlight() const { return m_term; }
    void setSpellCheckingEnabled(bool enabled);
    bool isSpellCheckingEnabled() const { return m_spellChecking; }

protected:
    void highlightBlock(const QString &text) override;

private:
    SpellChecker *m_spellChecker;
    QString m_term;
    bool m_spellChecking = true;
};
