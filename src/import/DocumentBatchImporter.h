#pragma once

#include "import/ImportProposal.h"
#include "import/ScannedFile.h"
#include "matching/PoemSnapshotEntry.h"

#include <QList>

// Matches scanned file names to poem titles. Pure work on plain values: runs on any thread.
class DocumentBatchImporter {
public:
    static constexpr int topK = 5;
    static constexpr double imageAmbiguityMargin = 0.08;

    // One proposal per file, in file order.
    static QList<ImportProposal> buildProposals(const QList<ScannedFile> &files,
                                                const QList<PoemSnapshotEntry> &poemSnapshot, int topK);
    // Images are attached, not merged: a near tie is left to the user, and the list is in
    // the file manager's order.
    static QList<ImportProposal> buildImageProposals(const QList<ScannedFile> &files,
                                                     const QList<PoemSnapshotEntry> &poemSnapshot);

    static void withdrawNearTieChoices(QList<ImportProposal> &proposals);
    static void sortByRelativePath(QList<ImportProposal> &proposals);
    // The name up to its last dot: "Lied.v2.docx" gives "Lied.v2".
    static QString baseName(const QString &fileName);
};
