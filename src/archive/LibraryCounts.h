#pragma once

// The sidebar's numbers: over all live poems, over those that pass the search and the
// category filter, and the trash.
struct LibraryCounts {
    int activePoemCount = 0;
    int missingTextCount = 0;
    int publishedCount = 0;
    int podcastCount = 0;
    int scopedActivePoemCount = 0;
    int scopedMissingTextCount = 0;
    int scopedPublishedCount = 0;
    int scopedPodcastCount = 0;
    int trashCount = 0;

    bool operator==(const LibraryCounts &other) const = default;
};
