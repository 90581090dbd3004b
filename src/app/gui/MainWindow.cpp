#include "app/gui/MainWindow.h"

#include "app/UpdateManager.h"
#include "app/gui/AboutDialog.h"
#include "app/gui/FeedbackDialog.h"
#include "app/gui/FileManagerReveal.h"
#include "app/gui/LibrarySidebar.h"
#include "app/gui/PoemDetailView.h"
#include "app/gui/PoemListModel.h"
#include "app/gui/PoemListPane.h"
#include "app/gui/PoemVersionsPanel.h"
#include "app/gui/PrivacyNoticeDialog.h"
#include "app/gui/SettingsWindow.h"
#include "app/gui/StatusPanel.h"
#include "app/gui/ThemeIcon.h"
#include "app/gui/TrashDialog.h"
#include "app/gui/UpdatePresenter.h"
#include "app/gui/WindowStyle.h"
#include "archive/ArchiveContext.h"
#include "archive/PoemStore.h"
#include "editor/gui/PoemEditorActions.h"
#include "editor/gui/PoemEditorPane.h"
#include "editor/gui/RichPoemTextView.h"
#include "export/gui/PoemExportActions.h"

#include <algorithm>
#include <malloc.h>

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QShortcut>
#include <QSplitter>
#include <QToolBar>
#include <QVBoxLayout>
#include <QtDebug>

namespace {

// Edit commands act on whichever text field has the focus; other widgets ignore them.
void forwardToFocus(const char *slot)
{
    QWidget *focus = QApplication::focusWidget();
    if (!focus)
        return;
    const QByteArray signature = QByteArray(slot) + "()";
    if (focus->metaObject()->indexOfMethod(signature.constData()) >= 0)
        QMetaObject::invokeMethod(focus, slot);
}

} // namespace

MainWindow::MainWindow(ArchiveContext &context, QWidget *parent)
    : QMainWindow(parent), m_context(context), m_browser(context)
{
    setObjectName(QStringLiteral("mainWindow"));
    setWindowTitle(QStringLiteral("OdeLeaf"));
    setStyleSheet(WindowStyle::styleSheet());
    resize(1280, 800);
    // Small enough for a netbook screen with its title bar; the columns keep their own minimums.
    setMinimumSize(860, 520);

    m_browser.searchMode = storedSearchMode();
    buildColumns();
    buildActions();
    buildMenus();
    buildToolBar();

    // Every change of poems reaches the list through the context's one notice. A few
    // poems (a keystroke) are placed at once; a long operation saving batch after batch
    // (an import, a restore) is taken over once the event loop is back.
    m_contextChangeTimer.setSingleShot(true);
    m_contextChangeTimer.setInterval(0);
    connect(&m_contextChangeTimer, &QTimer::timeout, this, &MainWindow::takeOverContextChanges);
    connect(&m_context, &ArchiveContext::contextDidChange, this, &MainWindow::noteChangedPoems);

    m_searchPreparation.setInterval(0);
    connect(&m_searchPreparation, &QTimer::timeout, this, &MainWindow::prepareSearchSlice);

    // A script or a second window may write the archive meanwhile; what it stored shows up
    // within seconds, and at once when this window comes to the front.
    m_storeWatchTimer.setInterval(2000);
    connect(&m_storeWatchTimer, &QTimer::timeout, this, &MainWindow::takeOverStoreChanges);
    m_storeWatchTimer.start();
}

MainWindow::~MainWindow() = default;

