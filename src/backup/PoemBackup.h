#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <QUuid>

#include <optional>

class Poem;

// One poem as it stands in a backup document; the field names are the JSON keys.
struct PoemBackup {
    std::optional<QUuid> id;
    QString objectURI;
    std::optional<QString> title;
    std::optional<QString> titleNormalized;
    std::optional<QString> category;
    std::optional<QDateTime> date;
    std::optional<QString> text;
    std::optional<QByteArray> richTextData;
    std::optional<QString> writerNotes;
    std::optional<QString> externalId;
    bool inPodcast = false;
    bool isPublished = false;
    std::optional<QDateTime> createdAt;
    std::optional<QDateTime> updatedAt;
    std::optional<QDateTime> deletedAt;

    static PoemBackup fromPoem(const Poem &poem);
    // Absent values are left out, never written as null.
    QJsonObject toJson() const;

    // Equal in every field; dates within the tolerance of sameDate.
    bool matches(const Poem &local) const;
    // Copies every field onto the poem, clearing what the entry leaves absent. The poem
    // keeps its own id only when the entry has none.
    void apply(Poem &local) const;
    // Stored dates keep milliseconds while the document has whole seconds, so dates less
    // than a second apart are the same date.
    static bool sameDate(const std::optional<QDateTime> &a, const std::optional<QDateTime> &b);
};
