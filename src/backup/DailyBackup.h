#pragma once

#include <QDateTime>
#include <QString>

class ArchiveContext;

// The automatic backup at the first start of each local calendar day. The day counts as
// done only after a backup was written, so a failed attempt is repeated at the next start;
// an empty archive is not backed up and does not use up the day. After each backup the
// folder's retention rule thins out older daily copies (SafetyBackupFolder).
class DailyBackup {
public:
    enum class Status { disabled, alreadyDone, emptyArchive, written, failed };

    struct Outcome {
        Status status = Status::disabled;
        // Empty unless a backup was written or failed.
        QString statusLine;
        QString path;
        int poemCount = 0;
    };

    static Outcome runDailyAutomaticBackupIfNeeded(ArchiveContext &context,
                                                   const QDateTime &now = QDateTime::currentDateTime());
    // The local day of `now` as "yyyy-MM-dd" in the user's locale.
    static QString automaticBackupDayString(const QDateTime &now);
};
