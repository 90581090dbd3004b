#pragma once

#include <QByteArray>
#include <QString>

// The archive's two ways of comparing words: ignoring case and diacritics (category names,
// library search) and the localised standard order (titles, categories: case-insensitive,
// numbers by value).
class TextComparison {
public:
    static QString folded(const QString &text);
    static bool equalsIgnoringCaseAndDiacritics(const QString &a, const QString &b);
    static bool containsIgnoringCaseAndDiacritics(const QString &haystack, const QString &needle);
    static int localizedStandardCompare(const QString &a, const QString &b);
    // Byte keys whose order (memcmp, shorter first on a tie) is localizedStandardCompare's;
    // cheaper when one string is compared often.
    static QByteArray localizedStandardSortKey(const QString &text);
};
