#pragma once

#include <QString>

#include <array>

enum class FolderKind { backup, csv, documentImport, exportFolder };

inline constexpr std::array<FolderKind, 4> allFolderKinds = {FolderKind::backup, FolderKind::csv,
                                                             FolderKind::documentImport, FolderKind::exportFolder};

// The preference key under which the kind's folder is remembered.
QString bookmarkKey(FolderKind kind);
