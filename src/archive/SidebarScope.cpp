#include "archive/SidebarScope.h"

#include <QCoreApplication>

namespace {

const char *label(SidebarScope scope)
{
    switch (scope) {
    case SidebarScope::archive:
        return QT_TRANSLATE_NOOP("SidebarScope", "Archiv");
    case SidebarScope::missingText:
        return QT_TRANSLATE_NOOP("SidebarScope", "Ohne Text");
    case SidebarScope::published:
        return QT_TRANSLATE_NOOP("SidebarScope", "Veröffentlicht");
    case SidebarScope::podcast:
        return QT_TRANSLATE_NOOP("SidebarScope", "Podcast");
    }
    return "";
}

} // namespace

QString rawValue(SidebarScope scope)
{
    return QString::fromUtf8(label(scope));
}

QString displayTitle(SidebarScope scope)
{
    return QCoreApplication::translate("SidebarScope", label(scope));
}

std::optional<SidebarScope> sidebarScopeFromRaw(const QString &raw)
{
    for (const SidebarScope scope : allSidebarScopes) {
        if (rawValue(scope) == raw)
            return scope;
    }
    return std::nullopt;
}
