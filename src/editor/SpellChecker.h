#pragma once

#include "editor/FoldedText.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

class Hunspell;

// Spelling of poem text through Hunspell: German by default, English when the interface is
// English. Answers are remembered per word, so re-checking a paragraph while typing costs
// a hash look-up per word.
class SpellChecker {
public:
    // "de" or "en"; dictionaries from the system's Hunspell folder.
    explicit SpellChecker(const QString &language);
    ~SpellChecker();
    SpellChecker(const SpellChecker &) = delete;
    SpellChecker &operator=(const SpellChecker &) = delete;

    // The language of AppPreferences::interfaceLanguage().
    static QString languageForInterface();
    static QStringList dictionaryFolders();

    bool isAvailable() const { return m_hunspell != nullptr; }
    QString language() const { return m_language; }
    bool isCorrect(const QString &word);
    QStringList suggestions(const QString &word, int limit = 8);
    // Accepts the word for the rest of the session.
    void ignore(const QString &word);

    // The misspelt words of a text, in order.
    QList<TextRange> misspellings(const QString &text);
    // The first misspelling at or after from, wrapping round to the start.
    std::optional<TextRange> nextMisspelling(const QString &text, int from);

private:
    static bool isCheckable(const QString &word);

    QString m_language;
    std::unique_ptr<Hunspell> m_hunspell;
    QHash<QString, bool> m_known;
};
