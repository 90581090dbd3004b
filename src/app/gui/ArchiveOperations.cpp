#include "app/gui/ArchiveOperations.h"

#include "analysis/gui/AnalysisActions.h"
#include "app/gui/FileManagerReveal.h"
#include "app/gui/MainWindow.h"
#include "app/gui/PoemDetailView.h"
#include "app/gui/ThemeIcon.h"
#include "backup/gui/BackupActions.h"
#include "backup/gui/SafetyBackupWindow.h"
#include "export/gui/ReaderPackageAction.h"
#include "import/ImportStateFiles.h"
#include "import/gui/CSVImportActions.h"
#include "import/gui/FolderScanController.h"
#include "import/gui/ImportActions.h"
#include "import/gui/ImportReviewWindow.h"

#include <QAction>
#include <QMenu>

ArchiveOperations::ArchiveOperations(MainWindow &window)
    : QObject(&window), m_backups(new BackupActions(window.context(), &window)),
      m_folderScans(new FolderScanController(window.context(), &window)),
      m_imports(new ImportActions(window.context(), *m_folderScans, &window)),
      m_readerPackage(new ReaderPackageAction(window.context(), &window)),
      m_analysis(new AnalysisActions(window.context(), &window))
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

    m_safetyBackups =
        new QAction(ThemeIcon::named(QStringLiteral("document-open-recent")), tr("Sicherheitsbackups…"), this);
    m_safetyBackups->setObjectName(QStringLiteral("safetyBackupsAction"));
    m_safetyBackups->setStatusTip(tr("Die automatischen Sicherungen ansehen, wiederherstellen oder löschen"));
    connect(m_safetyBackups, &QAction::triggered, this, [this, &window] { showSafetyBackups(window); });
    window.addSidebarAction(m_safetyBackups);
    addBeforeQuit(window.fileMenu(), m_safetyBackups);

    connect(m_backups, &BackupActions::statusChanged, &window, &MainWindow::setStatus);
    connect(m_backups, &BackupActions::fileWritten, &window, &MainWindow::setLastWrittenFile);
    connect(m_backups, &BackupActions::busyChanged, &window, &MainWindow::setBusy);
    connect(&window, &MainWindow::dailyBackupDue, m_backups, &BackupActions::runDailyBackupIfDue);

    connect(m_folderScans, &FolderScanController::statusChanged, &window, &MainWindow::setStatus);
    connect(m_folderScans, &FolderScanController::busyChanged, &window, &MainWindow::setBusy);

    auto *csvImport = new CSVImportActions(window.context(), &window);
    window.addSidebarAction(csvImport->importAction());
    window.addFileMenuAction(csvImport->importAction());
    connect(csvImport, &CSVImportActions::statusChanged, &window, &MainWindow::setStatus);
    connect(csvImport, &CSVImportActions::busyChanged, &window, &MainWindow::setBusy);
    window.setPendingImportUndoCheck(&ImportStateFiles::hasPendingUndo);
    window.setImportReportCheck([] { return ImportStateFiles::loadReport().has_value(); });
    connect(&window, &MainWindow::pendingImportUndoChecked, m_imports, &ImportActions::setUndoAvailable);
    connect(&window, &MainWindow::importReportChecked, m_imports, &ImportActions::setReportAvailable);
    connect(m_imports, &ImportActions::statusChanged, &window, &MainWindow::setStatus);
    connect(m_imports, &ImportActions::busyChanged, &window, &MainWindow::setBusy);
    connect(window.detailView(), &PoemDetailView::textImportRequested, m_imports,
            [this, &window] { m_imports->importTextInto(window.detailView()->poem()); });
    for (QAction *action :
         {m_readerPackage->action(), m_analysis->duplicateCheckAction(), m_analysis->statisticsAction()})
        window.addSidebarAction(action);
    connect(m_readerPackage, &ReaderPackageAction::statusChanged, &window, &MainWindow::setStatus);
    connect(m_readerPackage, &ReaderPackageAction::fileWritten, &window, &MainWindow::setLastWrittenFile);
    connect(m_analysis, &AnalysisActions::statusChanged, &window, &MainWindow::setStatus);
    connect(m_analysis, &AnalysisActions::showPoemRequested, &window, &MainWindow::showPoemInLibrary);
}

void ArchiveOperations::showSafetyBackups(MainWindow &window)
{
    SafetyBackupWindow dialog(SafetyBackupFolder::standard(), &window);
    connect(&dialog, &SafetyBackupWindow::revealRequested, &dialog, [&dialog, &window](const QString &path) {
        FileManagerReveal::reveal(path, &dialog, [&window](const QString &failure) { window.setStatus(failure); });
    });
    connect(&dialog, &SafetyBackupWindow::statusChanged, &window, &MainWindow::setStatus);
    connect(&dialog, &SafetyBackupWindow::restoreRequested, &dialog, [this, &dialog](const QString &path) {
        m_backups->restoreFrom(path);
        // The restore wrote a "pre-restore" copy of its own.
        dialog.reload();
    });
    dialog.exec();
}

void ArchiveOperations::addBeforeQuit(QMenu *menu, QAction *action)
{
    const QList<QAction *> actions = menu->actions();
    for (qsizetype i = 0; i < actions.size(); ++i) {
        if (actions.at(i)->menuRole() != QAction::QuitRole)
            continue;
        // Into the group above the separator that sets "Beenden" apart.
        const qsizetype before = i > 0 && actions.at(i - 1)->isSeparator() ? i - 1 : i;
        menu->insertAction(actions.at(before), action);
        return;
    }
    menu->addAction(action);
}
