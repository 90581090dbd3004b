#pragma once

#include <QString>
#include <QStringList>

#include <optional>

// The outcome of one CSV import, for its status line.
struct CSVImportResult {
    int inserted = 0;
    int updated = 0;
    int skipped = 0;
    int rows = 0;
    int maxColumns = 0;
    QString delimiter;
    QString diagnostics;
    // The whole failure line when the import stopped.
    std::optional<QString> error;
    QString safetyBackupPath;
    // Every category a row wrote, first spelling first, so that the preference list can
    // take them in.
    QStringList categories;
};
