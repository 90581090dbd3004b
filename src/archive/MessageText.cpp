#include "archive/MessageText.h"

QString MessageText::inLines(const QString &text, qsizetype width)
{
    if (width < 2)
        return text;
    QString lines;
    lines.reserve(text.size() + text.size() / width + 1);
    qsizetype column = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        // A pair of surrogates stays on one line.
        if (column >= width && c != QLatin1Char('\n') && !c.isLowSurrogate()) {
            lines += QLatin1Char('\n');
            column = 0;
        }
        lines += c;
        column = c == QLatin1Char('\n') ? 0 : column + 1;
    }
    return lines;
}

QString MessageText::shortened(const QString &text, qsizetype limit)
{
    if (text.size() <= limit || limit < 1)
        return text;
    qsizetype cut = limit - 1;
    if (cut > 0 && text.at(cut - 1).isHighSurrogate())
        --cut;
    return text.left(cut) + QChar(0x2026);
}
