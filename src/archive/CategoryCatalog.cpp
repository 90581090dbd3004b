#include "archive/CategoryCatalog.h"

#include "archive/AppPreferences.h"
#include "archive/ArchiveContext.h"
#include "archive/TextComparison.h"
#include "archive/VersionReason.h"

#include <algorithm>

namespace {

bool contains(const QStringList &categories, const QString &name)
{
    return std::any_of(categories.begin(), categories.end(), [&name](const QString &entry) {
        return TextComparison::equalsIgnoringCaseAndDiacritics(entry.trimmed(), name);
    });
}

} // namespace

bool CategoryCatalog::addCategory(const QString &name)
{
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty())
        return false;
    QStringList categories = AppPreferences::poemCategories();
    if (contains(categories, trimmed))
        return false;
    categories.append(trimmed);
    AppPreferences::setPoemCategories(categories);
    return true;
}

int CategoryCatalog::adoptCategories(const QStringList &names)
{
    QStringList categories = AppPreferences::poemCategories();
    int added = 0;
    for (const QString &name : AppPreferences::normalizedCategories(names)) {
        if (contains(categories, name))
            continue;
        categories.append(name);
        ++added;
    }
    if (added > 0)
        AppPreferences::setPoemCategories(categories);
    return added;
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
    const VersionReason reason(context,
                               replacement.isEmpty()
                                   ? QCoreApplication::translate("CategoryCatalog", "vor Entfernen der Kategorie")
                                   : QCoreApplication::translate("CategoryCatalog", "vor Umbenennen der Kategorie"));
    for (const PoemPtr &poem : poems) {
        poem->setCategory(replacement);
        poem->setUpdatedAt(now);
    }
    if (!poems.isEmpty())
        (void)context.save();
    return int(poems.size());
}
