#include "app/gui/ArchiveOperations.h"

#include "app/gui/MainWindow.h"
#include "backup/gui/BackupActions.h"
#include "import/gui/CSVImportActions.h"
#include "import/gui/FolderScanController.h"
#include "import/gui/ImportReviewWindow.h"

ArchiveOperations::ArchiveOperations(MainWindow &window)
    : QObject(&window), m_backups(new BackupActions(window.context(), &window)),
      m_folderScans(new FolderScanController(window.context(), &window))
{
    // The sidebar lists the operations in the order the poet meets them.
    window.addSidebarAction(m_backups->createBackupAction());
    window.addSidebarAction(m_backups->restoreAction());
    window.addSidebarAction(m_folderScans->textScanAction());
    window.addSidebarAction(m_folderScans->imageScanAction());

    connect(m_backups, &BackupActions::statusChanged, &window, &MainWindow::setStatus);
    connect(m_backups, &BackupActions::fileWritten, &window, &MainWindow::setLastWrittenFile);
    connect(m_backups, &BackupActions::busyChanged, &window, &MainWindow::setBusy);
    connect(m_backups, &BackupActions::archiveChanged, &window, &MainWindow::reloadRows);
    connect(&window, &MainWindow::dailyBackupDue, m_backups, &BackupActions::runDailyBackupIfDue);

    connect(m_folderScans, &FolderScanController::statusChanged, &window, &MainWindow::setStatus);
    connect(m_folderScans, &FolderScanController::busyChanged, &window, &MainWindow::setBusy);

    auto *csvImport = new CSVImportActions(window.context(), &window);
    window.addSidebarAction(csvImport->importAction());
    window.addFileMenuAction(csvImport->importAction());
    connect(csvImport, &CSVImportActions::statusChanged, &window, &MainWindow::setStatus);
    connect(csvImport, &CSVImportActions::busyChanged, &window, &MainWindow::setBusy);
    connect(csvImport, &CSVImportActions::archiveChanged, &window, &MainWindow::reloadRows);
}
