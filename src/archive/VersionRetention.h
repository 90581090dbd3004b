#pragma once

#include <QDateTime>

#include <vector>

// Which versions of a poem to let go: named ones stay forever, everything of the last 30
// days stays, then the newest of each day for a year, then the newest of each month.
class VersionRetention {
public:
    struct Entry {
        qint64 id;
        QDateTime createdAt;
        bool named;
    };

    static constexpr int keepAllDays = 30;
    static constexpr int keepDailyDays = 365;

    static std::vector<qint64> expired(std::vector<Entry> entries, const QDateTime &now);
};
