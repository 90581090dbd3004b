#include "archive/TextComparison.h"

#include <QCollator>
#include <QLocale>

QString TextComparison::folded(const QString &text)
{
    bool plain = true;
    for (const QChar c : text)
        plain = plain && c.unicode() < 0x80;
    if (plain)
        return text.toLower();
    const QString decomposed = text.normalized(QString::NormalizationForm_D);
    QString result;
    result.reserve(decomposed.size());
    for (const QChar c : decomposed) {
        if (c.category() != QChar::Mark_NonSpacing)
            result.append(c);
    }
    return result.toCaseFolded();
}

bool TextComparison::equalsIgnoringCaseAndDiacritics(const QString &a, const QString &b)
{
    return folded(a) == folded(b);
}

bool TextComparison::containsIgnoringCaseAndDiacritics(const QString &haystack, const QString &needle)
{
    return folded(haystack).contains(folded(needle));
}

namespace {

const QCollator &standardCollator()
{
    // QCollator is not safe to share between threads.
    thread_local const QCollator collator = [] {
        // The program speaks German; a bare C locale would fall back to code-point order.
        const QLocale locale = QLocale().language() == QLocale::C ? QLocale(QLocale::German, QLocale::Germany) : QLocale();
        QCollator c{locale};
        c.setNumericMode(true);
        c.setCaseSensitivity(Qt::CaseInsensitive);
        return c;
    }();
    return collator;
}

} // namespace

int TextComparison::localizedStandardCompare(const QString &a, const QString &b)
{
    return standardCollator().compare(a, b);
}

QCollatorSortKey TextComparison::localizedStandardSortKey(const QString &text)
{
    return standardCollator().sortKey(text);
}