void MainWindow::buildColumns()
{
    m_model = new PoemListModel(m_browser, this);
    m_splitter = new QSplitter(Qt::Horizontal, this);
    m_splitter->setObjectName(QStringLiteral("columns"));
    m_splitter->setChildrenCollapsible(false);
    m_splitter->setHandleWidth(1);

    m_sidebar = new LibrarySidebar(m_splitter);
    m_sidebar->setMinimumWidth(200);
    m_listPane = new PoemListPane(m_model, m_splitter);
    m_listPane->setMinimumWidth(240);
    m_detail = new PoemDetailView(m_context, m_splitter);
    m_detail->setMinimumWidth(380);
    m_splitter->addWidget(m_sidebar);
    m_splitter->addWidget(m_listPane);
    m_splitter->addWidget(m_detail);
    m_versions = new PoemVersionsPanel(m_context, m_splitter);
    m_versions->setMinimumWidth(260);
    m_versions->hide();
    m_splitter->addWidget(m_versions);
    m_splitter->setStretchFactor(0, 0);
    m_splitter->setStretchFactor(1, 0);
    m_splitter->setStretchFactor(2, 1);
    m_splitter->setSizes({240, 370, 670});
    setCentralWidget(withReadOnlyBanner(m_splitter));

    m_listPane->setSearchMode(m_browser.searchMode);
    m_listPane->setSortMode(m_browser.sortMode);

    connect(m_sidebar, &LibrarySidebar::scopeSelected, this, [this](SidebarScope scope) {
        m_browser.sidebarScope = scope;
        if (m_scopeGroup)
            m_scopeGroup->actions().at(int(scope))->setChecked(true);
        reloadRows();
    });
    connect(m_sidebar, &LibrarySidebar::categorySelected, this, [this](const std::optional<QString> &category) {
        m_browser.selectedCategory = category;
        reloadRows();
    });
    connect(m_sidebar, &LibrarySidebar::trashRequested, this, &MainWindow::openTrash);
    connect(m_sidebar->statusPanel(), &StatusPanel::revealRequested, this, [this](const QString &path) {
        FileManagerReveal::reveal(path, this, [this](const QString &failure) { setStatus(failure); });
    });

    connect(m_listPane, &PoemListPane::searchTextChanged, this, [this](const QString &text) {
        m_browser.searchText = text;
        reloadRows();
    });
    connect(m_listPane, &PoemListPane::searchModeChanged, this, [this](SearchMode mode) {
        m_browser.searchMode = mode;
        if (auto stored = storeSearchMode(mode); !stored)
            setStatus(stored.errorMessage());
        reloadRows();
    });
    connect(m_listPane, &PoemListPane::sortModeChanged, this, [this](PoemSortMode mode) {
        m_browser.sortMode = mode;
        if (m_sortGroup)
            m_sortGroup->actions().at(int(mode))->setChecked(true);
        reloadRows();
    });
    connect(m_listPane, &PoemListPane::rowSelected, this,
            [this](const QString &objectID) { showSelectedPoem(poemForObjectID(objectID)); });
    connect(m_listPane, &PoemListPane::duplicateRequested, this,
            [this](const QString &objectID) { duplicatePoem(poemForObjectID(objectID)); });
    connect(m_listPane, &PoemListPane::trashRequested, this,
            [this](const QString &objectID) { moveToTrash(poemForObjectID(objectID)); });
    connect(m_listPane, &PoemListPane::openRequested, this, [this] { m_detail->focusBody(); });

    connect(m_detail, &PoemDetailView::duplicateRequested, this, [this] { duplicatePoem(m_detail->poem()); });
    connect(m_detail, &PoemDetailView::trashRequested, this, [this] { moveToTrash(m_detail->poem()); });
    connect(m_detail, &PoemDetailView::leaveWriterModeRequested, this, [this] { setWriterMode(false); });
    connect(m_detail, &PoemDetailView::writerModeRequested, this, &MainWindow::setWriterMode);
    connect(m_detail, &PoemDetailView::statusMessage, this, &MainWindow::setStatus);
    connect(m_detail, &PoemDetailView::fileWritten, this, &MainWindow::setLastWrittenFile);
    connect(m_detail, &PoemDetailView::versionsRequested, m_versions->showAction(), &QAction::trigger);
    connect(m_versions, &PoemVersionsPanel::statusMessage, this, &MainWindow::setStatus);
    connect(m_versions, &PoemVersionsPanel::poemCreated, this, &MainWindow::selectPoem);
    connect(m_versions, &PoemVersionsPanel::aboutToChangePoem, m_detail, &PoemDetailView::commitPendingEdits);
    connect(m_versions, &PoemVersionsPanel::shownChanged, this, [this](bool shown) {
        // A narrow window makes room for the versions beside the poem by setting the list aside.
        const int needed = m_sidebar->minimumWidth() + m_listPane->minimumWidth() + m_detail->minimumWidth() +
                           m_versions->minimumWidth();
        m_listPane->setVisible(!shown || m_splitter->width() >= needed);
        // A wide window gives the comparison room to read, taken from the poem's column.
        QList<int> sizes = m_splitter->sizes();
        const int wanted = std::min(440, m_splitter->width() / 4);
        const int extra = wanted - sizes.last();
        if (shown && extra > 0 && sizes.at(2) - extra >= m_detail->minimumWidth()) {
            sizes[2] -= extra;
            sizes.last() = wanted;
            m_splitter->setSizes(sizes);
        }
    });
}

