#include "verse/VerseLine.h"

QStringList VerseLine::stressPerWord() const
{
    QStringList patterns(words.size());
    for (qsizetype i = 0; i < syllableWords.size() && i < stress.size(); ++i)
        patterns[syllableWords.at(i)].append(stress.at(i));
    return patterns;
}
