#include "archive/SearchMode.h"

#include "archive/AppPreferences.h"

#include <QCoreApplication>

namespace {

const char *label(SearchMode mode)
{
    switch (mode) {
    case SearchMode::title:
        return QT_TRANSLATE_NOOP("SearchMode", "Titel");
    case SearchMode::text:
        return QT_TRANSLATE_NOOP("SearchMode", "Text");
    case SearchMode::category:
        return QT_TRANSLATE_NOOP("SearchMode", "Kategorie");
    case SearchMode::all:
        return QT_TRANSLATE_NOOP("SearchMode", "Alles");
    }
    return "";
}

} // namespace

QString rawValue(SearchMode mode)
{
    return QString::fromUtf8(label(mode));
}

QString displayTitle(SearchMode mode)
{
    return QCoreApplication::translate("SearchMode", label(mode));
}

std::optional<SearchMode> searchModeFromRaw(const QString &raw)
{
    for (const SearchMode mode : allSearchModes) {
        if (rawValue(mode) == raw)
            return mode;
    }
    return std::nullopt;
}

SearchMode storedSearchMode()
{
    if (const auto stored = AppPreferences::searchMode()) {
        if (const auto mode = searchModeFromRaw(*stored))
            return *mode;
    }
    return AppPreferences::searchTitleOnly() ? SearchMode::title : SearchMode::all;
}

Result<void> storeSearchMode(SearchMode mode)
{
    if (auto stored = AppPreferences::setSearchMode(rawValue(mode)); !stored)
        return stored;
    return AppPreferences::setSearchTitleOnly(mode == SearchMode::title);
}
