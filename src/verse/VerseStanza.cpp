#include "verse/VerseStanza.h"

QString VerseStanza::scheme() const
{
    QString letters;
    for (const VerseLine &line : lines)
        letters += line.rhyme;
    return letters;
}
