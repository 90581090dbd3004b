#pragma once

#include <QString>

#include <optional>

// One line of the library list, identified by the poem's store object id.
struct PoemRow {
    QString objectID;
    QString id; // the poem's UUID text, for scripts
    QString title;
    QString dateText;
    std::optional<QString> category;
    QString excerpt;
    QString statusText;
    bool hasText = false;
    bool isPublished = false;
    bool inPodcast = false;

    // The title as the list shows it: "Gedicht ohne Titel" stands in for a blank one.
    QString displayTitle() const;
    bool operator==(const PoemRow &other) const = default;
};
