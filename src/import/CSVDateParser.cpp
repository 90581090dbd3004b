#include "import/CSVDateParser.h"

#include <QLocale>
#include <QRegularExpression>

namespace {

// Reads exactly `minDigits` to `maxDigits` ASCII digits at `pos`.
std::optional<int> readNumber(QStringView text, qsizetype &pos, int minDigits, int maxDigits)
{
    int value = 0;
    int digits = 0;
    while (digits < maxDigits && pos < text.size() && text.at(pos) >= QLatin1Char('0') &&
           text.at(pos) <= QLatin1Char('9')) {
        value = value * 10 + (text.at(pos).unicode() - '0');
        ++pos;
        ++digits;
    }
    if (digits < minDigits)
        return std::nullopt;
    return value;
}

// English short month names of the C locale, compared without regard to case.
std::optional<int> readShortMonthName(QStringView text, qsizetype &pos)
{
    const QLocale c = QLocale::c();
    for (int month = 1; month <= 12; ++month) {
        const QString name = c.monthName(month, QLocale::ShortFormat);
        if (text.sliced(pos).startsWith(name, Qt::CaseInsensitive)) {
            pos += name.size();
            return month;
        }
    }
    return std::nullopt;
}

qsizetype runLength(QStringView format, qsizetype pos)
{
    qsizetype end = pos;
    while (end < format.size() && format.at(end) == format.at(pos))
        ++end;
    return end - pos;
}

} // namespace

const QStringList &CSVDateParser::formats()
{
    static const QStringList list = {
        QStringLiteral("dd.MM.yyyy"),    QStringLiteral("dd.MM.yy"),    QStringLiteral("d.MM.yyyy"),
        QStringLiteral("d.MM.yy"),       QStringLiteral("dd. MMM yy"),  QStringLiteral("dd. MMM yyyy"),
        QStringLiteral("d. MMM yy"),     QStringLiteral("d. MMM yyyy"), QStringLiteral("dd. MMM. yy"),
        QStringLiteral("dd. MMM. yyyy"), QStringLiteral("d. MMM. yy"),  QStringLiteral("d. MMM. yyyy"),
        QStringLiteral("dd MMM yy"),     QStringLiteral("dd MMM yyyy"), QStringLiteral("yyyy-MM-dd"),
    };
    return list;
}

// The patterns use the Unicode date-field letters: "d" one or two digits, "dd" and "MM"
// exactly two, "MMM" the short month name, "yy" two digits, "yyyy" four; everything else
// stands for itself. Widths are strict, so "03.09.70" never reads as the year 70.
std::optional<QDate> CSVDateParser::matchFormat(QStringView text, QStringView format)
{
    int day = 0, month = 0, year = 0;
    qsizetype pos = 0;
    qsizetype f = 0;
    while (f < format.size()) {
        const QChar letter = format.at(f);
        const qsizetype width = runLength(format, f);
        std::optional<int> value;
        if (letter == QLatin1Char('d')) {
            value = readNumber(text, pos, int(width), 2);
            day = value.value_or(0);
        } else if (letter == QLatin1Char('M')) {
            value = width == 3 ? readShortMonthName(text, pos) : readNumber(text, pos, 2, 2);
            month = value.value_or(0);
        } else if (letter == QLatin1Char('y')) {
            value = readNumber(text, pos, int(width), int(width));
            if (value)
                year = width == 2 ? expandTwoDigitYear(*value) : *value;
        } else {
            if (pos >= text.size() || text.at(pos) != letter)
                return std::nullopt;
            ++pos;
            ++f;
            continue;
        }
        if (!value)
            return std::nullopt;
        f += width;
    }
    if (pos != text.size())
        return std::nullopt;
    const QDate date(year, month, day);
    return date.isValid() ? std::optional<QDate>(date) : std::nullopt;
}

int CSVDateParser::germanMonthNumber(const QString &name)
{
    static const QHash<QString, int> months = {
        {QStringLiteral("jan"), 1},      {QStringLiteral("januar"), 1},    {QStringLiteral("feb"), 2},
        {QStringLiteral("februar"), 2},  {QStringLiteral("mae"), 3},       {QStringLiteral("maer"), 3},
        {QStringLiteral("maerz"), 3},    {QStringLiteral("mrz"), 3},       {QStringLiteral("apr"), 4},
        {QStringLiteral("april"), 4},    {QStringLiteral("mai"), 5},       {QStringLiteral("jun"), 6},
        {QStringLiteral("juni"), 6},     {QStringLiteral("jul"), 7},       {QStringLiteral("juli"), 7},
        {QStringLiteral("aug"), 8},      {QStringLiteral("august"), 8},    {QStringLiteral("sep"), 9},
        {QStringLiteral("sept"), 9},     {QStringLiteral("september"), 9}, {QStringLiteral("okt"), 10},
        {QStringLiteral("oktober"), 10}, {QStringLiteral("nov"), 11},      {QStringLiteral("november"), 11},
        {QStringLiteral("dez"), 12},     {QStringLiteral("dezember"), 12},
    };
    return months.value(name, 0);
}

std::optional<QDateTime> CSVDateParser::parseDate(const QString &text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return std::nullopt;
    for (const QString &format : formats()) {
        // In UTC at once: every later comparison of a local time asks the system's time zone.
        if (const auto date = matchFormat(trimmed, format))
            return date->startOfDay().toUTC();
    }
    static const QRegularExpression germanShortMonth(
        QStringLiteral("^([0-9]{1,2})\\.\\s*([A-Za-zÄÖÜäöü]{3,})\\.?\\s*([0-9]{2}|[0-9]{4})$"));
    const QRegularExpressionMatch match = germanShortMonth.match(trimmed);
    if (!match.hasMatch())
        return std::nullopt;
    // "März" is written with its umlaut far more often than as "Maerz"; the table spells
    // umlauts out.
    QString monthName = match.captured(2).toLower();
    monthName.replace(QStringLiteral("ä"), QStringLiteral("ae"));
    const int month = germanMonthNumber(monthName);
    const QString yearText = match.captured(3);
    const int year = yearText.size() == 2 ? expandTwoDigitYear(yearText.toInt()) : yearText.toInt();
    const QDate date(year, month, match.captured(1).toInt());
    if (month == 0 || !date.isValid())
        return std::nullopt;
    return QDateTime(date, QTime(0, 0), Qt::UTC);
}
