#include "backup/PoemBackup.h"

#include "archive/Poem.h"
#include "backup/ArchiveJson.h"

namespace {

void put(QJsonObject &object, const char *key, const std::optional<QString> &value)
{
    if (value)
        object.insert(QLatin1String(key), *value);
}

void put(QJsonObject &object, const char *key, const std::optional<QDateTime> &value)
{
    if (value)
        object.insert(QLatin1String(key), ArchiveJson::dateText(*value));
}

} // namespace

PoemBackup PoemBackup::fromPoem(const Poem &poem)
{
    PoemBackup entry;
    if (poem.id())
        entry.id = uuidText(*poem.id());
    entry.objectURI = poem.objectID();
    entry.title = poem.title();
    entry.titleNormalized = poem.titleNormalized();
    entry.category = poem.category();
    entry.date = poem.date();
    entry.text = poem.text();
    entry.richTextData = poem.richTextData();
    entry.writerNotes = poem.writerNotes();
    entry.externalId = poem.externalId();
    entry.inPodcast = poem.inPodcast();
    entry.isPublished = poem.isPublished();
    entry.createdAt = poem.createdAt();
    entry.updatedAt = poem.updatedAt();
    entry.deletedAt = poem.deletedAt();
    return entry;
}

QJsonObject PoemBackup::toJson() const
{
    QJsonObject object;
    put(object, "id", id);
    object.insert(QStringLiteral("objectURI"), objectURI);
    put(object, "title", title);
    put(object, "titleNormalized", titleNormalized);
    put(object, "category", category);
    put(object, "date", date);
    put(object, "text", text);
    if (richTextData)
        object.insert(QStringLiteral("richTextData"), QString::fromLatin1(richTextData->toBase64()));
    put(object, "writerNotes", writerNotes);
    put(object, "externalId", externalId);
    object.insert(QStringLiteral("inPodcast"), inPodcast);
    object.insert(QStringLiteral("isPublished"), isPublished);
    put(object, "createdAt", createdAt);
    put(object, "updatedAt", updatedAt);
    put(object, "deletedAt", deletedAt);
    return object;
}
