#include "verse/WordSound.h"

QStringList WordSound::rhymeTail() const
{
    if (nuclei.isEmpty())
        return {};
    qsizetype syllable = nuclei.size() - 1;
    for (qsizetype i = nuclei.size() - 1; i >= 0; --i) {
        if (stresses.at(i) != LexicalStress::unstressed) {
            syllable = i;
            break;
        }
    }
    return phonemes.mid(nuclei.at(syllable));
}
