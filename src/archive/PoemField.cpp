#include "archive/PoemField.h"

#include <QCoreApplication>

bool fieldEquals(PoemField field, const PoemValues &a, const PoemValues &b)
{
    return withPoemMember(field, [&](auto member) { return a.*member == b.*member; });
}

void copyField(PoemField field, PoemValues &to, const PoemValues &from)
{
    withPoemMember(field, [&](auto member) { to.*member = from.*member; });
}

PoemFieldSet differingFields(const PoemValues &a, const PoemValues &b)
{
    PoemFieldSet fields;
    for (int i = 0; i < poemFieldCount; ++i)
        fields[size_t(i)] = !fieldEquals(PoemField(i), a, b);
    return fields;
}

PoemFieldSet versionedPoemFields()
{
    PoemFieldSet fields;
    for (const PoemField field :
         {PoemField::title, PoemField::text, PoemField::richTextData, PoemField::category, PoemField::date,
          PoemField::writerNotes, PoemField::isPublished, PoemField::inPodcast})
        fields.set(size_t(field));
    return fields;
}

namespace {

const char *displayNameSource(PoemField field)
{
    switch (field) {
    case PoemField::id:
        return QT_TRANSLATE_NOOP("PoemField", "Kennung");
    case PoemField::title:
    case PoemField::titleNormalized:
        return QT_TRANSLATE_NOOP("PoemField", "Titel");
    case PoemField::text:
    case PoemField::richTextData:
        return QT_TRANSLATE_NOOP("PoemField", "Text");
    case PoemField::category:
        return QT_TRANSLATE_NOOP("PoemField", "Kategorie");
    case PoemField::date:
        return QT_TRANSLATE_NOOP("PoemField", "Datum");
    case PoemField::writerNotes:
        return QT_TRANSLATE_NOOP("PoemField", "Notizen");
    case PoemField::isPublished:
        return QT_TRANSLATE_NOOP("PoemField", "Veröffentlicht");
    case PoemField::inPodcast:
        return QT_TRANSLATE_NOOP("PoemField", "Podcast");
    case PoemField::externalId:
        return QT_TRANSLATE_NOOP("PoemField", "Externe Kennung");
    case PoemField::createdAt:
        return QT_TRANSLATE_NOOP("PoemField", "Erstellt");
    case PoemField::updatedAt:
        return QT_TRANSLATE_NOOP("PoemField", "Geändert");
    case PoemField::deletedAt:
        break;
    }
    return QT_TRANSLATE_NOOP("PoemField", "Papierkorb");
}

} // namespace

QString poemFieldDisplayName(PoemField field)
{
    return QCoreApplication::translate("PoemField", displayNameSource(field));
}
