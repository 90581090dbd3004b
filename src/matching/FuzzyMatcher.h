#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

#include <string_view>

// The final similarity of a file name and a poem title: token Jaccard plus normalised edit
// distance over a harsher key (ASCII letters and digits survive, file-name noise words
// go), deliberately different from the title key.
class FuzzyMatcher {
public:
    static constexpr double jaccardWeight = 0.6;
    static constexpr double editDistanceWeight = 0.4;

    static QString normalize(const QString &text);
    static QSet<QString> tokens(const QString &fuzzyKey);

    static double jaccard(const QSet<QString> &a, const QSet<QString> &b);
    // Edit distance over characters (grapheme clusters), each operation costing 1.
    static int levenshtein(const QString &a, const QString &b);
    // The same for text of one byte per character, such as fuzzy keys (ASCII only).
    static int levenshtein(std::string_view a, std::string_view b);

    // A text's fuzzy key with its tokens sorted, prepared once and scored many times.
    struct Key {
        QString text;
        QByteArray ascii; // the same text, one byte per character
        QStringList sortedTokens;
        bool isEmpty() const { return text.isEmpty(); }
    };
    static Key key(const QString &text);

    // 0 means the pair is no candidate (an empty key on either side, or nothing in common).
    static double score(const QString &fileBaseName, const QString &title);
    static double score(const Key &name, const Key &title);
    // The score from its parts, for callers that count tokens and edits their own way.
    static double score(qsizetype sharedTokens, qsizetype tokenUnion, int distance, qsizetype longerLength);
};
