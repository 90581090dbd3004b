#pragma once

#include "archive/Poem.h"
#include "archive/Result.h"

#include <QDateTime>

#include <functional>

class ArchiveContext;

// The detail view's edit rule: change, stamp updatedAt, save at once.
class PoemEdit {
public:
    static Result<void> apply(ArchiveContext &context, Poem &poem, const std::function<void(Poem &)> &change,
                              const QDateTime &now);
    // Sets the title and its key; the key is recomputed nowhere else in editing.
    static void setTitle(Poem &poem, const QString &title);
};
