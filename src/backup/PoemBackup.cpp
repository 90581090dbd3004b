#include "backup/PoemBackup.h"

#include "archive/Poem.h"
#include "backup/ArchiveJson.h"

#include <cstdlib>

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
    entry.id = poem.id();
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
    if (id)
        object.insert(QStringLiteral("id"), uuidText(*id));
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

bool PoemBackup::matches(const Poem &local) const
{
    return id == local.id() && title == local.title() && titleNormalized == local.titleNormalized() &&
           category == local.category() && text == local.text() && writerNotes == local.writerNotes() &&
           externalId == local.externalId() && richTextData == local.richTextData() && inPodcast == local.inPodcast() &&
           isPublished == local.isPublished() && sameDate(date, local.date()) &&
           sameDate(createdAt, local.createdAt()) && sameDate(updatedAt, local.updatedAt()) &&
           sameDate(deletedAt, local.deletedAt());
}

void PoemBackup::apply(Poem &local) const
{
    if (id)
        local.setId(id);
    else if (!local.id())
        local.setId(QUuid::createUuid());
    local.setTitle(title);
    local.setTitleNormalized(titleNormalized);
    local.setCategory(category);
    local.setDate(date);
    local.setText(text);
    local.setRichTextData(richTextData);
    local.setWriterNotes(writerNotes);
    local.setExternalId(externalId);
    local.setCreatedAt(createdAt);
    local.setUpdatedAt(updatedAt);
    local.setDeletedAt(deletedAt);
    local.setInPodcast(inPodcast);
    local.setPublished(isPublished);
}

bool PoemBackup::sameDate(const std::optional<QDateTime> &a, const std::optional<QDateTime> &b)
{
    if (!a || !b)
        return !a && !b;
    return std::abs(a->msecsTo(*b)) < 1000;
}
