#include "verse/SpellingSyllables.h"

namespace {

bool isVowelLetter(QChar letter)
{
    static const QString vowels = QStringLiteral("aeiouyäöüéèáàâêîôû");
    return vowels.contains(letter);
}

// German prefixes that never take the stress.
bool startsUnstressed(const QString &word)
{
    for (const char *prefix : {"be", "ge", "ver", "zer", "ent", "emp", "er"}) {
        const QString p = QString::fromLatin1(prefix);
        if (word.startsWith(p) && word.size() > p.size() + 2)
            return true;
    }
    return false;
}

} // namespace

WordSound SpellingSyllables::of(const QString &word, const QString &language)
{
    const QString lower = word.toLower();
    WordSound sound;
    bool inVowel = false;
    for (qsizetype i = 0; i < lower.size(); ++i) {
        const QChar letter = lower.at(i);
        if (!letter.isLetter())
            continue;
        const bool vowel = isVowelLetter(letter);
        if (vowel && !inVowel) {
            sound.nuclei.append(int(sound.phonemes.size()));
            sound.stresses.append(LexicalStress::unstressed);
        }
        sound.phonemes.append(QString(letter));
        inVowel = vowel;
    }
    // A silent final e in English ("stone", "love") but not in "the" or "be".
    if (language == QLatin1String("en") && sound.nuclei.size() > 1 && lower.endsWith(QLatin1Char('e')) &&
        !lower.endsWith(QLatin1String("le")) && sound.nuclei.last() == sound.phonemes.size() - 1) {
        sound.nuclei.removeLast();
        sound.stresses.removeLast();
    }
    if (sound.nuclei.isEmpty())
        return sound;
    const bool second = language != QLatin1String("en") && sound.nuclei.size() > 1 && startsUnstressed(lower);
    sound.stresses[second ? 1 : 0] = LexicalStress::primary;
    return sound;
}
