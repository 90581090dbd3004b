#include "archive/PoemTextCache.h"

#include "archive/Poem.h"
#include "archive/PoemRowText.h"
#include "archive/TextComparison.h"

namespace {

const QString &orEmpty(const std::optional<QString> &value)
{
    static const QString empty;
    return value ? *value : empty;
}

// Implicit sharing makes an unchanged field share its buffer with the cached source,
// so most checks never look at the characters.
bool sameText(const QString &a, const QString &b)
{
    return (a.constData() == b.constData() && a.size() == b.size()) || a == b;
}

QString titleSortSource(const Poem &poem)
{
    if (poem.titleNormalized())
        return *poem.titleNormalized();
    return orEmpty(poem.title());
}

} // namespace

template <typename Value, typename Derive>
const Value &PoemTextCache::fresh(Derived<Value> &slot, const QString &source, Derive derive)
{
    if (!slot.valid || !sameText(slot.source, source)) {
        slot.value = derive(source);
        slot.source = source;
        slot.valid = true;
    }
    return slot.value;
}

PoemTextCache::Entry &PoemTextCache::entry(const Poem &poem)
{
    Entry &found = m_entries[poem.storeKey()];
    found.generation = m_generation;
    return found;
}

const QString &PoemTextCache::foldedTitle(const Poem &poem)
{
    return fresh(entry(poem).foldedTitle, orEmpty(poem.title()), TextComparison::folded);
}

const QString &PoemTextCache::foldedTitleNormalized(const Poem &poem)
{
    return fresh(entry(poem).foldedTitleNormalized, orEmpty(poem.titleNormalized()), TextComparison::folded);
}

const QString &PoemTextCache::foldedText(const Poem &poem)
{
    return fresh(entry(poem).foldedText, orEmpty(poem.text()), TextComparison::folded);
}

const QString &PoemTextCache::foldedCategory(const Poem &poem)
{
    return fresh(entry(poem).foldedCategory, orEmpty(poem.category()), TextComparison::folded);
}

bool PoemTextCache::hasUsableText(const Poem &poem)
{
    return fresh(entry(poem).hasUsableText, orEmpty(poem.text()),
                 [](const QString &text) { return PoemRowText::hasUsableText(text); });
}

const QString &PoemTextCache::excerpt(const Poem &poem)
{
    return fresh(entry(poem).excerpt, orEmpty(poem.text()), PoemRowText::excerpt);
}

const QCollatorSortKey &PoemTextCache::titleSortKey(const Poem &poem)
{
    return *fresh(entry(poem).titleSortKey, titleSortSource(poem), [](const QString &source) {
        return std::optional<QCollatorSortKey>(TextComparison::localizedStandardSortKey(source));
    });
}

const QString &PoemTextCache::dateText(const Poem &poem)
{
    Entry &cached = entry(poem);
    if (!cached.dateText || cached.dateSource != poem.date()) {
        cached.dateSource = poem.date();
        cached.dateText = PoemRowText::dateText(poem.date());
    }
    return *cached.dateText;
}

const QString &PoemTextCache::objectID(const Poem &poem)
{
    Entry &cached = entry(poem);
    if (cached.objectID.isEmpty())
        cached.objectID = poem.objectID();
    return cached.objectID;
}

const QString &PoemTextCache::idText(const Poem &poem)
{
    Entry &cached = entry(poem);
    if (!cached.idValid || cached.idSource != poem.id()) {
        cached.idSource = poem.id();
        cached.idText = poem.id() ? uuidText(*poem.id()) : QString();
        cached.idValid = true;
    }
    return cached.idText;
}

void PoemTextCache::pruneUnused(int livePoemCount)
{
    const unsigned current = m_generation++;
    if (m_entries.size() <= size_t(livePoemCount) + size_t(livePoemCount) / 4 + 64)
        return;
    std::erase_if(m_entries, [current](const auto &item) { return item.second.generation != current; });
}
