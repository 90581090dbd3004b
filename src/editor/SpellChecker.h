#pragma once

#include "editor/FoldedText.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

class Hunspell;

// Spelling of poem text through Hunspell. A poem is checked in its own language, whatever
// the interface speaks: each paragraph in the poem's language (German unless said
// otherwise), or in the other one of German and English where that dictionary knows more
// of the paragraph's words. Answers are remembered per word, so re-checking a paragraph
// while typing costs a hash look-up per word.
class SpellChecker {
public:
    // "de" or "en"; dictionaries from the system's Hunspell folder.
    explicit SpellChecker(const QString &language = QStringLiteral("de"));
    ~SpellChecker();
    SpellChecker(const SpellChecker &) = delete;
    SpellChecker &operator=(const SpellChecker &) = delete;

    static QStringList dictionaryFolders();

    bool isAvailable() const { return m_primary.hunspell != nullptr; }
    QString language() const { return m_primary.language; }
    // The language the paragraph is checked in.
    QString paragraphLanguage(const QString &paragraph);
    bool isCorrect(const QString &word, const QString &paragraph = {});
    QStringList suggestions(const QString &word, int limit = 8, const QString &paragraph = {});
    // Accepts the word for the rest of the session.
    void ignore(const QString &word);

    // The misspelt words of a paragraph, in order.
    QList<TextRange> misspellings(const QString &text);
    // The first misspelling at or after from, wrapping round to the start.
    std::optional<TextRange> nextMisspelling(const QString &text, int from);

private:
    struct Dictionary {
        QString language;
        std::unique_ptr<Hunspell> hunspell;
        QHash<QString, bool> known;

        bool accepts(const QString &word);
    };

    static bool isCheckable(const QString &word);
    static void load(Dictionary &dictionary, const QString &language);
    Dictionary &dictionaryFor(const QString &paragraph);

    Dictionary m_primary;
    Dictionary m_other;
    QSet<QString> m_ignored;
};
