#include "backup/TemporaryLeftovers.h"

#include "archive/AppPreferences.h"
#include "archive/ApplicationSupport.h"
#include "archive/AtomicFileWriter.h"
#include "backup/BackupExporter.h"

#include <QStringList>

int TemporaryLeftovers::removeFromKnownFolders()
{
    QStringList folders{ApplicationSupport::directory(), BackupExporter::automaticBackupDirectory()};
    for (const FolderKind kind : allFolderKinds) {
        // Read as stored: forgetting a vanished folder is the file dialogs' business.
        const QString folder = AppPreferences::valueText(bookmarkKey(kind)).value_or(QString());
        if (!folder.isEmpty() && !folders.contains(folder))
            folders.append(folder);
    }
    return AtomicFileWriter::removeStaleTemporaryFiles(folders);
}
