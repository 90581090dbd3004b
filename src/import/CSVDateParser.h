#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

// The dates spreadsheets hold in a poem list: numeric German forms, English short month
// names as a fixed-locale formatter writes them, ISO dates, and German month names.
class CSVDateParser {
public:
    static std::optional<QDateTime> parseDate(const QString &text);
    // 1 to 12 for a German month name or abbreviation, lower-case; 0 for anything else.
    static int germanMonthNumber(const QString &name);
    // Two-digit years up to 69 are this century, from 70 on the last one.
    static int expandTwoDigitYear(int year) { return year > 69 ? 1900 + year : 2000 + year; }
    // The formats, in the order they are tried.
    static const QStringList &formats();
    // The date the format reads from the whole text, or nothing.
    static std::optional<QDate> matchFormat(QStringView text, QStringView format);
};