QWidget *MainWindow::withReadOnlyBanner(QWidget *content)
{
    if (!m_context.store().isReadOnly())
        return content;
    auto *page = new QWidget(this);
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto *banner = new QLabel(PoemStore::readOnlyText(), page);
    banner->setObjectName(QStringLiteral("readOnlyBanner"));
    banner->setAlignment(Qt::AlignCenter);
    banner->setWordWrap(true);
    layout->addWidget(banner);
    layout->addWidget(content, 1);
    return page;
}

void MainWindow::buildActions()
{
    m_newPoemAction = new QAction(ThemeIcon::named(QStringLiteral("list-add")), tr("Neues Gedicht"), this);
    m_newPoemAction->setObjectName(QStringLiteral("newPoemAction"));
    m_newPoemAction->setShortcut(QKeySequence::New);
    connect(m_newPoemAction, &QAction::triggered, this, &MainWindow::newPoem);

    m_duplicateAction = new QAction(ThemeIcon::named(QStringLiteral("edit-copy")), tr("Duplizieren"), this);
    m_duplicateAction->setObjectName(QStringLiteral("duplicateAction"));
    m_duplicateAction->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_D));
    connect(m_duplicateAction, &QAction::triggered, this, [this] { duplicatePoem(selectedPoem()); });

    m_trashAction = new QAction(ThemeIcon::named(QStringLiteral("user-trash")), tr("In den Papierkorb"), this);
    m_trashAction->setObjectName(QStringLiteral("trashAction"));
    // Only where the list has focus: in a text field Delete and Ctrl+Backspace edit text.
    m_trashAction->setShortcut(QKeySequence::Delete);
    m_trashAction->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    m_listPane->listView()->addAction(m_trashAction);
    connect(m_trashAction, &QAction::triggered, this, [this] { moveToTrash(selectedPoem()); });

    m_openTrashAction = new QAction(tr("Papierkorb öffnen…"), this);
    m_openTrashAction->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Backspace));
    connect(m_openTrashAction, &QAction::triggered, this, &MainWindow::openTrash);

    m_writerModeAction = new QAction(ThemeIcon::named(QStringLiteral("view-fullscreen")), tr("Schreibmodus"), this);
    m_writerModeAction->setObjectName(QStringLiteral("writerModeAction"));
    m_writerModeAction->setCheckable(true);
    m_writerModeAction->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F));
    connect(m_writerModeAction, &QAction::toggled, this, &MainWindow::setWriterMode);

    m_findAction = new QAction(tr("Suchen"), this);
    m_findAction->setShortcut(QKeySequence::Find);
    connect(m_findAction, &QAction::triggered, this, [this] {
        // In the poem's text, Ctrl+F searches the poem; everywhere else, the archive.
        PoemEditorPane *editor = m_detail->editorPane();
        if (editor->isAncestorOf(QApplication::focusWidget()) && editor->poem()) {
            editor->actions()->find->trigger();
            return;
        }
        setWriterMode(false);
        m_listPane->focusSearch();
    });

    auto *leaveWriterMode = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    connect(leaveWriterMode, &QShortcut::activated, this, [this] {
        if (m_writerMode)
            setWriterMode(false);
    });
}

