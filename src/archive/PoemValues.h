#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QUuid>

#include <optional>

// The fourteen stored attributes of a poem. Optional attributes keep "absent" apart from
// "empty": a nil text and an empty text are different values and both survive a reload.
struct PoemValues {
    std::optional<QUuid> id;
    std::optional<QString> title;
    std::optional<QString> titleNormalized;
    std::optional<QString> text;
    std::optional<QByteArray> richTextData;
    std::optional<QString> category;
    std::optional<QDateTime> date;
    std::optional<QString> writerNotes;
    bool isPublished = false;
    bool inPodcast = false;
    std::optional<QString> externalId;
    std::optional<QDateTime> createdAt;
    std::optional<QDateTime> updatedAt;
    std::optional<QDateTime> deletedAt;

    bool operator==(const PoemValues &other) const = default;
};

// The canonical text form of a poem id: upper-case UUID without braces.
QString uuidText(const QUuid &id);
