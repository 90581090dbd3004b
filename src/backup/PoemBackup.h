#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QJsonObject>
#include <QString>

#include <optional>

class Poem;

// One poem as it stands in a backup document; the field names are the JSON keys.
struct PoemBackup {
    std::optional<QString> id;
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
};
