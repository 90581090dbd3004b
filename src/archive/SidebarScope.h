#pragma once

#include <QString>

#include <array>
#include <optional>

// The sidebar's views of the live poems. The trash is not a scope; it has its own dialog.
enum class SidebarScope { archive, missingText, published, podcast };

inline constexpr std::array<SidebarScope, 4> allSidebarScopes = {SidebarScope::archive, SidebarScope::missingText,
                                                                 SidebarScope::published, SidebarScope::podcast};

QString rawValue(SidebarScope scope);
QString displayTitle(SidebarScope scope);
std::optional<SidebarScope> sidebarScopeFromRaw(const QString &raw);