void MainWindow::buildMenus()
{
    m_fileMenu = menuBar()->addMenu(tr("&Datei"));
    m_fileMenu->addAction(m_newPoemAction);
    m_fileMenu->addAction(m_duplicateAction);
    m_fileMenu->addAction(m_trashAction);
    m_fileMenu->addSeparator();
    m_fileOperationsEnd = m_fileMenu->addSeparator();
    m_fileMenu->addAction(m_openTrashAction);
    m_fileMenu->addSeparator();
    addExportMenu();
    m_fileMenu->addSeparator();
    QAction *quit = m_fileMenu->addAction(tr("Beenden"), this, &QWidget::close);
    quit->setShortcut(QKeySequence::Quit);
    quit->setMenuRole(QAction::QuitRole);

    m_editMenu = menuBar()->addMenu(tr("&Bearbeiten"));
    const struct {
        const char *text;
        QKeySequence::StandardKey key;
        const char *slot;
    } editCommands[] = {
        {QT_TR_NOOP("Rückgängig"), QKeySequence::Undo, "undo"},
        {QT_TR_NOOP("Wiederholen"), QKeySequence::Redo, "redo"},
        {nullptr, QKeySequence::UnknownKey, nullptr},
        {QT_TR_NOOP("Ausschneiden"), QKeySequence::Cut, "cut"},
        {QT_TR_NOOP("Kopieren"), QKeySequence::Copy, "copy"},
        {QT_TR_NOOP("Einfügen"), QKeySequence::Paste, "paste"},
        {QT_TR_NOOP("Alles auswählen"), QKeySequence::SelectAll, "selectAll"},
    };
    for (const auto &command : editCommands) {
        if (!command.text) {
            m_editMenu->addSeparator();
            continue;
        }
        QAction *action = m_editMenu->addAction(tr(command.text));
        action->setShortcut(command.key);
        const char *slot = command.slot;
        connect(action, &QAction::triggered, this, [slot] { forwardToFocus(slot); });
    }
    m_editMenu->addSeparator();
    m_editMenu->addAction(m_versions->showAction());
    m_editMenu->addAction(m_versions->saveAction());
    m_editMenu->addSeparator();
    m_editMenu->addAction(m_findAction);
    m_editMenu->addSeparator();
    m_settingsAction = m_editMenu->addAction(tr("Einstellungen…"), this, &MainWindow::showSettings);
    m_settingsAction->setObjectName(QStringLiteral("settingsAction"));
    m_settingsAction->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Comma));
    m_settingsAction->setMenuRole(QAction::PreferencesRole);

    m_viewMenu = menuBar()->addMenu(tr("&Ansicht"));
    m_scopeGroup = new QActionGroup(this);
    for (const SidebarScope scope : allSidebarScopes) {
        QAction *action = m_viewMenu->addAction(displayTitle(scope));
        action->setCheckable(true);
        action->setChecked(scope == m_browser.sidebarScope);
        action->setShortcut(QKeySequence(Qt::CTRL | Qt::Key(Qt::Key_1 + int(scope))));
        m_scopeGroup->addAction(action);
        connect(action, &QAction::triggered, this, [this, scope] { m_sidebar->selectScope(scope); });
    }
    m_viewMenu->addSeparator();
    QMenu *sortMenu = m_viewMenu->addMenu(tr("Sortieren nach"));
    m_sortGroup = new QActionGroup(this);
    for (const PoemSortMode mode : allPoemSortModes) {
        QAction *action = sortMenu->addAction(displayTitle(mode));
        action->setCheckable(true);
        action->setChecked(mode == m_browser.sortMode);
        m_sortGroup->addAction(action);
        connect(action, &QAction::triggered, this, [this, mode] {
            m_listPane->setSortMode(mode);
            m_browser.sortMode = mode;
            reloadRows();
        });
    }
    m_viewMenu->addSeparator();
    m_viewMenu->addAction(m_writerModeAction);
    const PoemEditorActions *editorActions = m_detail->editorPane()->actions();
    m_viewMenu->addAction(editorActions->toggleFocusMode);
    m_viewMenu->addAction(editorActions->toggleToolbar);
    m_viewMenu->addAction(editorActions->toggleNotes);
    m_viewMenu->addAction(editorActions->toggleVerse);
    menuBar()->addMenu(m_detail->editorPane()->formattingMenu());
    menuBar()->addMenu(editorActions->insertMenu);

    m_helpMenu = menuBar()->addMenu(tr("&Hilfe"));
    m_checkUpdatesAction = m_helpMenu->addAction(tr("Nach Updates suchen…"));
    m_checkUpdatesAction->setEnabled(false);
    m_helpMenu->addSeparator();
    m_helpMenu->addAction(tr("Datenschutzhinweise"), this, &MainWindow::showPrivacyNotice);
    m_helpMenu->addAction(tr("Feedback senden…"), this, &MainWindow::showFeedback);
    m_helpMenu->addSeparator();
    QAction *about = m_helpMenu->addAction(tr("Über OdeLeaf"), this, &MainWindow::showAbout);
    about->setMenuRole(QAction::AboutRole);
}

