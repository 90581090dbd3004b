#include "archive/MessageText.h"

QString MessageText::shortened(const QString &text, qsizetype limit)
{
    if (text.size() <= limit || limit < 1)
        return text;
    qsizetype cut = limit - 1;
    if (cut > 0 && text.at(cut - 1).isHighSurrogate())
        --cut;
    return text.left(cut) + QChar(0x2026);
}
