#pragma once

#include <QObject>

class AnalysisActions;
class BackupActions;
class FolderScanController;
class ImportActions;
class MainWindow;
class QAction;
class QMenu;
class ReaderPackageAction;

// Attaches the archive-wide operations (backup, restore, folder scans, imports) to the library
// window: their actions go into the sidebar, their outcomes into its status line.
class ArchiveOperations : public QObject {
    Q_OBJECT

public:
    explicit ArchiveOperations(MainWindow &window);

    BackupActions *backups() const { return m_backups; }
    FolderScanController *folderScans() const { return m_folderScans; }
    QAction *safetyBackupsAction() const { return m_safetyBackups; }
    ImportActions *imports() const { return m_imports; }
    ReaderPackageAction *readerPackage() const { return m_readerPackage; }
    AnalysisActions *analysis() const { return m_analysis; }

private:
    void showSafetyBackups(MainWindow &window);
    static void addBeforeQuit(QMenu *menu, QAction *action);

    BackupActions *m_backups;
    FolderScanController *m_folderScans;
    QAction *m_safetyBackups = nullptr;
    ImportActions *m_imports;
    ReaderPackageAction *m_readerPackage;
    AnalysisActions *m_analysis;
};
