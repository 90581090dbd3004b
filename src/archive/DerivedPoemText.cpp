#include "archive/DerivedPoemText.h"

#include "archive/ByteSearch.h"
#include "archive/CategoryNameTable.h"
#include "archive/Poem.h"
#include "archive/PoemRowText.h"
#include "archive/TextComparison.h"

#include <limits>

namespace {

const QString emptyText;

const QString &orEmpty(const std::optional<QString> &value)
{
    return value ? *value : emptyText;
}

// Implicit sharing makes an unchanged field share its buffer with the kept source, so
// most checks never look at the characters.
bool sameText(const QString &a, const QString &b)
{
    return (a.constData() == b.constData() && a.size() == b.size()) || a == b;
}

qint64 stampOf(const std::optional<QDateTime> &date)
{
    return date ? date->toMSecsSinceEpoch() : std::numeric_limits<qint64>::min();
}

quint8 presentFields(const Poem &poem)
{
    return quint8(int(poem.title().has_value()) | int(poem.titleNormalized().has_value()) << 1 |
                  int(poem.text().has_value()) << 2 | int(poem.category().has_value()) << 3);
}

} // namespace

bool DerivedPoemText::refresh(const Poem &poem, CategoryNameTable &categories)
{
    const qint64 updatedStamp = stampOf(poem.updatedAt());
    const qint64 dateStamp = stampOf(poem.date());
    const quint8 present = presentFields(poem);
    const bool datesChanged = updatedStamp != m_updatedStamp || dateStamp != m_dateStamp || present != m_presentFields;
    m_updatedStamp = updatedStamp;
    m_dateStamp = dateStamp;
    m_presentFields = present;
    const QString &title = orEmpty(poem.title());
    const QString &titleKey = orEmpty(poem.titleNormalized());
    const QString &text = orEmpty(poem.text());
    const QString &category = orEmpty(poem.category());
    if (m_sourcesValid && sameText(m_titleSource, title) && sameText(m_titleKeySource, titleKey) &&
        sameText(m_textSource, text) && sameText(m_categorySource, category))
        return datesChanged;

    m_titleSource = title;
    m_titleKeySource = titleKey;
    m_textSource = text;
    m_categorySource = category;
    m_hasUsableText = PoemRowText::hasUsableText(text);
    m_categoryId = categories.idOf(category.trimmed());
    m_sourcesValid = true;
    m_foldedValid = false;
    return true;
}

void DerivedPoemText::fold()
{
    if (m_foldedValid)
        return;
    const QByteArray foldedTitle = TextComparison::folded(m_titleSource).toUtf8();
    const QByteArray foldedText = TextComparison::folded(m_textSource).toUtf8();
    const QByteArray foldedCategory = TextComparison::folded(m_categorySource).toUtf8();
    const QByteArray foldedTitleKey = TextComparison::folded(m_titleKeySource).toUtf8();
    m_folded.clear();
    m_folded.reserve(foldedTitle.size() + foldedText.size() + foldedCategory.size() + foldedTitleKey.size() + 3);
    m_folded.append(foldedTitle).append('\0');
    m_textStart = m_folded.size();
    m_folded.append(foldedText).append('\0');
    m_categoryStart = m_folded.size();
    m_folded.append(foldedCategory).append('\0');
    m_titleKeyStart = m_folded.size();
    m_folded.append(foldedTitleKey);
    m_folded.squeeze();
    m_foldedValid = true;
}

// The fields are separated by NUL, which no needle holds, so no match spans two fields.
bool DerivedPoemText::rangeContains(qsizetype from, qsizetype to, const QByteArray &needle) const
{
    return ByteSearch::contains(m_folded.constData() + from, size_t(to - from), needle.constData(),
                                size_t(needle.size()));
}

bool DerivedPoemText::titleContains(const QByteArray &needle) const
{
    return rangeContains(0, m_textStart - 1, needle);
}

bool DerivedPoemText::titleKeyContains(const QByteArray &needle) const
{
    return rangeContains(m_titleKeyStart, m_folded.size(), needle);
}

bool DerivedPoemText::textContains(const QByteArray &needle) const
{
    return rangeContains(m_textStart, m_categoryStart - 1, needle);
}

bool DerivedPoemText::categoryContains(const QByteArray &needle) const
{
    return rangeContains(m_categoryStart, m_titleKeyStart - 1, needle);
}

bool DerivedPoemText::anyFieldContains(const QByteArray &needle) const
{
    return rangeContains(0, m_titleKeyStart - 1, needle);
}

template <typename Value, typename Derive>
const Value &DerivedPoemText::fresh(Slot<Value> &slot, const QString &source, Derive derive)
{
    if (!slot.valid || !sameText(slot.source, source)) {
        slot.value = derive(source);
        slot.source = source;
        slot.valid = true;
    }
    return slot.value;
}

DerivedPoemText::RowTexts &DerivedPoemText::rowTexts()
{
    if (!m_row)
        m_row = std::make_unique<RowTexts>();
    return *m_row;
}

const QString &DerivedPoemText::rowTitle(const Poem &poem)
{
    return fresh(rowTexts().title, orEmpty(poem.title()),
                 [](const QString &title) { return PoemRowText::title(title); });
}

const QString &DerivedPoemText::excerpt(const Poem &poem)
{
    return fresh(rowTexts().excerpt, orEmpty(poem.text()), PoemRowText::excerpt);
}

const QByteArray &DerivedPoemText::titleSortKey(const Poem &poem)
{
    // The title key, or the title when a poem has none.
    const QString &source = poem.titleNormalized() ? *poem.titleNormalized() : orEmpty(poem.title());
    return fresh(m_titleSortKey, source, TextComparison::localizedStandardSortKey);
}

const QString &DerivedPoemText::dateText(const Poem &poem)
{
    RowTexts &row = rowTexts();
    if (!row.dateText || row.dateSource != poem.date()) {
        row.dateSource = poem.date();
        row.dateText = PoemRowText::dateText(poem.date());
    }
    return *row.dateText;
}

const QString &DerivedPoemText::objectID(const Poem &poem)
{
    RowTexts &row = rowTexts();
    if (row.objectID.isEmpty())
        row.objectID = poem.objectID();
    return row.objectID;
}

const QString &DerivedPoemText::idText(const Poem &poem)
{
    RowTexts &row = rowTexts();
    if (!row.idValid || row.idSource != poem.id()) {
        row.idSource = poem.id();
        row.idText = poem.id() ? uuidText(*poem.id()) : QString();
        row.idValid = true;
    }
    return row.idText;
}
