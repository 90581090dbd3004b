#pragma once

#include <QCollatorSortKey>
#include <QDateTime>
#include <QString>
#include <QUuid>

#include <optional>
#include <unordered_map>

class Poem;

// What the library derives from each poem on every rebuild: folded search fields, the
// title's sort key, the excerpt and the date text. Deriving them takes far longer than a
// rebuild may, so each value is kept per poem and derived again only when the field it
// comes from has changed. Main thread only, like the context it reads.
class PoemTextCache {
public:
    const QString &foldedTitle(const Poem &poem);
    const QString &foldedTitleNormalized(const Poem &poem);
    const QString &foldedText(const Poem &poem);
    const QString &foldedCategory(const Poem &poem);
    bool hasUsableText(const Poem &poem);
    const QString &excerpt(const Poem &poem);
    const QCollatorSortKey &titleSortKey(const Poem &poem);
    const QString &dateText(const Poem &poem);
    const QString &objectID(const Poem &poem);
    const QString &idText(const Poem &poem);

    // Forgets poems not looked at since the previous call, once they pile up.
    void pruneUnused(int livePoemCount);
    void clear() { m_entries.clear(); }
    qsizetype size() const { return qsizetype(m_entries.size()); }

private:
    template <typename Value> struct Derived {
        QString source;
        Value value;
        bool valid = false;
    };
    struct Entry {
        Derived<QString> foldedTitle;
        Derived<QString> foldedTitleNormalized;
        Derived<QString> foldedText;
        Derived<QString> foldedCategory;
        Derived<bool> hasUsableText;
        Derived<QString> excerpt;
        Derived<std::optional<QCollatorSortKey>> titleSortKey;
        std::optional<QDateTime> dateSource;
        std::optional<QString> dateText;
        QString objectID;
        QString idText;
        std::optional<QUuid> idSource;
        bool idValid = false;
        unsigned generation = 0;
    };

    Entry &entry(const Poem &poem);
    template <typename Value, typename Derive>
    static const Value &fresh(Derived<Value> &slot, const QString &source, Derive derive);

    std::unordered_map<qint64, Entry> m_entries;
    unsigned m_generation = 0;
};
