#pragma once

#include "archive/Result.h"

#include <QDateTime>
#include <QString>

class ArchiveContext;

// The settings window's category actions: the configured list and the poems that carry
// a name. Poems are matched exactly (case-sensitive), stricter than the list. Every change
// of the list answers with an error when the list could not be stored.
class CategoryCatalog {
public:
    // False for a blank name or one the list has.
    static Result<bool> addCategory(const QString &name);
    // Names met in poems (an import, a CSV row, the detail pane) that the list does not
    // know yet join its end, cleaned and sorted; returns how many were added.
    static Result<int> adoptCategories(const QStringList &names);
    // The poems are re-labelled only once the list is stored.
    static Result<bool> renameCategory(ArchiveContext &context, const QString &oldName, const QString &newName,
                                       const QDateTime &now);
    static Result<void> removeCategory(ArchiveContext &context, const QString &name, const QDateTime &now);
    // Failed saves are ignored, as in the library's list actions.
    static int updatePoems(ArchiveContext &context, const QString &category, const QString &replacement,
                           const QDateTime &now);
};
