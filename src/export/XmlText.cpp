#include "export/XmlText.h"

QString XmlText::allowedCharacters(const QString &text)
{
    QString kept;
    kept.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            kept += c;
            kept += text.at(++i);
            continue;
        }
        const char16_t unit = c.unicode();
        const bool allowed =
            unit == u'\t' || unit == u'\n' || unit == u'\r' || (unit >= 0x20 && !c.isSurrogate() && unit < 0xFFFE);
        if (allowed)
            kept += c;
    }
    return kept;
}
