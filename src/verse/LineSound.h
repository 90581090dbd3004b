#pragma once

#include "verse/LexicalStress.h"

#include <QList>
#include <QString>
#include <QStringList>

class Pronouncer;

// One verse line as spoken: its syllables in order and the sound it rhymes on. Everything
// the metre and the rhyme letters need, so that an unchanged line is never pronounced again.
struct LineSound {
    struct Syllable {
        LexicalStress stress = LexicalStress::unstressed;
        // A monosyllable takes whichever stress the metre asks of it.
        bool free = false;
        // A monosyllable that leans unstressed (article, pronoun, preposition, auxiliary).
        bool leansWeak = false;
        int word = 0;
    };
    struct Word {
        int start = 0;
        int end = 0;
    };

    QList<Syllable> syllables;
    QList<Word> words;
    QStringList rhymeTail;

    bool hasWords() const { return !words.isEmpty(); }
    QString rhymeKey() const { return rhymeTail.join(QString()); }

    static LineSound of(const QString &line, const QString &language, Pronouncer &pronouncer);
    // Letters, with apostrophes inside a word ("o'er", "summer's") kept in it.
    static QList<Word> wordsOf(const QString &line);
    static bool isWeakMonosyllable(const QString &word, const QString &language);
};
