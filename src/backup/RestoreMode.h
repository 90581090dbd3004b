#pragma once

#include <QString>

#include <optional>

// How a restore treats a backup entry whose poem already exists locally.
enum class RestoreMode {
    addMissing,          // leave it as it is
    addMissingAndUpdate, // overwrite it with the entry when they differ
};

QString rawValue(RestoreMode mode);
std::optional<RestoreMode> restoreModeFromRaw(const QString &raw);
// The label of the button that runs the mode.
QString displayTitle(RestoreMode mode);
