#pragma once

#include "matching/PoemSnapshotEntry.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <optional>
#include <vector>

// Narrows a poem snapshot to the few titles worth scoring for one file name: an inverted
// index of title words and of their first three characters. Built once per scan and
// never changed afterwards, so any number of threads may query it.
class TitleIndex {
public:
    static constexpr double quickScoreGate = 0.25;
    static constexpr double titleContainsNameBonus = 0.25;
    static constexpr double nameContainsTitleBonus = 0.1;
    static constexpr qsizetype fallbackLimit = 120;
    static constexpr qsizetype refineTrigger = 800;
    static constexpr qsizetype refineCap = 400;
    static constexpr qsizetype refineMinimum = 60;
    static constexpr qsizetype unrefinedCap = 600;
    static constexpr qsizetype prefixLength = 3;

    explicit TitleIndex(const QList<PoemSnapshotEntry> &poems);

    // A base file name (extension removed) to the distinct poem ids worth scoring.
    QList<QUuid> candidateIDs(const QString &fileName) const;
    // Used when the candidates gave nothing: titles containing the name or contained in it.
    QList<QUuid> fallbackIDs(const QString &fileName, qsizetype limit) const;
    static double quickScore(const QString &fileName, const QString &poemTitle);

    const QList<QUuid> &allIDs() const { return m_allIDs; }
    std::optional<QString> title(const QUuid &id) const;
    std::optional<QString> normalizedTitle(const QUuid &id) const;
    std::optional<QSet<QString>> tokens(const QUuid &id) const;

    // The same queries by poem number (its position among the distinct ids), for the
    // matcher's inner loop: a file name's keys are computed once, not per poem.
    struct Name {
        QString normalized;
        std::vector<int> tokenNumbers; // one per distinct token; -1 for a word no title has
        QStringList tokens;            // in the order of the key
    };
    Name prepare(const QString &fileName) const;
    std::vector<int> candidatePoems(const Name &name) const;
    std::vector<int> fallbackPoems(const Name &name, qsizetype limit) const;
    double quickScore(const Name &name, int poem) const;
    // quickScore(name, poem) >= quickScoreGate, looking for a substring only when the
    // shared words alone do not decide it.
    bool passesQuickScoreGate(const Name &name, int poem) const;

    int poemCount() const { return int(m_poems.size()); }
    const QUuid &id(int poem) const { return m_poems[size_t(poem)].id; }
    const QString &title(int poem) const { return m_poems[size_t(poem)].title; }
    const QString &normalizedTitle(int poem) const { return m_poems[size_t(poem)].normalized; }

private:
    struct IndexedPoem {
        QUuid id;
        QString title;
        QString normalized;
        QStringList tokens;
        std::vector<int> sortedTokenNumbers;
    };

    int numberForToken(const QString &token);
    // The word overlap of the quick score; nullopt when either side has no words.
    std::optional<double> tokenOverlap(const Name &name, const IndexedPoem &poem) const;
    static bool titleHoldsName(const Name &name, const IndexedPoem &poem);
    static bool nameHoldsTitle(const Name &name, const IndexedPoem &poem);
    static bool titleContains(const QString &haystack, const QString &needle);
    QList<QUuid> idsOf(const std::vector<int> &poems) const;

    QList<QUuid> m_allIDs;
    std::vector<int> m_allPoems; // m_allIDs as poem numbers
    std::vector<IndexedPoem> m_poems;
    QHash<QUuid, int> m_poemByID;
    QHash<QString, int> m_tokenNumbers;
    std::vector<std::vector<int>> m_tokenIndex; // token number to poems, snapshot order
    QHash<QString, std::vector<int>> m_prefixIndex;
};
