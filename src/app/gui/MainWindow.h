#pragma once

#include "archive/LibraryBrowser.h"

#include <QMainWindow>
#include <QPointer>
#include <QSet>
#include <QTimer>

#include <functional>

class ArchiveContext;
class LibrarySidebar;
class PoemDetailView;
class PoemVersionsPanel;
class PoemListModel;
class PoemListPane;
class QAction;
class QActionGroup;
class QMenu;
class QSplitter;
class QToolBar;
class SettingsWindow;
class UpdateManager;

// The library window: sidebar, list and detail columns over the archive context, the
// one status line, the menus, writer mode and the start-up tasks.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(ArchiveContext &context, QWidget *parent = nullptr);
    ~MainWindow() override;

    // --- Integration points for the archive-wide operations ---
    ArchiveContext &context() { return m_context; }
    LibraryBrowser &library() { return m_browser; }
    // The status line (scanStatus): a new message replaces the previous one.
    void setStatus(const QString &text);
    QString statusText() const { return m_statusText; }
    // The file the last operation wrote; shows the button that reveals it. Empty hides it.
    void setLastWrittenFile(const QString &path);
    QString lastWrittenFile() const;
    // The busy indicator of the status panel, while a long operation runs.
    void setBusy(bool busy);
    bool isBusy() const;
    // One line in the sidebar's action section; the section shows once it has one.
    void addSidebarAction(QAction *action);
    // An archive-wide operation in the file menu, above the trash and quit entries.
    void addFileMenuAction(QAction *action);
    // One entry in the "Archiv" menu, which appears with its first entry.
    void addArchiveMenuAction(QAction *action);
    // Selects the poem in the list, stepping out of a search, scope or category that
    // hides it; a poem in the trash or unknown is ignored.
    void showPoemInLibrary(const QString &objectID);
    // Rebuilds counts, category filters and rows, keeping the selection.
    void reloadRows();
    // Start-up checks of the last import's state files: each answers whether its file
    // exists and decodes. Unset, or answering false, leaves the command off, silently.
    void setPendingImportUndoCheck(std::function<bool()> check) { m_undoCheck = std::move(check); }
    void setImportReportCheck(std::function<bool()> check) { m_reportCheck = std::move(check); }
    bool hasPendingTextImportUndo() const { return m_hasPendingTextImportUndo; }
    bool hasImportReport() const { return m_hasImportReport; }
    void setUpdateManager(UpdateManager *manager);
    QMenu *fileMenu() const { return m_fileMenu; }
    QMenu *editMenu() const { return m_editMenu; }
    QMenu *viewMenu() const { return m_viewMenu; }
    QMenu *helpMenu() const { return m_helpMenu; }
    QToolBar *toolBar() const { return m_toolBar; }

    // --- The window's own state ---
    PoemPtr selectedPoem() const;
    void selectPoem(const PoemPtr &poem);
    void newPoem();
    void duplicatePoem(PoemPtr poem);
    void moveToTrash(PoemPtr poem);
    void openTrash();
    void setWriterMode(bool active);
    bool isWriterModeActive() const { return m_writerMode; }
    // "Einstellungen…": one window, opened on first use and brought to the front after.
    void showSettings();
    SettingsWindow *settingsWindow() const;
    bool hasStarted() const { return m_started; }

    LibrarySidebar *sidebar() const { return m_sidebar; }
    PoemListPane *listPane() const { return m_listPane; }
    PoemDetailView *detail() const { return m_detail; }
    PoemDetailView *detailView() const { return m_detail; }

Q_SIGNALS:
    // Start-up, after the trash count: the daily automatic backup runs here if due.
    void dailyBackupDue();
    void pendingImportUndoChecked(bool available);
    void importReportChecked(bool available);
    void startUpFinished();
    // After start-up, once a search no longer waits for the texts to be prepared.
    void searchPrepared();
    void statusChanged(const QString &text);
    void selectedPoemChanged(const PoemPtr &poem);

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void buildColumns();
    QWidget *withReadOnlyBanner(QWidget *content);
    void buildActions();
    void buildMenus();
    void addExportMenu();
    void buildToolBar();
    void runStartSequence();
    void showRows();
    void showListState();
    void showSelectedPoem(const PoemPtr &poem);
    void showAllPoemsIfHidden(const PoemPtr &poem);
    void noteChangedPoems(const QSet<qint64> &poemKeys);
    void takeOverContextChanges();
    void takeOverStoreChanges();
    void prepareSearchSlice();
    void updateActionStates();
    PoemPtr poemForObjectID(const QString &objectID) const;
    void showAbout();
    void showPrivacyNotice();
    void showFeedback();

    ArchiveContext &m_context;
    LibraryBrowser m_browser;
    PoemListModel *m_model = nullptr;
    QSplitter *m_splitter = nullptr;
    LibrarySidebar *m_sidebar = nullptr;
    PoemListPane *m_listPane = nullptr;
    PoemDetailView *m_detail = nullptr;
    PoemVersionsPanel *m_versions = nullptr;
    QToolBar *m_toolBar = nullptr;
    QMenu *m_fileMenu = nullptr;
    QMenu *m_editMenu = nullptr;
    QMenu *m_viewMenu = nullptr;
    QMenu *m_helpMenu = nullptr;
    QAction *m_fileOperationsEnd = nullptr;
    QMenu *m_archiveMenu = nullptr;

    QAction *m_newPoemAction = nullptr;
    QAction *m_duplicateAction = nullptr;
    QAction *m_trashAction = nullptr;
    QAction *m_openTrashAction = nullptr;
    QAction *m_writerModeAction = nullptr;
    QAction *m_findAction = nullptr;
    QAction *m_checkUpdatesAction = nullptr;
    QAction *m_settingsAction = nullptr;
    QPointer<SettingsWindow> m_settings;
    QActionGroup *m_scopeGroup = nullptr;
    QActionGroup *m_sortGroup = nullptr;

    QTimer m_contextChangeTimer;
    QSet<qint64> m_pendingChanges;
    QTimer m_storeWatchTimer;
    QTimer m_searchPreparation;
    static constexpr int searchSliceMs = 4;
    static constexpr qsizetype searchSlicePoems = 64;
    QList<int> m_columnSizes;
    QString m_statusText;
    UpdateManager *m_updateManager = nullptr;
    std::function<bool()> m_undoCheck;
    std::function<bool()> m_reportCheck;
    bool m_hasPendingTextImportUndo = false;
    bool m_hasImportReport = false;
    bool m_writerMode = false;
    bool m_started = false;
};
