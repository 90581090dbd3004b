#pragma once

#include "verse/WordSound.h"

#include <QHash>
#include <QString>

// Pronounces single words through espeak-ng, German or English, and remembers every answer:
// a poem repeats its words, and re-analysing an edited line then costs hash look-ups. Without
// the speech data the syllables come from the spelling.
class Pronouncer {
public:
    // "de" or "en".
    WordSound pronounce(const QString &word, const QString &language);
    // False when espeak-ng or its data could not be loaded.
    static bool hasSpeechData();

    // The phoneme names of espeak-ng's German and English voices that carry a syllable.
    static bool isVowelPhoneme(const QString &phoneme);
    // One word's phoneme output, names separated by '|' and words by spaces.
    static WordSound parse(const QString &phonemeText, const QString &language);

private:
    QHash<QString, WordSound> m_cache;
};
