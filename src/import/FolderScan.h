#pragma once

#include "import/ImportProposal.h"
#include "matching/PoemSnapshotEntry.h"

#include <QCoreApplication>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

// What a folder scan hands to the review.
struct FolderScanOutcome {
    QString folder;
    bool imagesOnly = false;
    int scannedFilesCount = 0;
    QList<ImportProposal> proposals;
    // Relative paths of files whose names cannot be read (no valid UTF-8).
    QStringList unreadableFiles;
    double scanSeconds = 0.0;
    double mapSeconds = 0.0;
    double matchSeconds = 0.0;

    // "Scan: %d | Proposals: %d | Scan %.2fs | Map %.2fs | Match %.2fs"
    QString summary() const;
};

// Collects the files below a folder and matches them against a poem snapshot, reporting
// each stage. Touches no archive object, so it runs on a worker thread; the snapshot is
// taken by the caller on the main thread.
class FolderScan {
    Q_DECLARE_TR_FUNCTIONS(FolderScan)

public:
    using StatusReporter = std::function<void(const QString &)>;

    static FolderScanOutcome run(const QString &folder, const QList<PoemSnapshotEntry> &poemSnapshot, bool imagesOnly,
                                 const StatusReporter &reportStatus = {});

    static QString scanningText();
    static QString snapshotText();
};
