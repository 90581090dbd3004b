#pragma once

#include "archive/PoemValues.h"

#include <QString>

#include <bitset>

// The stored attributes of a poem one by one, so that a save can write only what changed
// and a merge can decide attribute by attribute.
enum class PoemField {
    id,
    title,
    titleNormalized,
    text,
    richTextData,
    category,
    date,
    writerNotes,
    isPublished,
    inPodcast,
    externalId,
    createdAt,
    updatedAt,
    deletedAt,
};

constexpr int poemFieldCount = int(PoemField::deletedAt) + 1;
using PoemFieldSet = std::bitset<poemFieldCount>;

// Calls fn with the PoemValues member that holds the field.
template <typename Fn> decltype(auto) withPoemMember(PoemField field, Fn &&fn)
{
    switch (field) {
    case PoemField::id:
        return fn(&PoemValues::id);
    case PoemField::title:
        return fn(&PoemValues::title);
    case PoemField::titleNormalized:
        return fn(&PoemValues::titleNormalized);
    case PoemField::text:
        return fn(&PoemValues::text);
    case PoemField::richTextData:
        return fn(&PoemValues::richTextData);
    case PoemField::category:
        return fn(&PoemValues::category);
    case PoemField::date:
        return fn(&PoemValues::date);
    case PoemField::writerNotes:
        return fn(&PoemValues::writerNotes);
    case PoemField::isPublished:
        return fn(&PoemValues::isPublished);
    case PoemField::inPodcast:
        return fn(&PoemValues::inPodcast);
    case PoemField::externalId:
        return fn(&PoemValues::externalId);
    case PoemField::createdAt:
        return fn(&PoemValues::createdAt);
    case PoemField::updatedAt:
        return fn(&PoemValues::updatedAt);
    case PoemField::deletedAt:
        break;
    }
    return fn(&PoemValues::deletedAt);
}

PoemFieldSet differingFields(const PoemValues &a, const PoemValues &b);
// What the poet sees of a poem, and so what a version keeps.
PoemFieldSet versionedPoemFields();
bool fieldEquals(PoemField field, const PoemValues &a, const PoemValues &b);
void copyField(PoemField field, PoemValues &to, const PoemValues &from);
// The German name of the field as the detail view labels it.
QString poemFieldDisplayName(PoemField field);
