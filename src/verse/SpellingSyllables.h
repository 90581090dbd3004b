#pragma once

#include "verse/WordSound.h"

#include <QString>

// Syllables read from the spelling, for when the speech data is missing: vowel groups are the
// syllables, letters stand in for phonemes. Rough, but it keeps the gutter useful.
class SpellingSyllables {
public:
    static WordSound of(const QString &word, const QString &language);
};
