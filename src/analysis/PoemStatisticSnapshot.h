#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

class Poem;

// What the statistics read from one poem.
struct PoemStatisticSnapshot {
    explicit PoemStatisticSnapshot(const Poem &poem);
    PoemStatisticSnapshot() = default;

    QString category; // trimmed; empty for none
    bool hasText = false;
    bool hasDate = false;
    bool isPublished = false;
    bool inPodcast = false;
    std::optional<QDateTime> updatedAt;
};