void MainWindow::buildToolBar()
{
    m_toolBar = addToolBar(tr("Werkzeugleiste"));
    m_toolBar->setObjectName(QStringLiteral("mainToolBar"));
    m_toolBar->setMovable(false);
    m_toolBar->setFloatable(false);
    m_toolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_toolBar->setIconSize(QSize(18, 18));
    m_toolBar->toggleViewAction()->setEnabled(false);
    m_toolBar->addAction(m_newPoemAction);
    m_toolBar->addSeparator();
    m_toolBar->addAction(m_duplicateAction);
    m_toolBar->addAction(m_trashAction);
    auto *spacer = new QWidget(m_toolBar);
    spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    m_toolBar->addWidget(spacer);
    m_toolBar->addAction(m_writerModeAction);
    setContextMenuPolicy(Qt::NoContextMenu);
}

void MainWindow::setUpdateManager(UpdateManager *manager)
{
    m_updateManager = manager;
    if (!manager)
        return;
    new UpdatePresenter(*manager, this);
    if (!manager->hasFeed()) {
        m_checkUpdatesAction->setToolTip(tr("Updates kommen über die Paketverwaltung deines Systems."));
        m_helpMenu->setToolTipsVisible(true);
    }
    m_checkUpdatesAction->setEnabled(manager->canCheckForUpdates());
    connect(manager, &UpdateManager::canCheckForUpdatesChanged, m_checkUpdatesAction, &QAction::setEnabled);
    connect(manager, &UpdateManager::preferenceNotStored, this, &MainWindow::setStatus);
    connect(m_checkUpdatesAction, &QAction::triggered, manager, &UpdateManager::checkForUpdates);
}

void MainWindow::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    if (m_started)
        return;
    m_started = true;
    // After the first paint, so the window is on screen before the start-up work.
    QTimer::singleShot(0, this, &MainWindow::runStartSequence);
}

void MainWindow::runStartSequence()
{
    setWriterMode(false);
    reloadRows();
    m_hasPendingTextImportUndo = m_undoCheck && m_undoCheck();
    Q_EMIT pendingImportUndoChecked(m_hasPendingTextImportUndo);
    m_hasImportReport = m_reportCheck && m_reportCheck();
    Q_EMIT importReportChecked(m_hasImportReport);
    m_browser.refreshTrashCount();
    m_sidebar->showCounts(m_browser.counts());
    Q_EMIT dailyBackupDue();
    // Reading the archive leaves its buffers freed in the heap; the system gets them back.
    malloc_trim(0);
    Q_EMIT startUpFinished();
    m_searchPreparation.start();
}

