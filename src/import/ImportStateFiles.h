#pragma once

#include "archive/Result.h"
#include "import/ImportReport.h"
#include "import/ImportUndoItem.h"

#include <QCoreApplication>
#include <QList>
#include <QString>

#include <optional>

// The files the last import leaves in the application-support folder: its report, the
// poems' previous texts for "Import rückgängig", and the failure log. Each run replaces
// them; every write is atomic and synced, so a crash leaves the old or the new file.
class ImportStateFiles {
    Q_DECLARE_TR_FUNCTIONS(ImportStateFiles)

public:
    static QString reportPath();
    static QString undoPath();
    static QString failureLogPath();

    static Result<void> saveReport(const ImportReport &report);
    // Nothing when the file is missing or does not decode.
    static std::optional<ImportReport> loadReport();

    static Result<void> saveUndo(const QList<ImportUndoItem> &items);
    // Nothing when the file is missing or does not decode; an error only for a file that
    // is there but cannot be read.
    static Result<std::optional<QList<ImportUndoItem>>> loadUndo();
    static Result<void> clearUndo();
    // Whether "Import rückgängig" has something to restore.
    static bool hasPendingUndo();

    // The first line names the program and the time, the log text follows.
    static Result<void> saveFailureLog(const QString &logText, const QDateTime &now);
    static QString loadFailureLog();

private:
    static Result<QByteArray> readStateFile(const QString &path);
};
