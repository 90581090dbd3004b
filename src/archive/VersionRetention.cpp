#include "archive/VersionRetention.h"

#include <algorithm>
#include <set>

std::vector<qint64> VersionRetention::expired(std::vector<Entry> entries, const QDateTime &now)
{
    // Newest first, so the first one met in a day or month is the one that stays.
    std::sort(entries.begin(), entries.end(), [](const Entry &a, const Entry &b) {
        return a.createdAt != b.createdAt ? a.createdAt > b.createdAt : a.id > b.id;
    });
    std::set<QDate> days;
    std::set<std::pair<int, int>> months;
    std::vector<qint64> gone;
    for (const Entry &entry : entries) {
        const QDate day = entry.createdAt.toLocalTime().date();
        const qint64 ageDays = entry.createdAt.daysTo(now);
        if (entry.named || ageDays < keepAllDays)
            continue;
        if (ageDays < keepDailyDays) {
            if (!days.insert(day).second)
                gone.push_back(entry.id);
            continue;
        }
        if (!months.insert({day.year(), day.month()}).second)
            gone.push_back(entry.id);
    }
    return gone;
}
