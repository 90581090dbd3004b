#pragma once

#include "import/CSVImportResult.h"
#include "import/CSVPreparedImport.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QString>

class ArchiveContext;

// Brings the archive in line with a poem list kept in a spreadsheet: unknown titles become
// new poems, known ones take the row's metadata. The file never carries poem text. A safety
// backup of the whole archive is written first; without it nothing is touched.
class CSVImporter {
    Q_DECLARE_TR_FUNCTIONS(CSVImporter)

public:
    static CSVImportResult importGedichte(const QString &path, ArchiveContext &context,
                                          const QDateTime &now = QDateTime::currentDateTime());
    // The two halves of importGedichte: reading touches no archive and may run on a worker
    // thread, so a large file never blocks the window; applying runs on the archive's thread.
    static CSVPreparedImport read(const QString &path);
    static CSVImportResult apply(const CSVPreparedImport &prepared, ArchiveContext &context,
                                 const QDateTime &now = QDateTime::currentDateTime());

    // The line for the status panel: the summary, or the failure.
    static QString statusLine(const CSVImportResult &result);
    static QString cancelledStatus();

    // Category columns some poem lists have, one per category, lower-case as normalised.
    static const QStringList &knownCategories();
    // Trimmed, trailing commas dropped.
    static QString cleanCategory(const QString &cell);
};
