#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

// One poem as the duplicate check lists it.
struct DuplicatePoemSnapshot {
    QString objectID;
    QString id; // canonical UUID text; empty for a poem without one
    QString title;
    QString dateText; // empty without a date
    QString category;
    bool hasText = false;

    bool operator==(const DuplicatePoemSnapshot &other) const = default;
};

// Two or more poems whose titles have the same title key.
struct DuplicateTitleGroup {
    QString normalizedTitle;
    QList<DuplicatePoemSnapshot> poems;
};

struct SimilarTitlePair {
    DuplicatePoemSnapshot first;
    DuplicatePoemSnapshot second;
    double score = 0;
};

// The outcome of one check; the check changes nothing.
struct DuplicateCheckReport {
    QDateTime createdAt;
    int poemCount = 0;
    QList<DuplicateTitleGroup> exactGroups;
    QList<SimilarTitlePair> similarPairs;

    bool hasFindings() const { return !exactGroups.isEmpty() || !similarPairs.isEmpty(); }
};
