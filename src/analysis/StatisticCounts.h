#pragma once

#include "analysis/PoemStatisticSnapshot.h"

// The counts the statistics keep for the whole archive and for each category, with their
// shares of the total (fractions from 0 to 1; 0 when there are no poems).
struct StatisticCounts {
    int total = 0;
    int withText = 0;
    int withoutText = 0;
    int withDate = 0;
    int withoutDate = 0;
    int published = 0;
    int podcast = 0;

    void add(const PoemStatisticSnapshot &poem)
    {
        ++total;
        ++(poem.hasText ? withText : withoutText);
        ++(poem.hasDate ? withDate : withoutDate);
        published += poem.isPublished ? 1 : 0;
        podcast += poem.inPodcast ? 1 : 0;
    }

    double share(int count) const { return total == 0 ? 0.0 : double(count) / double(total); }
    double withTextPercent() const { return share(withText); }
    double withoutTextPercent() const { return share(withoutText); }
    double withDatePercent() const { return share(withDate); }
    double withoutDatePercent() const { return share(withoutDate); }
    double publishedPercent() const { return share(published); }
    double podcastPercent() const { return share(podcast); }

    bool operator==(const StatisticCounts &other) const = default;
};
