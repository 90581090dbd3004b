#include "archive/PoemSortMode.h"

#include <QCoreApplication>

namespace {

const char *label(PoemSortMode mode)
{
    switch (mode) {
    case PoemSortMode::recentlyChanged:
        return QT_TRANSLATE_NOOP("PoemSortMode", "Zuletzt geändert");
    case PoemSortMode::title:
        return QT_TRANSLATE_NOOP("PoemSortMode", "Titel");
    case PoemSortMode::category:
        return QT_TRANSLATE_NOOP("PoemSortMode", "Kategorie");
    case PoemSortMode::date:
        return QT_TRANSLATE_NOOP("PoemSortMode", "Datum");
    case PoemSortMode::missingTextFirst:
        return QT_TRANSLATE_NOOP("PoemSortMode", "Ohne Text zuerst");
    }
    return "";
}

} // namespace

QString rawValue(PoemSortMode mode)
{
    return QString::fromUtf8(label(mode));
}

QString displayTitle(PoemSortMode mode)
{
    return QCoreApplication::translate("PoemSortMode", label(mode));
}

std::optional<PoemSortMode> poemSortModeFromRaw(const QString &raw)
{
    for (const PoemSortMode mode : allPoemSortModes) {
        if (rawValue(mode) == raw)
            return mode;
    }
    return std::nullopt;
}
