#pragma once

#include "backup/Backup.h"

// What a restore of one backup would do to the archive as it is now.
struct RestorePreview {
    Backup backup;
    int localCount = 0;
    int identicalCount = 0;
    int createCount = 0;
    int updateCount = 0;
    int localOnlyCount = 0;
    int backupDeletedCount = 0;
    int localDeletedCount = 0;
    bool isOlderThanLocalData = false;

    bool hasChanges() const { return createCount > 0 || updateCount > 0; }
    QString statusTitle() const;
    QString statusText() const;
};