// A few milliseconds at a time between input events, so typing never waits for it.
void MainWindow::prepareSearchSlice()
{
    QElapsedTimer slice;
    slice.start();
    while (slice.elapsed() < searchSliceMs) {
        if (m_browser.prepareSearch(searchSlicePoems)) {
            m_searchPreparation.stop();
            Q_EMIT searchPrepared();
            return;
        }
    }
}

void MainWindow::reloadRows()
{
    m_contextChangeTimer.stop();
    m_pendingChanges.clear();
    m_browser.reloadRows();
    showRows();
}

void MainWindow::showRows()
{
    m_model->rowsReloaded();
    showListState();
}

void MainWindow::showListState()
{
    m_sidebar->showCounts(m_browser.counts());
    m_sidebar->showCategories(m_browser.categoryFilters(), m_browser.counts().activePoemCount,
                              m_browser.selectedCategory);
    m_listPane->showSummary(m_browser.showsResultSummary(), m_browser.resultSummaryText());
    m_listPane->showMissingTextHint(m_browser.sidebarScope == SidebarScope::missingText);
    const qsizetype row =
        m_browser.selectedPoemObjectID ? m_browser.indexOfObjectID(*m_browser.selectedPoemObjectID) : -1;
    m_listPane->selectRow(int(row));
    m_listPane->refreshEmptyState(m_browser.counts().activePoemCount == 0);
    m_detail->setSearchHighlight(m_browser.searchText.trimmed());
    updateActionStates();
}

void MainWindow::noteChangedPoems(const QSet<qint64> &poemKeys)
{
    // The detail pane re-reads its poem by itself; one gone for good or into the trash
    // is no longer shown.
    const PoemPtr shown = m_detail->poem();
    if (shown && poemKeys.contains(shown->storeKey()) && (shown->context() != &m_context || shown->isInTrash()))
        showSelectedPoem(nullptr);
    m_pendingChanges.unite(poemKeys);
    if (m_pendingChanges.size() > LibraryBrowser::incrementalLimit) {
        m_contextChangeTimer.start();
        return;
    }
    takeOverContextChanges();
}

void MainWindow::takeOverContextChanges()
{
    m_contextChangeTimer.stop();
    const QSet<qint64> keys = std::exchange(m_pendingChanges, {});
    {
        // A row that moves or goes must not select another poem under the poet's hands.
        const QSignalBlocker quiet(m_listPane);
        if (!m_browser.applyChanges(keys, *m_model))
            return;
    }
    showListState();
}

void MainWindow::takeOverStoreChanges()
{
    // Reading failed this time (a disk hiccup); the next tick tries again.
    if (const auto refreshed = m_context.refreshFromStore(); !refreshed)
        qWarning().noquote() << refreshed.error().forLog();
}

void MainWindow::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        takeOverStoreChanges();
}

PoemPtr MainWindow::poemForObjectID(const QString &objectID) const
{
    return objectID.isEmpty() ? nullptr : m_context.poemWithObjectID(objectID);
}

PoemPtr MainWindow::selectedPoem() const
{
    return m_browser.selectedPoemObjectID ? poemForObjectID(*m_browser.selectedPoemObjectID) : nullptr;
}

void MainWindow::selectPoem(const PoemPtr &poem)
{
    showSelectedPoem(poem);
    const qsizetype row = poem ? m_browser.indexOfObjectID(poem->objectID()) : -1;
    m_listPane->selectRow(int(row));
}

