#include "archive/TextComparison.h"

#include <QCollator>
#include <QLocale>

#include <unicode/ucol.h>

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

// The program speaks German; a bare C locale would fall back to code-point order.
QLocale collationLocale()
{
    return QLocale().language() == QLocale::C ? QLocale(QLocale::German, QLocale::Germany) : QLocale();
}

const QCollator &standardCollator()
{
    // QCollator is not safe to share between threads.
    thread_local const QCollator collator = [] {
        QCollator c{collationLocale()};
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

QByteArray TextComparison::localizedStandardSortKey(const QString &text)
{
    // The same ICU settings QCollator uses for the comparison above (numeric, secondary
    // strength, normalisation on); QCollatorSortKey would hide the bytes.
    thread_local UCollator *const collator = [] {
        UErrorCode status = U_ZERO_ERROR;
        UCollator *opened = ucol_open(collationLocale().name().toUtf8().constData(), &status);
        if (U_FAILURE(status))
            return static_cast<UCollator *>(nullptr);
        ucol_setAttribute(opened, UCOL_NORMALIZATION_MODE, UCOL_ON, &status);
        ucol_setAttribute(opened, UCOL_STRENGTH, UCOL_SECONDARY, &status);
        ucol_setAttribute(opened, UCOL_NUMERIC_COLLATION, UCOL_ON, &status);
        ucol_setAttribute(opened, UCOL_ALTERNATE_HANDLING, UCOL_NON_IGNORABLE, &status);
        return opened;
    }();
    if (!collator)
        return text.toCaseFolded().toUtf8();
    const auto *characters = reinterpret_cast<const UChar *>(text.constData());
    QByteArray key(int(16 + text.size() + text.size() / 4), Qt::Uninitialized);
    int size = ucol_getSortKey(collator, characters, int(text.size()), reinterpret_cast<uint8_t *>(key.data()),
                               int(key.size()));
    if (size > key.size()) {
        key.resize(size);
        size = ucol_getSortKey(collator, characters, int(text.size()), reinterpret_cast<uint8_t *>(key.data()),
                               int(key.size()));
    }
    // ICU counts the closing NUL; the key has no other.
    key.truncate(size > 0 ? size - 1 : 0);
    return key;
}
