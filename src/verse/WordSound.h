#pragma once

#include "verse/LexicalStress.h"

#include <QList>
#include <QStringList>

// How one word is spoken: its phonemes, the vowel that carries each syllable and how strongly
// each syllable is stressed.
struct WordSound {
    QStringList phonemes;
    // Index into phonemes of each syllable's vowel.
    QList<int> nuclei;
    QList<LexicalStress> stresses;

    int syllableCount() const { return int(nuclei.size()); }
    // From the last stressed vowel to the end; from the last vowel where nothing is stressed.
    QStringList rhymeTail() const;
};
