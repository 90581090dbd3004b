#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QUuid>

#include <memory>
#include <optional>

class CategoryNameTable;
class Poem;

// What the library derives from one poem on every rebuild. The search fields are folded
// once into one UTF-8 buffer, so a search reads one contiguous block per poem; they are
// folded when first searched (or ahead, while the window waits for input), the row texts
// when a row is first shown. Everything is derived again only when the field it comes
// from has changed.
class DerivedPoemText {
public:
    // Brings the category, the text flag and the dates in step with the poem; cheap when
    // nothing changed, since unchanged fields still share their buffers with the poem. A
    // changed field leaves the search fields to be folded again. Answers whether anything
    // a list order compares has changed.
    bool refresh(const Poem &poem, CategoryNameTable &categories);
    // Folds the search fields unless they are up to date; the searches below need it.
    void fold();
    bool isFolded() const { return m_foldedValid; }
    // Asks the processor for the folded fields ahead of a scan of many poems.
    void prefetchFolded() const
    {
        for (qsizetype at = 0; at < m_folded.size(); at += 64)
            __builtin_prefetch(m_folded.constData() + at);
    }

    bool hasUsableText() const { return m_hasUsableText; }
    int categoryId() const { return m_categoryId; }
    // Milliseconds since the epoch; a missing date sorts lowest.
    qint64 updatedStamp() const { return m_updatedStamp; }
    qint64 dateStamp() const { return m_dateStamp; }
    // Needles are folded UTF-8; an empty needle finds nothing.
    bool titleContains(const QByteArray &needle) const;
    bool titleKeyContains(const QByteArray &needle) const;
    bool textContains(const QByteArray &needle) const;
    bool categoryContains(const QByteArray &needle) const;
    // Title, text or category, in one scan.
    bool anyFieldContains(const QByteArray &needle) const;

    const QString &rowTitle(const Poem &poem);
    const QString &excerpt(const Poem &poem);
    const QByteArray &titleSortKey(const Poem &poem);
    const QString &dateText(const Poem &poem);
    const QString &objectID(const Poem &poem);
    const QString &idText(const Poem &poem);

    unsigned lastUse = 0;

private:
    template <typename Value> struct Slot {
        QString source;
        Value value{};
        bool valid = false;
    };
    template <typename Value, typename Derive>
    static const Value &fresh(Slot<Value> &slot, const QString &source, Derive derive);
    bool rangeContains(qsizetype from, qsizetype to, const QByteArray &needle) const;

    // Read on every rebuild: kept together.
    QString m_titleSource;
    QString m_titleKeySource;
    QString m_textSource;
    QString m_categorySource;
    // folded title, NUL, folded text, NUL, folded category, NUL, folded title key
    QByteArray m_folded;
    qsizetype m_textStart = 0;
    qsizetype m_categoryStart = 0;
    qsizetype m_titleKeyStart = 0;
    qint64 m_updatedStamp = 0;
    qint64 m_dateStamp = 0;
    int m_categoryId = -1;
    // Which optional fields are set: the orders tell a missing title key or category
    // from an empty one.
    quint8 m_presentFields = 0;
    bool m_hasUsableText = false;
    bool m_sourcesValid = false;
    bool m_foldedValid = false;

    // Read when rows are sorted.
    Slot<QByteArray> m_titleSortKey;

    // Read when a row is shown, which few of a large archive's poems ever are: kept apart
    // until then.
    struct RowTexts {
        Slot<QString> title;
        Slot<QString> excerpt;
        std::optional<QDateTime> dateSource;
        std::optional<QString> dateText;
        std::optional<QUuid> idSource;
        bool idValid = false;
        QString idText;
        QString objectID;
    };
    RowTexts &rowTexts();
    std::unique_ptr<RowTexts> m_row;
};
