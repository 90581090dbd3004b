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
    static Result<QString> ensureDirectory();

    static QString storePath();
    static QString preferencesPath();
    static QString filePath(const QString &name);
};
