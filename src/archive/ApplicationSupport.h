#pragma once

#include "archive/Result.h"

#include <QString>

// The application-support folder "OdeLeaf": the store, the preference store, safety
// backups and the import state files live below it. Chosen once at start-up.
class ApplicationSupport {
public:
    static QString directory();
    // Replaces the default ($XDG_DATA_HOME/OdeLeaf); call before anything reads it.
    static void setDirectory(const QString &path);
    // Creates the folder for its owner only and tightens what an older version left
    // readable by others: the folder, the store with its journal files, the preferences.
    static Result<QString> ensureDirectory();
    static void tightenPermissions();

    static QString storePath();
    static QString preferencesPath();
    static QString filePath(const QString &name);
};
