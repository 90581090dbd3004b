#include "backup/RestoreMode.h"

#include <QCoreApplication>

QString rawValue(RestoreMode mode)
{
    switch (mode) {
    case RestoreMode::addMissing:
        return QStringLiteral("addMissing");
    case RestoreMode::addMissingAndUpdate:
        return QStringLiteral("addMissingAndUpdate");
    }
    return {};
}

std::optional<RestoreMode> restoreModeFromRaw(const QString &raw)
{
    for (const RestoreMode mode : {RestoreMode::addMissing, RestoreMode::addMissingAndUpdate}) {
        if (rawValue(mode) == raw)
            return mode;
    }
    return std::nullopt;
}

QString displayTitle(RestoreMode mode)
{
    switch (mode) {
    case RestoreMode::addMissing:
        return QCoreApplication::translate("RestoreMode", "Nur fehlende ergänzen");
    case RestoreMode::addMissingAndUpdate:
        return QCoreApplication::translate("RestoreMode", "Ergänzen und aktualisieren");
    }
    return {};
}
