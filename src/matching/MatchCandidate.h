#pragma once

#include <QHashFunctions>
#include <QJsonObject>
#include <QString>

#include <optional>

// A poem scored against one file name. poemObjectURI holds the poem's id text (upper-case
// UUID), which is how the review and the import find the poem again.
struct MatchCandidate {
    QString poemObjectURI;
    QString poemTitle;
    double score = 0.0;

    bool operator==(const MatchCandidate &other) const = default;

    QJsonObject toJson() const;
    static std::optional<MatchCandidate> fromJson(const QJsonObject &object);
};

inline size_t qHash(const MatchCandidate &candidate, size_t seed = 0)
{
    return qHashMulti(seed, candidate.poemObjectURI, candidate.poemTitle, candidate.score);
}
