#pragma once

#include <QString>

#include <array>
#include <optional>

// The library's list orders. The raw value is the German label, which is also the menu text.
enum class PoemSortMode { recentlyChanged, title, category, date, missingTextFirst };

inline constexpr std::array<PoemSortMode, 5> allPoemSortModes = {PoemSortMode::recentlyChanged, PoemSortMode::title,
                                                                 PoemSortMode::category, PoemSortMode::date,
                                                                 PoemSortMode::missingTextFirst};

QString rawValue(PoemSortMode mode);
QString displayTitle(PoemSortMode mode);
std::optional<PoemSortMode> poemSortModeFromRaw(const QString &raw);
