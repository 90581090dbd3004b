#include "archive/FolderKind.h"

QString bookmarkKey(FolderKind kind)
{
    switch (kind) {
    case FolderKind::backup:
        return QStringLiteral("backupFolderBookmark");
    case FolderKind::csv:
        return QStringLiteral("csvFolderBookmark");
    case FolderKind::documentImport:
        return QStringLiteral("documentImportFolderBookmark");
    case FolderKind::exportFolder:
        return QStringLiteral("exportFolderBookmark");
    }
    return {};
}
