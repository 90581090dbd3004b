#pragma once

#include <QObject>

class BackupActions;
class FolderScanController;
class MainWindow;

// Attaches the archive-wide operations (backup, restore, folder scans) to the library
// window: their actions go into the sidebar, their outcomes into its status line.
class ArchiveOperations : public QObject {
    Q_OBJECT

public:
    explicit ArchiveOperations(MainWindow &window);

    BackupActions *backups() const { return m_backups; }
    FolderScanController *folderScans() const { return m_folderScans; }

private:
    BackupActions *m_backups;
    FolderScanController *m_folderScans;
};
