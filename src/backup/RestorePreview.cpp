#include "backup/RestorePreview.h"

#include <QCoreApplication>

QString RestorePreview::statusTitle() const
{
    if (!hasChanges())
        return QCoreApplication::translate("RestorePreview", "Keine Änderungen nötig");
    if (isOlderThanLocalData)
        return QCoreApplication::translate("RestorePreview", "Backup prüfen");
    return QCoreApplication::translate("RestorePreview", "Wiederherstellung bereit");
}

QString RestorePreview::statusText() const
{
    if (!hasChanges())
        return QCoreApplication::translate("RestorePreview",
                                           "Dieses Backup entspricht bereits deinem aktuellen Archiv.");
    if (isOlderThanLocalData)
        return QCoreApplication::translate(
            "RestorePreview",
            "Das Backup ist älter als mindestens eine lokale Änderung. Lokale Gedichte werden nicht gelöscht.");
    return QCoreApplication::translate(
        "RestorePreview", "OdeLeaf kann fehlende Gedichte ergänzen und vorhandene Einträge aktualisieren.");
}
