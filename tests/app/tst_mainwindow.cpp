#include "LoopbackHttpServer.h"
#include "StoreFaults.h"

#include "app/UpdateManager.h"
#include "app/gui/ArchiveOperations.h"
#include "app/gui/LibrarySidebar.h"
#include "app/gui/MainWindow.h"
#include "app/gui/PoemDetailView.h"
#include "app/gui/PoemListPane.h"
#include "app/gui/StatusPanel.h"
#include "app/gui/TrashDialog.h"
#include "archive/AppPreferences.h"
#include "archive/ApplicationSupport.h"
#include "archive/ArchiveContext.h"
#include "archive/PersistenceController.h"
#include "archive/PoemFactory.h"
#include "archive/PoemStore.h"
#include "archive/SidebarScope.h"
#include "editor/PoemRichText.h"
#include "editor/PoemTextDocument.h"
#include "editor/gui/FindReplaceBar.h"
#include "editor/gui/PoemEditorActions.h"
#include "editor/gui/PoemEditorPane.h"
#include "editor/gui/RichPoemTextView.h"
#include "import/ImportStateFiles.h"
#include "import/gui/ImportActions.h"

#include <QAbstractButton>
#include <QAbstractItemModel>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QNetworkProxy>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QSplitter>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextLayout>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QtMath>

namespace {

// Answers the next modal dialog of the given type once it is up (exec() blocks the test).
template <typename Dialog> void whenModal(std::function<void(Dialog *)> answer)
{
    auto *poll = new QTimer;
    QObject::connect(poll, &QTimer::timeout, poll, [poll, answer] {
        if (auto *dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget())) {
            poll->stop();
            poll->deleteLater();
            answer(dialog);
        }
    });
    poll->start(20);
}

QStringList listedTitles(const MainWindow &window)
{
    QStringList titles;
    const QAbstractItemModel *model = window.listPane()->listView()->model();
    for (int row = 0; row < model->rowCount(); ++row)
        titles.append(model->index(row, 0).data().toString());
    return titles;
}

} // namespace

// Keys that edit text in a line or text field; no window command may take them there.
QList<QKeySequence> textEditingKeys()
{
    QList<QKeySequence> keys;
    for (const auto standard :
         {QKeySequence::DeleteStartOfWord, QKeySequence::DeleteEndOfWord, QKeySequence::SelectAll, QKeySequence::Undo,
          QKeySequence::Redo, QKeySequence::MoveToStartOfLine, QKeySequence::MoveToEndOfLine,
          QKeySequence::SelectStartOfLine, QKeySequence::SelectEndOfLine, QKeySequence::MoveToStartOfDocument,
          QKeySequence::MoveToEndOfDocument, QKeySequence::SelectStartOfDocument, QKeySequence::SelectEndOfDocument,
          QKeySequence::MoveToNextWord, QKeySequence::MoveToPreviousWord, QKeySequence::SelectNextWord,
          QKeySequence::SelectPreviousWord, QKeySequence::Delete, QKeySequence::Backspace})
        keys += QKeySequence::keyBindings(standard);
    for (const QKeyCombination combination :
         {Qt::CTRL | Qt::Key_Backspace, Qt::CTRL | Qt::Key_Delete, Qt::CTRL | Qt::Key_A, Qt::CTRL | Qt::Key_Z,
          QKeyCombination(Qt::Key_Home), QKeyCombination(Qt::Key_End), Qt::SHIFT | Qt::Key_Home,
          Qt::SHIFT | Qt::Key_End, Qt::CTRL | Qt::Key_Home, Qt::CTRL | Qt::Key_End, Qt::CTRL | Qt::SHIFT | Qt::Key_Home,
          Qt::CTRL | Qt::SHIFT | Qt::Key_End, QKeyCombination(Qt::Key_Delete), QKeyCombination(Qt::Key_Backspace)})
        keys.append(QKeySequence(combination));
    return keys;
}

// Whether the action's shortcut can fire while a line or text field has the focus.
bool firesInTextFields(const QAction *action)
{
    if (action->shortcutContext() == Qt::WindowShortcut || action->shortcutContext() == Qt::ApplicationShortcut)
        return true;
    for (const QObject *object : action->associatedObjects()) {
        const auto *widget = qobject_cast<const QWidget *>(object);
        if (!widget || qobject_cast<const QMenu *>(widget))
            continue;
        const bool isField = qobject_cast<const QLineEdit *>(widget) || qobject_cast<const QTextEdit *>(widget);
        const bool holdsFields =
            action->shortcutContext() == Qt::WidgetWithChildrenShortcut &&
            (!widget->findChildren<QLineEdit *>().isEmpty() || !widget->findChildren<QTextEdit *>().isEmpty());
        if (isField || holdsFields)
            return true;
    }
    return false;
}

class MainWindowTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    std::unique_ptr<PersistenceController> m_store;
    std::unique_ptr<MainWindow> m_window;

    QString storePath() const { return m_dir.filePath(QStringLiteral("window.sqlite")); }

    MainWindow &openWindow()
    {
        m_window = std::make_unique<MainWindow>(m_store->viewContext());
        QSignalSpy started(m_window.get(), &MainWindow::startUpFinished);
        m_window->show();
        if (!started.wait(5000))
            qWarning("start-up did not finish");
        return *m_window;
    }

    PoemPtr storedPoem(const QString &title, const QString &text = {})
    {
        PoemPtr poem = PoemFactory::makeNewPoem(m_store->viewContext(), QDateTime::currentDateTimeUtc().addDays(-1));
        poem->setTitle(title);
        poem->setTitleNormalized(title.toLower());
        if (!text.isEmpty())
            poem->setText(text);
        if (!m_store->viewContext().save())
            qWarning("could not store the sample poem");
        return poem;
    }

private Q_SLOTS:
    void initTestCase() { ApplicationSupport::setDirectory(m_dir.path()); }

    void init()
    {
        QFile::remove(ApplicationSupport::preferencesPath());
        QFile::remove(storePath());
        m_store = std::move(PersistenceController::open(storePath()).value());
    }

    void cleanup()
    {
        m_window.reset();
        m_store.reset();
    }

    void writeFindTrashAndRestoreAPoem()
    {
        storedPoem(QStringLiteral("Herbst"), QStringLiteral("Blätter"));
        MainWindow &window = openWindow();
        QCOMPARE(listedTitles(window), QStringList{"Herbst"});

        // Ctrl+N: a new poem, selected, in writer mode with the title to type.
        QTest::keyClick(&window, Qt::Key_N, Qt::ControlModifier);
        QVERIFY(window.isWriterModeActive());
        QVERIFY(window.listPane()->isHidden());
        QVERIFY(window.toolBar()->isHidden());
        QLineEdit *title = window.detailView()->titleField();
        QTRY_VERIFY(title->hasFocus());
        QTest::keyClicks(title, QStringLiteral("Abendlied"));
        QCOMPARE(window.detailView()->saveStatus(), QStringLiteral("Gespeichert"));
        QWidget *body = window.detailView()->editorPane()->textView();
        QTest::keyClicks(body, QStringLiteral("Der Mond ist aufgegangen"));
        const PoemPtr poem = window.selectedPoem();
        QCOMPARE(poem->title(), std::optional<QString>(QStringLiteral("Abendlied")));
        QCOMPARE(poem->titleNormalized(), std::optional<QString>(QStringLiteral("abendlied")));
        QCOMPARE(poem->text(), std::optional<QString>(QStringLiteral("Der Mond ist aufgegangen")));
        QVERIFY(!m_store->viewContext().hasChanges());

        QTest::keyClick(&window, Qt::Key_Escape);
        QVERIFY(!window.isWriterModeActive());
        QVERIFY(window.listPane()->isVisible());
        QVERIFY(window.toolBar()->isVisible());
        QCOMPARE(listedTitles(window), (QStringList{"Abendlied", "Herbst"}));

        // Search: the text is only found in mode "Alles", which is remembered.
        QLineEdit *search = window.listPane()->searchField();
        QTest::keyClicks(search, QStringLiteral("mond"));
        QCOMPARE(listedTitles(window), QStringList{});
        auto *mode = window.listPane()->findChild<QComboBox *>(QStringLiteral("searchModePicker"));
        mode->setCurrentIndex(mode->findText(QStringLiteral("Alles")));
        Q_EMIT mode->activated(mode->currentIndex());
        QCOMPARE(listedTitles(window), QStringList{"Abendlied"});
        auto *summary = window.listPane()->findChild<QLabel *>(QStringLiteral("resultSummary"));
        QCOMPARE(summary->text(), QStringLiteral("1 von 2 Gedicht gefunden"));
        QCOMPARE(AppPreferences::searchMode(), std::optional<QString>(QStringLiteral("Alles")));
        QVERIFY(!AppPreferences::searchTitleOnly());

        // To the trash from the detail pane; the status line tells it.
        auto *trashButton = window.detailView()->findChild<QPushButton *>(QStringLiteral("trashPoemButton"));
        QTest::mouseClick(trashButton, Qt::LeftButton);
        QCOMPARE(window.statusText(), QStringLiteral("Gedicht in den Papierkorb verschoben: Abendlied"));
        QCOMPARE(window.sidebar()->statusPanel()->status(), window.statusText());
        QVERIFY(poem->isInTrash());
        QCOMPARE(listedTitles(window), QStringList{});
        QCOMPARE(window.sidebar()->trashButton()->text(), QStringLiteral("1 im Papierkorb"));

        // Restore it from the trash dialog.
        QTest::keySequence(search, QKeySequence::SelectAll);
        QTest::keyClick(search, Qt::Key_Delete);
        whenModal<TrashDialog>([](TrashDialog *dialog) {
            auto *restore = dialog->findChild<QPushButton *>(QStringLiteral("restoreButton"));
            QTest::mouseClick(restore, Qt::LeftButton);
            dialog->reject();
        });
        QTest::mouseClick(window.sidebar()->trashButton(), Qt::LeftButton);
        QCOMPARE(window.statusText(), QStringLiteral("Gedicht wiederhergestellt: Abendlied"));
        QVERIFY(!poem->isInTrash());
        QCOMPARE(listedTitles(window), (QStringList{"Abendlied", "Herbst"}));
        QCOMPARE(window.sidebar()->trashButton()->text(), QStringLiteral("0 im Papierkorb"));
    }

    void changesStoredByAnotherProcessShowUpWhileWriting()
    {
        const PoemPtr herbst = storedPoem(QStringLiteral("Herbst"), QStringLiteral("Blätter"));
        storedPoem(QStringLiteral("Winter"));
        MainWindow &window = openWindow();
        window.selectPoem(herbst);
        auto *body = window.detailView()->editorPane()->textView();
        body->setFocus();
        QTextCursor cursor = body->textCursor();
        cursor.setPosition(3);
        body->setTextCursor(cursor);

        // A script on the same archive, through its own connection.
        {
            auto script = std::move(PersistenceController::open(storePath()).value());
            ArchiveContext &other = script->viewContext();
            for (const PoemPtr &poem : other.fetch()) {
                if (poem->title() == QStringLiteral("Winter"))
                    poem->setTitle(QStringLiteral("Frost"));
                else
                    poem->setWriterNotes(QStringLiteral("von der Kommandozeile"));
            }
            PoemFactory::makeNewPoem(other, QDateTime::currentDateTimeUtc())->setTitle(QStringLiteral("Frühling"));
            QVERIFY(other.save().ok());
        }

        QTRY_COMPARE_WITH_TIMEOUT(listedTitles(window).size(), 3, 6000);
        QStringList titles = listedTitles(window);
        titles.sort();
        QCOMPARE(titles, (QStringList{"Frost", "Frühling", "Herbst"}));
        QCOMPARE(window.selectedPoem(), herbst);
        QCOMPARE(window.detailView()->notesField()->toPlainText(), QStringLiteral("von der Kommandozeile"));
        QCOMPARE(body->toPlainText(), QStringLiteral("Blätter"));
        QCOMPARE(body->textCursor().position(), 3);
        QVERIFY(body->hasFocus());

        // Typing on goes into the poem as the script left it.
        QTest::keyClicks(body, QStringLiteral("X"));
        QCOMPARE(*herbst->text(), QStringLiteral("BläXtter"));
        QCOMPARE(*herbst->writerNotes(), QStringLiteral("von der Kommandozeile"));
    }

    void listKeyboardAndContextActions()
    {
        storedPoem(QStringLiteral("Eins"));
        storedPoem(QStringLiteral("Zwei"));
        MainWindow &window = openWindow();
        QListView *list = window.listPane()->listView();
        list->setFocus();
        QTest::keyClick(list, Qt::Key_Down);
        QTRY_VERIFY(window.selectedPoem());
        const QString first = *window.selectedPoem()->title();
        QCOMPARE(window.detailView()->titleField()->text(), first);

        QTest::keyClick(&window, Qt::Key_D, Qt::ControlModifier);
        QCOMPARE(window.statusText(), QStringLiteral("Gedicht dupliziert: %1 Kopie").arg(first));
        QCOMPARE(*window.selectedPoem()->title(), first + QStringLiteral(" Kopie"));
        QCOMPARE(listedTitles(window).first(), first + QStringLiteral(" Kopie"));

        // Delete in the list trashes the selected poem and selects the next one.
        list->setFocus();
        QTest::keyClick(list, Qt::Key_Delete);
        QCOMPARE(window.statusText(), QStringLiteral("Gedicht in den Papierkorb verschoben: %1 Kopie").arg(first));
        QCOMPARE(listedTitles(window).size(), 2);
        QVERIFY(window.selectedPoem());
        QVERIFY(!window.selectedPoem()->isInTrash());
    }

    void startUpRunsItsStepsInOrder()
    {
        m_window = std::make_unique<MainWindow>(m_store->viewContext());
        QStringList steps;
        m_window->setPendingImportUndoCheck([&steps] {
            steps.append(QStringLiteral("undo"));
            return true;
        });
        m_window->setImportReportCheck([&steps] {
            steps.append(QStringLiteral("report"));
            return false;
        });
        connect(m_window.get(), &MainWindow::dailyBackupDue, this,
                [&steps] { steps.append(QStringLiteral("backup")); });
        QSignalSpy started(m_window.get(), &MainWindow::startUpFinished);
        m_window->show();
        QVERIFY(started.wait(5000));
        QCOMPARE(steps, (QStringList{"undo", "report", "backup"}));
        QVERIFY(m_window->hasPendingTextImportUndo());
        QVERIFY(!m_window->hasImportReport());

        // Shown again later, the start-up does not run twice.
        m_window->hide();
        m_window->show();
        QTest::qWait(50);
        QCOMPARE(steps.size(), 3);
    }

    void statusPanelIntegration()
    {
        MainWindow &window = openWindow();
        StatusPanel *panel = window.sidebar()->statusPanel();
        auto *reveal = panel->findChild<QPushButton *>();
        QVERIFY(reveal->isHidden());
        window.setLastWrittenFile(m_dir.filePath(QStringLiteral("OdeLeaf-Backup.json")));
        QVERIFY(!reveal->isHidden());
        QCOMPARE(reveal->text(), QStringLiteral("Im Dateimanager zeigen"));
        window.setLastWrittenFile(QString());
        QVERIFY(reveal->isHidden());

        // The button stays with the message about the file, in whichever order the two come.
        window.setStatus(QStringLiteral("Sicherung erstellt: 1 Gedicht gespeichert. Datei: x.json"));
        window.setLastWrittenFile(m_dir.filePath(QStringLiteral("x.json")));
        QTest::qWait(1);
        QVERIFY(!reveal->isHidden());
        window.setStatus(QStringLiteral("Gedicht dupliziert: Herbst Kopie"));
        QVERIFY(reveal->isHidden());
        window.setLastWrittenFile(m_dir.filePath(QStringLiteral("y.json")));
        window.setStatus(QStringLiteral("Sicherung erstellt: 1 Gedicht gespeichert. Datei: y.json"));
        QTest::qWait(1);
        QVERIFY(!reveal->isHidden());
        window.setStatus(QStringLiteral("Gedicht in den Papierkorb verschoben: Herbst"));
        QVERIFY(reveal->isHidden());

        QVERIFY(!window.isBusy());
        window.setBusy(true);
        QVERIFY(!panel->findChild<QProgressBar *>()->isHidden());
        window.setBusy(false);
        QVERIFY(!window.isBusy());

        QSignalSpy changed(&window, &MainWindow::statusChanged);
        window.setStatus(QStringLiteral("Sicherung erstellt: 2 Gedichte gespeichert. Datei: x.json"));
        window.setStatus(QStringLiteral("Zweite Meldung"));
        QCOMPARE(panel->status(), QStringLiteral("Zweite Meldung"));
        QCOMPARE(changed.size(), 2);

        const QList<QLabel *> headings = window.sidebar()->findChildren<QLabel *>(QStringLiteral("sectionHeading"));
        const auto actionsHeading = std::find_if(headings.begin(), headings.end(), [](QLabel *label) {
            return label->text() == QStringLiteral("Aktionen");
        });
        QVERIFY(actionsHeading != headings.end());
        QVERIFY((*actionsHeading)->isHidden());
        auto *backup = new QAction(QStringLiteral("Sicherung erstellen"), &window);
        window.addSidebarAction(backup);
        QVERIFY(!(*actionsHeading)->isHidden());
    }

    void operationsReportIntoTheWindowAndTheDailyBackupRunsAtStart()
    {
        storedPoem(QStringLiteral("Herbst"), QStringLiteral("Blätter"));
        m_window = std::make_unique<MainWindow>(m_store->viewContext());
        new ArchiveOperations(*m_window);
        QSignalSpy started(m_window.get(), &MainWindow::startUpFinished);
        m_window->show();
        QVERIFY(started.wait(5000));

        QStringList labels;
        for (auto *button : m_window->sidebar()->findChildren<QAbstractButton *>())
            labels.append(button->text());
        for (const char *label : {"Backup erstellen", "Wiederherstellen", "Ordner scan"})
            QVERIFY2(labels.contains(QString::fromUtf8(label)), label);

        // A fresh installation writes the daily safety backup at once and says so.
        const QString status = m_window->sidebar()->statusPanel()->status();
        QVERIFY2(status.startsWith(
                     QStringLiteral("Automatische Tagessicherung erstellt: 1 Gedichte gespeichert. Datei: daily-")),
                 qPrintable(status));
        QCOMPARE(
            QDir(m_dir.filePath(QStringLiteral("Safety Backups"))).entryList({QStringLiteral("daily-*.json")}).size(),
            1);
    }

    // A store on a disk that cannot be written: the poems show, nothing offers a change.
    void readOnlyArchiveIsShownWithABannerAndNoEditing()
    {
        storedPoem(QStringLiteral("Herbst"), QStringLiteral("Blätter"));
        m_store.reset();
        auto store = PoemStore::openReadOnly(storePath());
        QVERIFY2(store.ok(), qPrintable(store.errorMessage()));
        ArchiveContext context(std::move(store.value()));
        QVERIFY(context.load().ok());
        MainWindow window(context);
        new ArchiveOperations(window);
        QSignalSpy started(&window, &MainWindow::startUpFinished);
        window.show();
        QVERIFY(started.wait(5000));

        auto *banner = window.findChild<QLabel *>(QStringLiteral("readOnlyBanner"));
        QVERIFY(banner && banner->isVisible());
        QCOMPARE(banner->text(), QStringLiteral("Archiv ist schreibgeschützt – Änderungen sind nicht möglich."));
        QCOMPARE(listedTitles(window), QStringList{QStringLiteral("Herbst")});
        window.selectPoem(window.library().poemAt(0));
        QVERIFY(!window.detailView()->editorPane()->isEditable());
        QVERIFY(!window.detailView()->titleField()->isEnabled());
        for (const char *name : {"newPoemAction", "duplicateAction", "trashAction"})
            QVERIFY2(!window.findChild<QAction *>(QString::fromLatin1(name))->isEnabled(), name);
        for (auto *button : window.sidebar()->findChildren<QAbstractButton *>()) {
            if (button->text() == QStringLiteral("Backup erstellen"))
                QVERIFY(button->isEnabled());
            if (button->text() == QStringLiteral("Wiederherstellen"))
                QVERIFY(!button->isEnabled());
        }
    }

    void writableArchiveHasNoBanner()
    {
        MainWindow &window = openWindow();
        QVERIFY(!window.findChild<QLabel *>(QStringLiteral("readOnlyBanner")));
        QVERIFY(window.findChild<QAction *>(QStringLiteral("newPoemAction"))->isEnabled());
    }

    void lastImportIsOfferedFromStartUp()
    {
        const PoemPtr poem = storedPoem(QStringLiteral("Herbst"), QStringLiteral("neu"));
        QVERIFY(ImportStateFiles::saveUndo({{*poem->id(), QStringLiteral("Herbst"), QStringLiteral("alt"), {}}}));
        QVERIFY(QFile::remove(ImportStateFiles::reportPath()) || !QFile::exists(ImportStateFiles::reportPath()));
        m_window = std::make_unique<MainWindow>(m_store->viewContext());
        auto *operations = new ArchiveOperations(*m_window);
        QSignalSpy started(m_window.get(), &MainWindow::startUpFinished);
        m_window->show();
        QVERIFY(started.wait(5000));
        QVERIFY(m_window->hasPendingTextImportUndo());
        QVERIFY(operations->imports()->undoAction()->isEnabled());
        QVERIFY(!operations->imports()->reportAction()->isEnabled());
        QVERIFY(m_window->fileMenu()->actions().contains(operations->imports()->undoAction()));

        operations->imports()->undoAction()->trigger();
        QCOMPARE(poem->text(), QStringLiteral("alt"));
        QCOMPARE(m_window->statusText(),
                 QStringLiteral("Letzter Import rückgängig gemacht: 1 Gedichte wiederhergestellt."));
        QVERIFY(!operations->imports()->undoAction()->isEnabled());
    }

    void windowShortcutsLeaveTextEditingKeysAlone()
    {
        MainWindow &window = openWindow();
        // The Edit menu's commands carry these keys on purpose: they hand them to the focused field.
        const QList<QAction *> forwarding = window.editMenu()->actions();
        const QList<QKeySequence> editingKeys = textEditingKeys();
        for (QAction *action : window.findChildren<QAction *>()) {
            if (forwarding.contains(action) || !firesInTextFields(action))
                continue;
            for (const QKeySequence &shortcut : action->shortcuts())
                QVERIFY2(!editingKeys.contains(shortcut),
                         qPrintable(action->text() + QStringLiteral(": ") + shortcut.toString()));
        }
    }

    void ctrlBackspaceDeletesAWordAndNeverTrashesThePoem()
    {
        storedPoem(QStringLiteral("Herbst"), QStringLiteral("Blätter fallen"));
        MainWindow &window = openWindow();
        window.selectPoem(window.library().poemAt(0));
        const PoemPtr poem = window.selectedPoem();
        RichPoemTextView *body = window.detailView()->editorPane()->textView();
        body->setFocus();
        QTRY_VERIFY(body->hasFocus());
        body->moveCursor(QTextCursor::End);
        QTest::keyClick(body, Qt::Key_Backspace, Qt::ControlModifier);
        QVERIFY(!poem->isInTrash());
        QCOMPARE(poem->text(), std::optional<QString>(QStringLiteral("Blätter ")));

        QLineEdit *search = window.listPane()->searchField();
        search->setFocus();
        QTRY_VERIFY(search->hasFocus());
        QTest::keyClicks(search, QStringLiteral("Herbst Blatt"));
        QTest::keyClick(search, Qt::Key_Backspace, Qt::ControlModifier);
        QCOMPARE(search->text(), QStringLiteral("Herbst "));
        QVERIFY(!poem->isInTrash());
    }

    void writerModeHasOneKeyAndReturnsToThePoemText()
    {
        storedPoem(QStringLiteral("Herbst"), QStringLiteral("Blätter fallen"));
        MainWindow &window = openWindow();
        window.selectPoem(window.library().poemAt(0));
        auto *writerMode = window.findChild<QAction *>(QStringLiteral("writerModeAction"));
        const PoemEditorActions *editorActions = window.detailView()->editorPane()->actions();
        QCOMPARE(editorActions->toggleWriterMode->shortcut(), writerMode->shortcut());

        // The key works from the search field as from the text.
        QLineEdit *search = window.listPane()->searchField();
        search->setFocus();
        QTRY_VERIFY(search->hasFocus());
        QTest::keySequence(search, writerMode->shortcut());
        QVERIFY(window.isWriterModeActive());
        RichPoemTextView *body = window.detailView()->editorPane()->textView();
        QTRY_VERIFY(body->hasFocus());
        QTest::keySequence(body, writerMode->shortcut());
        QVERIFY(!window.isWriterModeActive());
        QTRY_VERIFY(body->hasFocus());

        // Leaving by the button: the next keystroke goes into the text, not over the title.
        window.setWriterMode(true);
        window.detailView()->findChild<QPushButton *>(QStringLiteral("leaveWriterMode"))->click();
        QVERIFY(!window.isWriterModeActive());
        QTRY_VERIFY(body->hasFocus());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_X);
        QCOMPARE(*window.selectedPoem()->title(), QStringLiteral("Herbst"));
    }

    // Moving to another poem ends the session; the panel lists what was kept, compares it
    // with the poem, brings it back, and Escape closes it.
    void versionsPanelKeepsComparesAndBringsBack()
    {
        const PoemPtr herbst = storedPoem(QStringLiteral("Herbst"), QStringLiteral("Blätter fallen"));
        const PoemPtr winter = storedPoem(QStringLiteral("Winter"), QStringLiteral("Schnee"));
        MainWindow &window = openWindow();
        window.selectPoem(herbst);
        RichPoemTextView *body = window.detailView()->editorPane()->textView();
        body->setFocus();
        QTRY_VERIFY(body->hasFocus());
        body->moveCursor(QTextCursor::End);
        QTest::keyClicks(body, QStringLiteral(" leise"));
        window.selectPoem(winter);
        window.selectPoem(herbst);

        window.findChild<QAction *>(QStringLiteral("showVersionsAction"))->trigger();
        auto *panel = window.findChild<QWidget *>(QStringLiteral("versionsPanel"));
        QVERIFY(panel->isVisible());
        auto *list = panel->findChild<QListWidget *>(QStringLiteral("versionList"));
        QCOMPARE(list->count(), 2); // before the first keystroke, and where the session ended
        list->setFocus();
        QTRY_VERIFY(list->hasFocus());
        QTest::keyClick(list, Qt::Key_Down);
        const QString comparison = panel->findChild<QTextBrowser *>(QStringLiteral("versionView"))->toPlainText();
        QVERIFY2(comparison.contains(QStringLiteral("Blätter fallen leise")), qPrintable(comparison));
        panel->findChild<QPushButton *>(QStringLiteral("restoreVersionButton"))->click();
        QCOMPARE(herbst->text(), std::optional<QString>(QStringLiteral("Blätter fallen")));
        QCOMPARE(list->count(), 3);

        list->setFocus();
        QTRY_VERIFY(list->hasFocus());
        QTest::keyClick(list, Qt::Key_Escape);
        QVERIFY(panel->isHidden());
        QVERIFY(!window.isWriterModeActive());
    }

    void aNewPoemStaysInViewWhateverTheFilters()
    {
        storedPoem(QStringLiteral("Herbst"), QStringLiteral("Blätter fallen"));
        MainWindow &window = openWindow();
        window.listPane()->searchField()->setText(QStringLiteral("Herbst"));
        QTest::keyClick(&window, Qt::Key_3, Qt::ControlModifier);
        QCOMPARE(window.library().sidebarScope, SidebarScope::published);

        window.newPoem();
        const PoemPtr added = window.selectedPoem();
        QVERIFY(added && added->title() == std::optional<QString>(QString()));
        QVERIFY(window.library().indexOfObjectID(added->objectID()) >= 0);
        QCOMPARE(window.library().sidebarScope, SidebarScope::archive);
        QVERIFY(window.listPane()->searchField()->text().isEmpty());
        window.setWriterMode(false);
        QVERIFY(window.listPane()->listView()->currentIndex().isValid());
    }

    void smallestWindowCutsNothingOffAndActionsStayPut()
    {
        storedPoem(QStringLiteral("Herbst"), QStringLiteral("Die Blätter fallen"));
        MainWindow &window = openWindow();
        window.addSidebarAction(new QAction(QStringLiteral("Wiederherstellen"), &window));
        window.addSidebarAction(new QAction(QStringLiteral("Bilder-Ordner scannen"), &window));
        window.resize(window.minimumSize());
        window.selectPoem(window.library().poemAt(0));
        QTRY_COMPARE(window.size(), QSize(900, 560));

        // The action lines keep their place under the mouse whatever the status says.
        const QList<QToolButton *> actions =
            window.sidebar()->findChildren<QToolButton *>(QStringLiteral("sidebarAction"));
        QCOMPARE(actions.size(), 2);
        window.setStatus(QStringLiteral("Kurz."));
        QApplication::processEvents();
        QList<QRect> before;
        for (const QToolButton *action : actions)
            before.append(QRect(action->mapTo(&window, QPoint()), action->size()));
        window.setStatus(QStringLiteral("Eine Zeile\nund noch eine\nund eine dritte\nund eine vierte\nund die fünfte"));
        window.setLastWrittenFile(m_dir.filePath(QStringLiteral("OdeLeaf-Backup.json")));
        window.setBusy(true);
        QApplication::processEvents();
        for (int i = 0; i < actions.size(); ++i)
            QCOMPARE(QRect(actions.at(i)->mapTo(&window, QPoint()), actions.at(i)->size()), before.at(i));
        window.setBusy(false);

        // "Im Dateimanager zeigen" fits the narrowest sidebar.
        const auto *reveal = window.sidebar()->statusPanel()->findChild<QPushButton *>();
        QTRY_VERIFY(reveal->isVisible());
        QVERIFY(reveal->width() >= reveal->sizeHint().width());
        QVERIFY(reveal->mapTo(window.sidebar(), QPoint(reveal->width(), 0)).x() <= window.sidebar()->width());

        // The poem text shows at least eight lines.
        const RichPoemTextView *body = window.detailView()->editorPane()->textView();
        // A line as laid out, leading included; the page margin scrolls away with the text.
        const QTextLayout *firstLine = body->document()->firstBlock().layout();
        QVERIFY(firstLine->lineCount() > 0);
        const int lineHeight = qCeil(firstLine->boundingRect().height() / firstLine->lineCount());
        QVERIFY2(body->viewport()->height() >= 8 * lineHeight,
                 qPrintable(QStringLiteral("%1 < 8 × %2").arg(body->viewport()->height()).arg(lineHeight)));

        // The detail footer keeps its own buttons whole.
        for (const QString &name : {QStringLiteral("duplicateButton"), QStringLiteral("trashPoemButton"),
                                    QStringLiteral("exportButton"), QStringLiteral("importTextButton")}) {
            const auto *button = window.detailView()->findChild<QAbstractButton *>(name);
            QVERIFY2(button->isHidden() || button->width() >= button->sizeHint().width(), qPrintable(name));
        }
        QVERIFY(window.detailView()->importTextButton()->isVisible());

        // The find bar's controls never slide into each other, even in the narrowest detail column.
        auto *columns = window.findChild<QSplitter *>(QStringLiteral("columns"));
        columns->setSizes({900, 900, 0});
        window.detailView()->editorPane()->actions()->find->trigger();
        QWidget *findBar = window.detailView()->editorPane()->findReplaceBar();
        QTRY_VERIFY(findBar->isVisible());
        QTRY_COMPARE(window.detailView()->width(), window.detailView()->minimumWidth());
        QApplication::processEvents();
        QList<QWidget *> controls;
        for (QWidget *child : findBar->findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
            if (child->isVisible())
                controls.append(child);
        }
        QVERIFY(controls.size() >= 7);
        for (int i = 0; i < controls.size(); ++i) {
            QVERIFY(findBar->rect().contains(controls.at(i)->geometry()));
            for (int j = i + 1; j < controls.size(); ++j)
                QVERIFY2(
                    !controls.at(i)->geometry().intersects(controls.at(j)->geometry()),
                    qPrintable(controls.at(i)->objectName() + QStringLiteral(" / ") + controls.at(j)->objectName()));
        }
    }

    void theFindBarStaysWithItsPoem()
    {
        storedPoem(QStringLiteral("Eins"), QStringLiteral("erste"));
        storedPoem(QStringLiteral("Zwei"), QStringLiteral("zweite"));
        MainWindow &window = openWindow();
        window.selectPoem(window.library().poemAt(0));
        RichPoemTextView *body = window.detailView()->editorPane()->textView();
        body->setFocus();
        QTRY_VERIFY(body->hasFocus());
        QTest::keyClick(body, Qt::Key_F, Qt::ControlModifier);
        QVERIFY(window.detailView()->editorPane()->isFindReplaceVisible());
        window.selectPoem(window.library().poemAt(1));
        QVERIFY(!window.detailView()->editorPane()->isFindReplaceVisible());
    }

    void detailEditorFormatsSavesAndSharesTheWindowsKeys()
    {
        storedPoem(QStringLiteral("Herbst"), QStringLiteral("Blätter fallen"));
        MainWindow &window = openWindow();
        window.selectPoem(window.library().poemAt(0));
        RichPoemTextView *body = window.detailView()->editorPane()->textView();
        body->setFocus();
        QTRY_VERIFY(body->hasFocus());

        QTest::keyClick(body, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(body, Qt::Key_B, Qt::ControlModifier);
        const PoemPtr poem = window.selectedPoem();
        QVERIFY(poem->richTextData().has_value());
        QVERIFY(PoemRichText::decode(*poem->richTextData())->begin().begin().fragment().charFormat().fontWeight() >=
                QFont::Bold);
        QCOMPARE(poem->text(), std::optional<QString>(QStringLiteral("Blätter fallen")));
        QCOMPARE(window.detailView()->saveStatus(), QStringLiteral("Gespeichert"));
        const QList<QLabel *> labels = window.detailView()->findChildren<QLabel *>();
        QCOMPARE(std::count_if(labels.begin(), labels.end(),
                               [](const QLabel *label) {
                                   return label->isVisible() && label->text() == QStringLiteral("Gespeichert");
                               }),
                 1);

        // Ctrl+Z reaches the text (it is not swallowed as an ambiguous shortcut).
        QTest::keyClick(body, Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(PoemRichText::decode(*poem->richTextData())->begin().begin().fragment().charFormat().fontWeight() <
                QFont::Bold);

        // Ctrl+F searches the poem from its text and the archive from anywhere else.
        QTest::keyClick(body, Qt::Key_F, Qt::ControlModifier);
        QVERIFY(window.detailView()->editorPane()->isFindReplaceVisible());
        window.listPane()->listView()->setFocus();
        QTest::keyClick(window.listPane()->listView(), Qt::Key_F, Qt::ControlModifier);
        QTRY_VERIFY(window.listPane()->searchField()->hasFocus());
        QVERIFY(!m_store->viewContext().hasChanges());
    }

    void failedDetailSaveIsReportedAndNotClaimed()
    {
        PoemPtr poem = storedPoem(QStringLiteral("Fest"));
        MainWindow &window = openWindow();
        window.selectPoem(poem);
        executeOnStore(storePath(),
                       "CREATE TRIGGER refuse BEFORE UPDATE ON poem BEGIN SELECT RAISE(ABORT, 'voll'); END");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^apply/save failed: .*voll")));
        QTest::keyClicks(window.detailView()->titleField(), QStringLiteral("!"));
        QVERIFY(window.detailView()->saveStatus() != QStringLiteral("Gespeichert"));
        QVERIFY(window.detailView()->saveStatus().contains(QStringLiteral("voll")));
        // The edit stays in memory for the next save.
        QCOMPARE(*poem->title(), QStringLiteral("Fest!"));
        QVERIFY(m_store->viewContext().hasChanges());
    }

    void quittingSavesOrKeepsRunning()
    {
        PoemPtr poem = storedPoem(QStringLiteral("Vorher"));
        MainWindow &window = openWindow();
        poem->setTitle(QStringLiteral("Nachher"));
        executeOnStore(storePath(),
                       "CREATE TRIGGER refuse BEFORE UPDATE ON poem BEGIN SELECT RAISE(ABORT, 'voll'); END");
        QString shownError;
        whenModal<QMessageBox>([&shownError](QMessageBox *box) {
            shownError = box->text();
            box->accept();
        });
        QVERIFY(!window.close());
        QVERIFY(shownError.contains(QStringLiteral("voll")));
        QVERIFY(window.isVisible());
        QVERIFY(m_store->viewContext().hasChanges());

        executeOnStore(storePath(), "DROP TRIGGER refuse");
        QVERIFY(window.close());
        QVERIFY(!m_store->viewContext().hasChanges());
        auto reopened = PersistenceController::open(storePath());
        QCOMPARE(*reopened.value()->viewContext().fetch().first()->title(), QStringLiteral("Nachher"));
    }

    void updateCommandIsOffWhileACheckRuns()
    {
        LoopbackHttpServer server;
        QVERIFY(server.listen());
        server.setResponse(QStringLiteral("/feed.xml"),
                           {200,
                            "<rss><channel><item><title>OdeLeaf 9.0</title><enclosure url=\"https://example.org/9\"/>"
                            "</item></channel></rss>",
                            true});
        UpdateManager updates(server.url(QStringLiteral("/feed.xml")), QVersionNumber(1, 0));
        MainWindow &window = openWindow();
        window.setUpdateManager(&updates);
        QAction *check = nullptr;
        for (QAction *action : window.helpMenu()->actions()) {
            if (action->text() == QStringLiteral("Nach Updates suchen…"))
                check = action;
        }
        QVERIFY(check);
        QVERIFY(check->isEnabled());
        check->trigger();
        QVERIFY(!check->isEnabled());
        QString shown;
        whenModal<QMessageBox>([&shown](QMessageBox *box) {
            shown = box->text();
            box->reject();
        });
        QTRY_COMPARE(server.requestCount(), 1);
        server.release();
        QTRY_VERIFY(check->isEnabled());
        QCOMPARE(shown, QStringLiteral("OdeLeaf 9.0 ist verfügbar."));
    }

    void trashDialogEmptiesAfterConfirmation()
    {
        PoemPtr only = storedPoem(QStringLiteral("Allein"));
        only->setDeletedAt(QDateTime::currentDateTimeUtc());
        QVERIFY(m_store->viewContext().save().ok());
        QStringList statuses;
        int changes = 0;
        TrashDialog dialog(
            m_store->viewContext(), [&statuses](const QString &status) { statuses.append(status); },
            [&changes] { ++changes; });
        auto *empty = dialog.findChild<QPushButton *>(QStringLiteral("emptyTrashButton"));
        QCOMPARE(dialog.shownCount(), 1);
        QVERIFY(!empty->isHidden());

        QStringList asked;
        dialog.confirm = [&asked](const QString &title, const QString &, const QString &confirmText) {
            asked << title << confirmText;
            return false;
        };
        QTest::mouseClick(empty, Qt::LeftButton);
        QCOMPARE(asked, (QStringList{"Papierkorb leeren?", "Papierkorb endgültig leeren"}));
        QCOMPARE(dialog.shownCount(), 1);
        QVERIFY(statuses.isEmpty());

        dialog.confirm = [](const QString &, const QString &, const QString &) { return true; };
        QTest::mouseClick(empty, Qt::LeftButton);
        QCOMPARE(statuses, QStringList{"Papierkorb geleert: 1 Gedicht endgültig gelöscht."});
        QCOMPARE(changes, 1);
        QCOMPARE(dialog.shownCount(), 0);
        QVERIFY(empty->isHidden());
        QCOMPARE(m_store->viewContext().fetch().size(), 0);
    }
};

QTEST_MAIN(MainWindowTest)
#include "tst_mainwindow.moc"
