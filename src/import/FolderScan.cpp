#include "import/FolderScan.h"

#include "import/DocumentBatchImporter.h"
#include "import/FolderScanner.h"

#include <QElapsedTimer>

namespace {

QString seconds(double value)
{
    return QString::number(value, 'f', 2);
}

double secondsSince(const QElapsedTimer &timer)
{
    return double(timer.nsecsElapsed()) / 1e9;
}

} // namespace

QString FolderScanOutcome::summary() const
{
    return FolderScan::tr("Scan: %1 | Proposals: %2 | Scan %3s | Map %4s | Match %5s")
        .arg(scannedFilesCount)
        .arg(proposals.size())
        .arg(seconds(scanSeconds), seconds(mapSeconds), seconds(matchSeconds));
}

QString FolderScan::scanningText()
{
    return tr("Ordner wird gescannt…");
}

QString FolderScan::snapshotText()
{
    return tr("Snapshot der Gedichte…");
}

FolderScanOutcome FolderScan::run(const QString &folder, const QList<PoemSnapshotEntry> &poemSnapshot, bool imagesOnly,
                                  const StatusReporter &reportStatus)
{
    const auto report = [&](const QString &text) {
        if (reportStatus)
            reportStatus(text);
    };
    FolderScanOutcome outcome;
    outcome.folder = folder;
    outcome.imagesOnly = imagesOnly;

    report(tr("Dateien sammeln…"));
    QElapsedTimer timer;
    timer.start();
    FolderScanner::Listing listing = FolderScanner::list(folder, imagesOnly ? FolderScanner::imageExtensions()
                                                                            : FolderScanner::documentExtensions());
    const QStringList &paths = listing.paths;
    outcome.unreadableFiles = std::move(listing.unreadable);
    outcome.scanSeconds = secondsSince(timer);
    outcome.scannedFilesCount = int(paths.size());

    report(tr("Dateien: %1 | Scan-Time: %2s | Mapping…").arg(paths.size()).arg(seconds(outcome.scanSeconds)));
    timer.restart();
    QList<ScannedFile> files;
    files.reserve(paths.size());
    for (const QString &path : paths)
        files.append(FolderScanner::scannedFile(folder, path));
    outcome.mapSeconds = secondsSince(timer);

    report(tr("Dateien: %1 | Scan: %2s | Map: %3s | Matching…")
               .arg(files.size())
               .arg(seconds(outcome.scanSeconds), seconds(outcome.mapSeconds)));
    timer.restart();
    outcome.proposals = imagesOnly
                            ? DocumentBatchImporter::buildImageProposals(files, poemSnapshot)
                            : DocumentBatchImporter::buildProposals(files, poemSnapshot, DocumentBatchImporter::topK);
    outcome.matchSeconds = secondsSince(timer);
    report(outcome.summary());
    return outcome;
}
