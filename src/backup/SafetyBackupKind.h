#pragma once

#include <QString>

#include <array>

// What a safety backup was written before; told by the prefix of its file name.
enum class SafetyBackupKind { beforeRestore, beforeTextImport, beforeImageImport, beforeCsvImport, daily, other };

inline constexpr std::array<SafetyBackupKind, 5> namedSafetyBackupKinds = {
    SafetyBackupKind::beforeRestore, SafetyBackupKind::beforeTextImport, SafetyBackupKind::beforeImageImport,
    SafetyBackupKind::beforeCsvImport, SafetyBackupKind::daily};

// The prefix the writer is given ("pre-restore", ..., "daily"); "other" for unknown files.
QString rawValue(SafetyBackupKind kind);
QString displayTitle(SafetyBackupKind kind);
SafetyBackupKind safetyBackupKindOf(const QString &fileName);
