#pragma once

#include <QObject>

class AnalysisActions;
class BackupActions;
class FolderScanController;
class MainWindow;
class ReaderPackageAction;

// Attaches the archive-wide operations (backup, restore, folder scans) to the library
// window: their actions go into the sidebar, their outcomes into its status line.
class ArchiveOperations : public QObject {
    Q_OBJECT

public:
    explicit ArchiveOperations(MainWindow &window);

    BackupActions *backups() const { return m_backups; }
    FolderScanController *folderScans() const { return m_folderScans; }
    ReaderPackageAction *readerPackage() const { return m_readerPackage; }
    AnalysisActions *analysis() const { return m_analysis; }

private:
    BackupActions *m_backups;
    FolderScanController *m_folderScans;
    ReaderPackageAction *m_readerPackage;
    AnalysisActions *m_analysis;
};
