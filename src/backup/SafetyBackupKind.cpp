#include "backup/SafetyBackupKind.h"

#include <QCoreApplication>

QString rawValue(SafetyBackupKind kind)
{
    switch (kind) {
    case SafetyBackupKind::beforeRestore:
        return QStringLiteral("pre-restore");
    case SafetyBackupKind::beforeTextImport:
        return QStringLiteral("pre-text-import");
    case SafetyBackupKind::beforeImageImport:
        return QStringLiteral("pre-image-import");
    case SafetyBackupKind::beforeCsvImport:
        return QStringLiteral("pre-csv-import");
    case SafetyBackupKind::daily:
        return QStringLiteral("daily");
    case SafetyBackupKind::other:
        break;
    }
    return QStringLiteral("other");
}

QString displayTitle(SafetyBackupKind kind)
{
    switch (kind) {
    case SafetyBackupKind::beforeRestore:
        return QCoreApplication::translate("SafetyBackupKind", "Vor Wiederherstellung");
    case SafetyBackupKind::beforeTextImport:
        return QCoreApplication::translate("SafetyBackupKind", "Vor Textimport");
    case SafetyBackupKind::beforeImageImport:
        return QCoreApplication::translate("SafetyBackupKind", "Vor Bildimport");
    case SafetyBackupKind::beforeCsvImport:
        return QCoreApplication::translate("SafetyBackupKind", "Vor CSV-Import");
    case SafetyBackupKind::daily:
        return QCoreApplication::translate("SafetyBackupKind", "Tagesbackup");
    case SafetyBackupKind::other:
        break;
    }
    return QCoreApplication::translate("SafetyBackupKind", "Sonstige Sicherung");
}

SafetyBackupKind safetyBackupKindOf(const QString &fileName)
{
    // The stamp follows the prefix after one more hyphen, so "pre-text-import" never
    // passes for a longer prefix that merely starts the same way.
    for (const SafetyBackupKind kind : namedSafetyBackupKinds) {
        if (fileName.startsWith(rawValue(kind) + QLatin1Char('-')))
            return kind;
    }
    return SafetyBackupKind::other;
}