void MainWindow::showSelectedPoem(const PoemPtr &poem)
{
    if (poem)
        m_browser.selectedPoemObjectID = poem->objectID();
    else
        m_browser.selectedPoemObjectID.reset();
    if (m_detail->poem() != poem) {
        m_detail->commitPendingEdits();
        m_detail->showPoem(poem);
        m_versions->setPoem(poem);
    }
    updateActionStates();
    Q_EMIT selectedPoemChanged(poem);
}

void MainWindow::updateActionStates()
{
    const bool hasPoem = m_detail->poem() != nullptr;
    const bool writable = !m_context.store().isReadOnly();
    m_newPoemAction->setEnabled(writable);
    m_duplicateAction->setEnabled(hasPoem && writable);
    m_trashAction->setEnabled(hasPoem && writable);
    // An export only reads the poem, so it stays on in a read-only archive.
    m_detail->exportActions()->setEnabled(hasPoem);
}

void MainWindow::newPoem()
{
    if (m_context.store().isReadOnly())
        return;
    m_detail->commitPendingEdits();
    const auto added = m_browser.addPoem(QDateTime::currentDateTimeUtc());
    showAllPoemsIfHidden(added.poem);
    selectPoem(added.poem);
    setWriterMode(true);
    m_detail->focusTitle();
}

void MainWindow::showAllPoemsIfHidden(const PoemPtr &poem)
{
    // A poem the search, scope or category hides comes into view with the whole archive: a new
    // poem has no title, text or category yet, so most filters would hide it at once.
    if (!poem || m_browser.indexOfObjectID(poem->objectID()) >= 0)
        return;
    m_browser.selectedCategory.reset();
    m_browser.searchText.clear();
    {
        const QSignalBlocker blocker(m_listPane->searchField());
        m_listPane->searchField()->clear();
    }
    m_browser.sidebarScope = SidebarScope::archive;
    m_scopeGroup->actions().at(int(SidebarScope::archive))->setChecked(true);
    {
        const QSignalBlocker blocker(m_sidebar);
        m_sidebar->selectScope(SidebarScope::archive);
    }
    reloadRows();
}

void MainWindow::duplicatePoem(PoemPtr poem)
{
    // The list's context menu asks too; a change that cannot be saved must not show.
    if (!poem || m_context.store().isReadOnly())
        return;
    m_detail->commitPendingEdits();
    const auto copy = m_browser.duplicatePoem(poem, QDateTime::currentDateTimeUtc());
    selectPoem(copy.poem);
    setStatus(copy.statusText);
}

// By value: the caller may hand in the detail pane's own pointer, which the change
// notice of the save resets.
void MainWindow::moveToTrash(PoemPtr poem)
{
    if (!poem || m_context.store().isReadOnly())
        return;
    m_detail->commitPendingEdits();
    const qsizetype row = m_browser.indexOfObjectID(poem->objectID());
    const bool wasShown = m_detail->poem() == poem;
    const auto trashed = m_browser.moveToTrash(poem, QDateTime::currentDateTimeUtc());
    if (wasShown) {
        // The next poem takes the place of the trashed one, so the keyboard can go on.
        const qsizetype next = qMin(row, m_browser.rowCount() - 1);
        selectPoem(row >= 0 && next >= 0 ? m_browser.poemAt(next) : nullptr);
    }
    setStatus(trashed.statusText);
}

void MainWindow::openTrash()
{
    setWriterMode(false);
    TrashDialog dialog(
        m_context, [this](const QString &status) { setStatus(status); }, this);
    dialog.exec();
}

void MainWindow::setWriterMode(bool active)
{
    if (active == m_writerMode) {
        m_writerModeAction->setChecked(active);
        return;
    }
    m_writerMode = active;
    if (active)
        m_columnSizes = m_splitter->sizes();
    m_sidebar->setVisible(!active);
    m_listPane->setVisible(!active);
    m_toolBar->setVisible(!active);
    m_toolBar->setToolButtonStyle(active ? Qt::ToolButtonIconOnly : Qt::ToolButtonTextBesideIcon);
    m_detail->setWriterMode(active);
    if (!active && !m_columnSizes.isEmpty())
        m_splitter->setSizes(m_columnSizes);
    {
        const QSignalBlocker blocker(m_writerModeAction);
        m_writerModeAction->setChecked(active);
    }
    // Both ways the poet goes on writing where they were, never in the selected title.
    m_detail->focusBody();
}

