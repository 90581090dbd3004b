#pragma once

#include <QList>
#include <QString>

// One line of a poem as the verse tools read it.
struct VerseLine {
    QString text;
    // Of the line in the poem's text, blank lines counted.
    int lineNumber = 0;
    int syllables = 0;
    // 'x' unstressed, 'X' stressed, one per syllable.
    QString stress;
    // Empty for a line without words.
    QString rhyme;
    QString rhymeKey;
    // The letter of a line this one rhymes with impurely, when it has no pure partner.
    QString impureWith;
    bool breaksMeter = false;
    // Character range of each word in text, and the word each syllable belongs to.
    QList<QPair<int, int>> words;
    QList<int> syllableWords;

    bool hasWords() const { return !words.isEmpty(); }
    // The stress pattern of each word, separated by spaces.
    QStringList stressPerWord() const;
};
