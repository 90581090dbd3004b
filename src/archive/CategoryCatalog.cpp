#include "archive/CategoryCatalog.h"

#include "archive/AppPreferences.h"
#include "archive/ArchiveContext.h"
#include "archive/PoemVersion.h"
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

Result<bool> CategoryCatalog::addCategory(const QString &name)
{
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty())
        return false;
    QStringList categories = AppPreferences::poemCategories();
    if (contains(categories, trimmed))
        return false;
    categories.append(trimmed);
    if (auto stored = AppPreferences::setPoemCategories(categories); !stored)
        return stored.error();
    return true;
}

Result<int> CategoryCatalog::adoptCategories(const QStringList &names)
{
    QStringList categories = AppPreferences::poemCategories();
    int added = 0;
    for (const QString &name : AppPreferences::normalizedCategories(names)) {
        if (contains(categories, name))
            continue;
        categories.append(name);
        ++added;
    }
    if (added > 0) {
        if (auto stored = AppPreferences::setPoemCategories(categories); !stored)
            return stored.error();
    }
    return added;
}

Result<bool> CategoryCatalog::renameCategory(ArchiveContext &context, const QString &oldName, const QString &newName,
                                             const QDateTime &now)
{
    const auto renamed = AppPreferences::renamePoemCategory(oldName, newName);
    if (!renamed || !*renamed)
        return renamed;
    updatePoems(context, oldName, newName, now);
    return true;
}

Result<void> CategoryCatalog::removeCategory(ArchiveContext &context, const QString &name, const QDateTime &now)
{
    QStringList categories = AppPreferences::poemCategories();
    categories.removeIf(
        [&name](const QString &entry) { return TextComparison::equalsIgnoringCaseAndDiacritics(entry, name); });
    if (auto stored = AppPreferences::setPoemCategories(categories); !stored)
        return stored;
    updatePoems(context, name, QString(), now);
    return {};
}

int CategoryCatalog::updatePoems(ArchiveContext &context, const QString &category, const QString &replacement,
                                 const QDateTime &now)
{
    const auto poems = context.fetch([&category](const Poem &poem) { return poem.category() == category; });
    const VersionReason reason(
        context, replacement.isEmpty()
                     ? PoemVersion::reasonKey(QT_TRANSLATE_NOOP("PoemVersion", "vor Entfernen der Kategorie"))
                     : PoemVersion::reasonKey(QT_TRANSLATE_NOOP("PoemVersion", "vor Umbenennen der Kategorie")));
    for (const PoemPtr &poem : poems) {
        poem->setCategory(replacement);
        poem->setUpdatedAt(now);
    }
    if (!poems.isEmpty())
        (void)context.save();
    return int(poems.size());
}
