#pragma once

#include "archive/Result.h"

#include <QString>

#include <array>
#include <optional>

// Which fields the library search looks at. The raw value is the German label.
enum class SearchMode { title, text, category, all };

inline constexpr std::array<SearchMode, 4> allSearchModes = {SearchMode::title, SearchMode::text, SearchMode::category,
                                                             SearchMode::all};

QString rawValue(SearchMode mode);
QString displayTitle(SearchMode mode);
std::optional<SearchMode> searchModeFromRaw(const QString &raw);

// The mode the window starts with: the stored label, else the older title-only switch.
SearchMode storedSearchMode();
// Remembers the mode and keeps the title-only switch in step for older readers.
Result<void> storeSearchMode(SearchMode mode);
