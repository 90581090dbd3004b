#pragma once

#include "archive/Poem.h"

#include <QDateTime>

class ArchiveContext;

// Creates records with exactly the attributes a new poem and a duplicate start with.
// The caller saves.
class PoemFactory {
public:
    static PoemPtr makeNewPoem(ArchiveContext &context, const QDateTime &now);
    static PoemPtr makeDuplicate(ArchiveContext &context, const Poem &source, const QDateTime &now);
    static QString duplicateTitle(const std::optional<QString> &sourceTitle);
};
