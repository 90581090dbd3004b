#include "import/CSVDelimiter.h"

QStringView CSVDelimiter::headerLine(QStringView text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i) == QLatin1Char('\n') || text.at(i) == QLatin1Char('\r'))
            return text.first(i);
    }
    return text;
}

QChar CSVDelimiter::detectDelimiter(QStringView text)
{
    const QStringView line = headerLine(text);
    const QChar candidates[] = {QLatin1Char(';'), QLatin1Char(','), QLatin1Char('\t')};
    QChar best = candidates[0];
    qsizetype bestCount = 0;
    for (const QChar candidate : candidates) {
        const qsizetype count = line.count(candidate);
        if (count > bestCount) {
            best = candidate;
            bestCount = count;
        }
    }
    return best;
}