void MainWindow::setStatus(const QString &text)
{
    m_statusText = text;
    m_sidebar->statusPanel()->setStatus(text);
    Q_EMIT statusChanged(text);
}

void MainWindow::setLastWrittenFile(const QString &path)
{
    m_sidebar->statusPanel()->setLastWrittenFile(path);
}

QString MainWindow::lastWrittenFile() const
{
    return m_sidebar->statusPanel()->lastWrittenFile();
}

void MainWindow::setBusy(bool busy)
{
    m_sidebar->statusPanel()->setBusy(busy);
}

bool MainWindow::isBusy() const
{
    return m_sidebar->statusPanel()->isBusy();
}

void MainWindow::addSidebarAction(QAction *action)
{
    m_sidebar->addAction(action);
    // The menu reaches every sidebar action by keyboard, also in writer mode, where the
    // sidebar is hidden.
    addArchiveMenuAction(action);
}

void MainWindow::showSettings()
{
    if (!m_settings) {
        m_settings = new SettingsWindow(m_context, m_updateManager, this);
        connect(m_settings, &SettingsWindow::editorFontChanged, this,
                [this] { m_detail->editorPane()->textView()->refreshEditorFont(); });
        connect(m_settings, &SettingsWindow::categoriesChanged, this, [this] {
            m_detail->reloadCategories();
            reloadRows();
        });
    }
    m_settings->refreshCategories();
    m_settings->refreshFolders();
    m_settings->show();
    m_settings->raise();
    m_settings->activateWindow();
}

SettingsWindow *MainWindow::settingsWindow() const
{
    return m_settings;
}

void MainWindow::addFileMenuAction(QAction *action)
{
    m_fileMenu->insertAction(m_fileOperationsEnd, action);
}

void MainWindow::addArchiveMenuAction(QAction *action)
{
    if (!m_archiveMenu) {
        m_archiveMenu = new QMenu(tr("&Archiv"), this);
        menuBar()->insertMenu(m_editMenu->menuAction(), m_archiveMenu);
    }
    m_archiveMenu->addAction(action);
}

void MainWindow::showPoemInLibrary(const QString &objectID)
{
    const PoemPtr poem = poemForObjectID(objectID);
    if (!poem || poem->isInTrash())
        return;
    setWriterMode(false);
    showAllPoemsIfHidden(poem);
    selectPoem(poem);
    activateWindow();
    raise();
}

void MainWindow::showAbout()
{
    AboutDialog dialog(this);
    dialog.exec();
}

void MainWindow::showPrivacyNotice()
{
    PrivacyNoticeDialog dialog(m_updateManager && m_updateManager->hasFeed(), this);
    dialog.exec();
}

void MainWindow::showFeedback()
{
    FeedbackDialog dialog(this);
    dialog.exec();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    m_detail->commitPendingEdits();
    m_versions->endSession();
    if (!m_context.hasChanges()) {
        event->accept();
        return;
    }
    if (auto saved = m_context.save(); !saved) {
        // Nothing is lost: the changes stay in memory and the program keeps running.
        QMessageBox::critical(this, tr("OdeLeaf"),
                              tr("Änderungen konnten nicht gespeichert werden: %1").arg(saved.errorMessage()));
        event->ignore();
        return;
    }
    event->accept();
}

void MainWindow::addExportMenu()
{
    const PoemExportActions *exports = m_detail->exportActions();
    m_fileMenu->addMenu(exports->exportMenu());
    m_fileMenu->addAction(exports->printAction());
    m_fileMenu->addAction(exports->previewAction());
}
