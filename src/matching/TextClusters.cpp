#include "matching/TextClusters.h"

#include <QTextBoundaryFinder>

bool TextClusters::isOneUnitPerCharacter(QStringView text)
{
    // Below U+0300 no character combines with its neighbour, except CR LF.
    for (const QChar c : text) {
        if (c.unicode() >= 0x300 || c == QLatin1Char('\r'))
            return false;
    }
    return true;
}

QList<QStringView> TextClusters::split(QStringView text)
{
    QList<QStringView> clusters;
    if (isOneUnitPerCharacter(text)) {
        clusters.reserve(text.size());
        for (qsizetype i = 0; i < text.size(); ++i)
            clusters.append(text.mid(i, 1));
        return clusters;
    }
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text.data(), text.size());
    qsizetype start = 0;
    for (qsizetype end = finder.toNextBoundary(); end > 0; end = finder.toNextBoundary()) {
        clusters.append(text.mid(start, end - start));
        start = end;
    }
    return clusters;
}

qsizetype TextClusters::count(QStringView text)
{
    if (isOneUnitPerCharacter(text))
        return text.size();
    return split(text).size();
}

QStringView TextClusters::prefix(QStringView text, qsizetype n)
{
    if (n <= 0)
        return text.left(0);
    if (isOneUnitPerCharacter(text))
        return text.left(n);
    const QList<QStringView> clusters = split(text);
    if (clusters.size() <= n)
        return text;
    const QStringView last = clusters.at(n - 1);
    return text.left(last.data() - text.data() + last.size());
}
