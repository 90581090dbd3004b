#include "import/CSVHeader.h"

QString CSVHeader::normalizeHeaderName(const QString &name)
{
    QString result = name.trimmed();
    if (result.startsWith(QChar(0xFEFF)))
        result.remove(0, 1);
    result = result.toLower();
    result.replace(QStringLiteral("ö"), QStringLiteral("oe"))
        .replace(QStringLiteral("ä"), QStringLiteral("ae"))
        .replace(QStringLiteral("ü"), QStringLiteral("ue"))
        .replace(QStringLiteral("ß"), QStringLiteral("ss"))
        .replace(QChar(0x00A0), QLatin1Char(' '));
    while (result.contains(QStringLiteral("  ")))
        result.replace(QStringLiteral("  "), QStringLiteral(" "));
    return result;
}

QHash<QString, int> CSVHeader::makeHeaderIndexMap(const QStringList &header)
{
    QHash<QString, int> map;
    for (int column = 0; column < header.size(); ++column) {
        const QString name = normalizeHeaderName(header.at(column));
        if (!map.contains(name))
            map.insert(name, column);
    }
    return map;
}
