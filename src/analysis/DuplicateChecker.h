#pragma once

#include "analysis/DuplicateCheckReport.h"
#include "archive/Poem.h"

#include <QCoreApplication>
#include <QJsonObject>

// Finds poems whose titles are the same after normalisation, and pairs whose titles are
// very similar, among the poems outside the trash.
class DuplicateChecker {
    Q_DECLARE_TR_FUNCTIONS(DuplicateChecker)

public:
    static constexpr double similarityThreshold = 0.88;
    static constexpr int maxLengthDifference = 10;

    static DuplicateCheckReport check(const QList<PoemPtr> &poems, const QDateTime &now = QDateTime::currentDateTime());
    static DuplicatePoemSnapshot snapshot(const Poem &poem);

    // Groups and their poems sorted by title, ties in the given order.
    static QList<DuplicateTitleGroup> findExactGroups(const QList<DuplicatePoemSnapshot> &snapshots);
    // Pairs outside a common exact group, best score first.
    static QList<SimilarTitlePair> findSimilarPairs(const QList<DuplicatePoemSnapshot> &snapshots,
                                                    const QList<DuplicateTitleGroup> &exactGroups);

    static QString statusLine(const DuplicateCheckReport &report);
    static QString summaryText(const DuplicateCheckReport &report);
    static QString noFindingsHeading();
    static QString noFindingsText();
    // The score as a whole percentage, cut rather than rounded.
    static int percent(double score);

    // For scripts: snapshots name their poems by id.
    static QJsonObject toJson(const DuplicateCheckReport &report);
    // The report as lines of text: groups, then pairs.
    static QStringList textLines(const DuplicateCheckReport &report);
};
