#include "app/gui/ArchiveOperations.h"

#include "app/gui/MainWindow.h"
#include "app/gui/PoemDetailView.h"
#include "backup/gui/BackupActions.h"
#include "import/ImportStateFiles.h"
#include "import/gui/FolderScanController.h"
#include "import/gui/ImportActions.h"
#include "import/gui/ImportReviewWindow.h"

#include <QMenu>

ArchiveOperations::ArchiveOperations(MainWindow &window)
    : QObject(&window), m_backups(new BackupActions(window.context(), &window)),
      m_folderScans(new FolderScanController(window.context(), &window)),
      m_imports(new ImportActions(window.context(), *m_folderScans, &window))
{
    // The sidebar lists the operations in the order the poet meets them.
    window.addSidebarAction(m_backups->createBackupAction());
    window.addSidebarAction(m_backups->restoreAction());
    window.addSidebarAction(m_folderScans->textScanAction());
    window.addSidebarAction(m_folderScans->imageScanAction());
    window.addSidebarAction(m_imports->reportAction());
    window.addSidebarAction(m_imports->undoAction());
    QMenu *file = window.fileMenu();
    QAction *beforeQuit = file->actions().constLast();
    file->insertAction(beforeQuit, m_imports->reportAction());
    file->insertAction(beforeQuit, m_imports->undoAction());
    file->insertSeparator(beforeQuit);

    connect(m_backups, &BackupActions::statusChanged, &window, &MainWindow::setStatus);
    connect(m_backups, &BackupActions::fileWritten, &window, &MainWindow::setLastWrittenFile);
    connect(m_backups, &BackupActions::busyChanged, &window, &MainWindow::setBusy);
    connect(m_backups, &BackupActions::archiveChanged, &window, &MainWindow::reloadRows);
    connect(&window, &MainWindow::dailyBackupDue, m_backups, &BackupActions::runDailyBackupIfDue);

    connect(m_folderScans, &FolderScanController::statusChanged, &window, &MainWindow::setStatus);
    connect(m_folderScans, &FolderScanController::busyChanged, &window, &MainWindow::setBusy);

    window.setPendingImportUndoCheck(&ImportStateFiles::hasPendingUndo);
    window.setImportReportCheck([] { return ImportStateFiles::loadReport().has_value(); });
    connect(&window, &MainWindow::pendingImportUndoChecked, m_imports, &ImportActions::setUndoAvailable);
    connect(&window, &MainWindow::importReportChecked, m_imports, &ImportActions::setReportAvailable);
    connect(m_imports, &ImportActions::statusChanged, &window, &MainWindow::setStatus);
    connect(m_imports, &ImportActions::busyChanged, &window, &MainWindow::setBusy);
    connect(m_imports, &ImportActions::archiveChanged, &window, &MainWindow::reloadRows);
    connect(window.detailView(), &PoemDetailView::textImportRequested, m_imports,
            [this, &window] { m_imports->importTextInto(window.detailView()->poem()); });
}
