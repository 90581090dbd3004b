#include "archive/CategoryCatalog.h"

#include "archive/AppPreferences.h"
#include "archive/ArchiveContext.h"
#include "archive/TextComparison.h"

#include <algorithm>

bool CategoryCatalog::addCategory(const QString &name)
{
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty())
        return false;
    QStringList categories = AppPreferences::poemCategories();
    const bool present = std::any_of(categories.begin(), categories.end(), [&trimmed](const QString &entry) {
        return TextComparison::equalsIgnoringCaseAndDiacritics(entry, trimmed);
    });
    if (present)
        return false;
    categories.append(trimmed);
    AppPreferences::setPoemCategories(categories);
    return true;
}

bool CategoryCatalog::renameCategory(ArchiveContext &context, const QString &oldName, const QString &newName,
                                     const QDateTime &now)
{
    if (!AppPreferences::renamePoemCategory(oldName, newName))
        return false;
    updatePoems(context, oldName, newName, now);
    return true;
}

void CategoryCatalog::removeCategory(ArchiveContext &context, const QString &name, const QDateTime &now)
{
    QStringList categories = AppPreferences::poemCategories();
    categories.removeIf(
        [&name](const QString &entry) { return TextComparison::equalsIgnoringCaseAndDiacritics(entry, name); });
    AppPreferences::setPoemCategories(categories);
    updatePoems(context, name, QString(), now);
}

int CategoryCatalog::updatePoems(ArchiveContext &context, const QString &category, const QString &replacement,
                                 const QDateTime &now)
{
    const auto poems = context.fetch([&category](const Poem &poem) { return poem.category() == category; });
    for (const PoemPtr &poem : poems) {
        poem->setCategory(replacement);
        poem->setUpdatedAt(now);
    }
    if (!poems.isEmpty())
        (void)context.save();
    return int(poems.size());
}
