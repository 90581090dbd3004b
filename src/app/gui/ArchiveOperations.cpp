#include "app/gui/ArchiveOperations.h"

#include "analysis/gui/AnalysisActions.h"
#include "app/gui/MainWindow.h"
#include "backup/gui/BackupActions.h"
#include "export/gui/ReaderPackageAction.h"
#include "import/gui/FolderScanController.h"
#include "import/gui/ImportReviewWindow.h"

#include <QAction>

ArchiveOperations::ArchiveOperations(MainWindow &window)
    : QObject(&window), m_backups(new BackupActions(window.context(), &window)),
      m_folderScans(new FolderScanController(window.context(), &window)),
      m_readerPackage(new ReaderPackageAction(window.context(), &window)),
      m_analysis(new AnalysisActions(window.context(), &window))
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

    for (QAction *action :
         {m_readerPackage->action(), m_analysis->duplicateCheckAction(), m_analysis->statisticsAction()}) {
        window.addSidebarAction(action);
        window.addArchiveMenuAction(action);
    }
    connect(m_readerPackage, &ReaderPackageAction::statusChanged, &window, &MainWindow::setStatus);
    connect(m_readerPackage, &ReaderPackageAction::fileWritten, &window, &MainWindow::setLastWrittenFile);
    connect(m_analysis, &AnalysisActions::statusChanged, &window, &MainWindow::setStatus);
    connect(m_analysis, &AnalysisActions::showPoemRequested, &window, &MainWindow::showPoemInLibrary);
}
