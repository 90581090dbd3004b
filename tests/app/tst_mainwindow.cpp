#include "LoopbackHttpServer.h"
#include "StoreFaults.h"
#include "backup/BackupTestSupport.h"

#include "analysis/StatisticsReport.h"
#include "analysis/gui/StatisticsWindow.h"
#include "app/UpdateManager.h"
#include "app/gui/ArchiveOperations.h"
#include "app/gui/LibrarySidebar.h"
#include "app/gui/MainWindow.h"
#include "app/gui/PoemDetailView.h"
#include "app/gui/PoemListPane.h"
#include "app/gui/ScreenFitGuard.h"
#include "app/gui/SettingsWindow.h"
#include "app/gui/StatusPanel.h"
#include "app/gui/TrashDialog.h"
#include "archive/AppPreferences.h"
#include "archive/ApplicationSupport.h"
#include "archive/ArchiveContext.h"
#include "archive/CategoryCatalog.h"
#include "archive/MessageText.h"
#include "archive/PersistenceController.h"
#include "archive/PoemFactory.h"
#include "archive/PoemStore.h"
#include "archive/SidebarScope.h"
#include "archive/Trash.h"
#include "backup/BackupExporter.h"
#include "backup/BackupReader.h"
#include "backup/RestorePlanner.h"
#include "editor/PoemRichText.h"
#include "editor/PoemTextDocument.h"
#include "editor/gui/FindReplaceBar.h"
#include "editor/gui/PoemEditorActions.h"
#include "editor/gui/PoemEditorPane.h"
#include "editor/gui/RichPoemTextView.h"
#include "editor/gui/VerseGutter.h"
#include "import/CSVImporter.h"
#include "import/ImportStateFiles.h"
#include "import/ImportUndo.h"
#include "import/SinglePoemImport.h"
#include "import/gui/ImportActions.h"
#include "import/gui/ImportReportWindow.h"
#include "import/gui/ImportReviewWindow.h"

#include <QAbstractButton>
#include <QAbstractItemModel>
#include <QAbstractScrollArea>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QNetworkProxy>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
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
// Whether the widget lies in a scrolling part of the window rather than in its frame.
bool scrolls(const QWidget *widget, const QWidget *window)
{
    for (const QWidget *w = widget->parentWidget(); w && w != window; w = w->parentWidget()) {
        if (qobject_cast<const QAbstractScrollArea *>(w))
            return true;
    }
    return false;
}

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

QStringList titlesOf(const QList<PoemPtr> &poems)
{
    QStringList titles;
    for (const PoemPtr &poem : poems)
        titles.append(poem->title().value_or(QString()));
    return titles;
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

    // Whatever changes the shown poem, the pane shows it at once, and typing on writes no
    // old value back.
    void everyChangeOfTheShownPoemReachesThePane()
    {
        struct Shown {
            QString title;
            QString category;
            bool podcast = false;
            QString notes;
            QString text;
        };
        struct Case {
            const char *name;
            std::function<void(ArchiveContext &, const PoemPtr &)> before; // ahead of the window
            std::function<void(ArchiveContext &, const PoemPtr &)> change;
            Shown expected;
        };
        const QString backup = m_dir.filePath(QStringLiteral("vorher.json"));
        const QString textFile = m_dir.filePath(QStringLiteral("herbst.txt"));
        const QString csv = m_dir.filePath(QStringLiteral("liste.csv"));
        QVERIFY(BackupTestSupport::writeFile(textFile, "Neuer Text"));
        QVERIFY(BackupTestSupport::writeFile(csv, "Gedicht;Podcast\nHerbst;x\n"));
        const auto importText = [textFile](ArchiveContext &context, const PoemPtr &poem) {
            QVERIFY(SinglePoemImport::apply(context, *poem, SinglePoemImport::readTextFile(textFile).value(),
                                            QStringLiteral("herbst.txt"))
                        .ok());
        };
        const auto nothing = [](ArchiveContext &, const PoemPtr &) {};
        const Case cases[] = {
            {"restore",
             [backup](ArchiveContext &context, const PoemPtr &poem) {
                 poem->setWriterNotes(std::nullopt);
                 QVERIFY(context.save().ok());
                 QVERIFY(BackupExporter::writeBackup({poem}, backup).ok());
                 poem->setWriterNotes(QStringLiteral("Notiz A"));
                 QVERIFY(context.save().ok());
             },
             [backup](ArchiveContext &context, const PoemPtr &) {
                 QVERIFY(RestorePlanner::restoreWithSafetyBackup(BackupReader::read(backup).value(), context,
                                                                 RestoreMode::addMissingAndUpdate,
                                                                 QDateTime::currentDateTime())
                             .ok());
             },
             {"Herbst", "Natur", false, "", "Blätter"}},
            {"CSV import",
             nothing,
             [csv](ArchiveContext &context, const PoemPtr &) {
                 QCOMPARE(CSVImporter::importGedichte(csv, context).updated, 1);
             },
             {"Herbst", "Natur", true, "Notiz A", "Blätter"}},
            {"text import", nothing, importText, {"Herbst", "Natur", false, "Notiz A", "Neuer Text"}},
            {"undo of the import",
             importText,
             [](ArchiveContext &context, const PoemPtr &) { QVERIFY(ImportUndo::undoLastImport(context).ok()); },
             {"Herbst", "Natur", false, "Notiz A", "Blätter"}},
            {"category renamed",
             nothing,
             [](ArchiveContext &context, const PoemPtr &) {
                 QVERIFY(CategoryCatalog::renameCategory(context, QStringLiteral("Natur"), QStringLiteral("Landschaft"),
                                                         QDateTime::currentDateTimeUtc()));
             },
             {"Herbst", "Landschaft", false, "Notiz A", "Blätter"}},
            {"category removed",
             nothing,
             [](ArchiveContext &context, const PoemPtr &) {
                 QVERIFY(
                     CategoryCatalog::removeCategory(context, QStringLiteral("Natur"), QDateTime::currentDateTimeUtc())
                         .ok());
             },
             {"Herbst", "", false, "Notiz A", "Blätter"}},
            {"duplicates merged by another program",
             nothing,
             [this](ArchiveContext &context, const PoemPtr &) {
                 auto script = std::move(PersistenceController::open(storePath()).value());
                 for (const PoemPtr &poem : script->viewContext().fetch()) {
                     if (poem->title() == QStringLiteral("Herbst Kopie")) {
                         poem->setDeletedAt(QDateTime::currentDateTimeUtc());
                         continue;
                     }
                     poem->setTitle(QStringLiteral("Herbstlied"));
                     poem->setWriterNotes(QStringLiteral("Notiz A\nNotiz C"));
                 }
                 QVERIFY(script->viewContext().save().ok());
                 QVERIFY(context.refreshFromStore().value());
             },
             {"Herbstlied", "Natur", false, "Notiz A\nNotiz C", "Blätter"}},
        };
        for (const Case &test : cases) {
            cleanup();
            init();
            const PoemPtr poem = storedPoem(QStringLiteral("Herbst"), QStringLiteral("Blätter"));
            poem->setCategory(QStringLiteral("Natur"));
            poem->setWriterNotes(QStringLiteral("Notiz A"));
            storedPoem(QStringLiteral("Herbst Kopie"));
            ArchiveContext &context = m_store->viewContext();
            QVERIFY(context.save().ok());
            test.before(context, poem);
            MainWindow &window = openWindow();
            window.selectPoem(poem);
            PoemDetailView *detail = window.detailView();

            test.change(context, poem);
            const Shown shown{detail->titleField()->text(), detail->categoryField()->currentText(),
                              detail->podcastToggle()->isChecked(), detail->notesField()->toPlainText(),
                              detail->editorPane()->textView()->toPlainText()};
            QVERIFY2(shown.title == test.expected.title && shown.category == test.expected.category &&
                         shown.podcast == test.expected.podcast && shown.notes == test.expected.notes &&
                         shown.text == test.expected.text,
                     test.name);
            QVERIFY2(listedTitles(window).contains(test.expected.title), test.name);

            QTest::keyClick(detail->notesField(), Qt::Key_End, Qt::ControlModifier);
            QTest::keyClicks(detail->notesField(), QStringLiteral(" B"));
            // The title field shows a long title from its beginning: type at its end.
            QTest::keyClick(detail->titleField(), Qt::Key_End);
            QTest::keyClicks(detail->titleField(), QStringLiteral("!"));
            QVERIFY2(!context.hasChanges(), test.name);
            QVERIFY2(poem->writerNotes().value_or(QString()) == test.expected.notes + QStringLiteral(" B"), test.name);
            QVERIFY2(poem->title() == test.expected.title + QStringLiteral("!"), test.name);
            QVERIFY2(poem->category().value_or(QString()) == test.expected.category, test.name);
            QVERIFY2(poem->inPodcast() == test.expected.podcast, test.name);
            QVERIFY2(poem->text() == test.expected.text, test.name);
        }
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

        // A message of megabytes (a CSV header of a million columns) is shown cut, never split
        // inside a character; the whole of it stays behind "Ganze Meldung…".
        auto *shown = panel->findChild<QLabel *>(QStringLiteral("statusText"));
        auto *whole = panel->findChild<QPushButton *>(QStringLiteral("wholeStatusButton"));
        const QString huge = QString(MessageText::statusLimit - 2, QLatin1Char('a')) + QStringLiteral("😀") +
                             QString(9'000'000, QLatin1Char(';'));
        window.setStatus(huge);
        QCOMPARE(panel->status(), huge);
        QCOMPARE(shown->text(), QString(MessageText::statusLimit - 2, QLatin1Char('a')) + QChar(0x2026));
        QVERIFY(shown->toolTip().size() <= MessageText::tooltipLimit);
        QVERIFY(!whole->isHidden());
        // The whole message is shown in lines a viewer can lay out; nothing of it is lost.
        const QString lines = MessageText::inLines(huge);
        QCOMPARE(QString(lines).remove(QLatin1Char('\n')), huge);
        QVERIFY(std::ranges::all_of(lines.split(QLatin1Char('\n')),
                                    [](const QString &line) { return line.size() <= 1000; }));
        QCOMPARE(MessageText::inLines(QStringLiteral("abc\ndefgh"), 3), QStringLiteral("abc\ndef\ngh"));
        QCOMPARE(MessageText::inLines(QStringLiteral("ab😀c"), 3), QStringLiteral("ab😀\nc"));
        window.setStatus(QStringLiteral("Kurz."));
        QCOMPARE(shown->text(), QStringLiteral("Kurz."));
        QVERIFY(whole->isHidden() && shown->toolTip().isEmpty());

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
                     QStringLiteral("Automatische Tagessicherung erstellt: 1 Gedicht gespeichert. Datei: daily-")),
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
                 QStringLiteral("Letzter Import rückgängig gemacht: 1 Gedicht wiederhergestellt."));
        QVERIFY(!operations->imports()->undoAction()->isEnabled());
    }

    // Every sidebar action is in the Archiv menu; the frequent ones have keys no other action has.
    void theArchiveMenuReachesEverySidebarActionByKeyboard()
    {
        m_window = std::make_unique<MainWindow>(m_store->viewContext());
        new ArchiveOperations(*m_window);
        m_window->show();
        QMenu *archive = nullptr;
        for (QAction *entry : m_window->menuBar()->actions()) {
            if (entry->menu() && entry->text() == QStringLiteral("&Archiv"))
                archive = entry->menu();
        }
        QVERIFY(archive);
        const QList<QToolButton *> lines =
            m_window->sidebar()->findChildren<QToolButton *>(QStringLiteral("sidebarAction"));
        QVERIFY(lines.size() >= 11);
        for (const QToolButton *line : lines)
            QVERIFY2(archive->actions().count(line->defaultAction()) == 1, qPrintable(line->text()));
        QHash<QString, QKeySequence> keys;
        for (const QAction *action : archive->actions())
            keys.insert(action->text(), action->shortcut());
        for (const char *frequent :
             {"Backup erstellen", "Wiederherstellen", "Ordner scan", "Bilder-Ordner scan", "CSV-Datei importieren"})
            QVERIFY2(!keys.value(QString::fromUtf8(frequent)).isEmpty(), frequent);
        QHash<QKeySequence, QString> owners;
        for (const QAction *action : m_window->findChildren<QAction *>()) {
            for (const QKeySequence &key : action->shortcuts()) {
                const QString owner = owners.value(key);
                QVERIFY2(
                    owner.isEmpty() || owner == action->text(),
                    qPrintable(key.toString() + QStringLiteral(": ") + owner + QStringLiteral(" / ") + action->text()));
                owners.insert(key, action->text());
            }
        }
    }

    // Tab walks on through the detail pane and leaves the poem as it was; Ctrl+Tab writes a tab.
    void tabLeavesThePoemTextAndCtrlTabInsertsOne()
    {
        const PoemPtr poem = storedPoem(QStringLiteral("Herbst"), QStringLiteral("Blätter"));
        MainWindow &window = openWindow();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.selectPoem(poem);
        RichPoemTextView *body = window.detailView()->editorPane()->textView();
        window.detailView()->focusBody();
        QTRY_VERIFY(body->hasFocus());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QVERIFY(!body->hasFocus());
        QCOMPARE(poem->text(), QStringLiteral("Blätter"));

        body->setFocus();
        QTRY_VERIFY(body->hasFocus());
        body->moveCursor(QTextCursor::End);
        QTest::keyClick(body, Qt::Key_Tab, Qt::ControlModifier);
        QTRY_COMPARE(poem->text(), QStringLiteral("Blätter\t"));
        QVERIFY(body->hasFocus());
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
        // A verse line of forty characters.
        storedPoem(QStringLiteral("Herbst"), QStringLiteral("Die Blätter fallen leise von den Bäumen,"));
        MainWindow &window = openWindow();
        window.addSidebarAction(new QAction(QStringLiteral("Wiederherstellen"), &window));
        window.addSidebarAction(new QAction(QStringLiteral("Bilder-Ordner scannen"), &window));
        window.resize(window.minimumSize());
        window.selectPoem(window.library().poemAt(0));
        QTRY_COMPARE(window.size(), QSize(860, 520));

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

        // The poem text shows at least eight lines, with the verse gutter beside it.
        const auto *gutter = window.detailView()->editorPane()->findChild<VerseGutter *>();
        QVERIFY(gutter);
        QTRY_VERIFY(gutter->isVisible());
        QApplication::processEvents();
        const RichPoemTextView *body = window.detailView()->editorPane()->textView();
        // A line as laid out, leading included; the page margin scrolls away with the text.
        const QTextLayout *firstLine = body->document()->firstBlock().layout();
        QCOMPARE(firstLine->lineCount(), 1);
        QVERIFY(!body->horizontalScrollBar()->isVisible());
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

    void windowsAreFittedIntoTheFreeScreen_data()
    {
        QTest::addColumn<QRect>("wanted");
        QTest::addColumn<QSize>("minimum");
        QTest::addColumn<QRect>("available");
        QTest::addColumn<QRect>("fitted");
        const QRect netbook(0, 0, 1024, 600);
        QTest::newRow("larger than the screen")
            << QRect(0, 0, 1280, 800) << QSize(860, 500) << QRect(0, 0, 900, 560) << QRect(0, 32, 892, 524);
        QTest::newRow("fits already") << QRect(100, 100, 640, 480) << QSize() << QRect(0, 0, 1920, 1080)
                                      << QRect(100, 100, 640, 480);
        QTest::newRow("sticks out right and below")
            << QRect(600, 300, 640, 480) << QSize() << netbook << QRect(384, 120, 640, 480);
        QTest::newRow("second screen") << QRect(1900, 0, 900, 700) << QSize() << QRect(1920, 0, 1024, 600)
                                       << QRect(1920, 32, 900, 564);
        // A minimum taller than the screen keeps the title bar in reach.
        QTest::newRow("minimum taller than the screen")
            << QRect(0, 0, 980, 760) << QSize(700, 600) << QRect(0, 0, 900, 560) << QRect(0, 32, 892, 600);
    }

    void windowsAreFittedIntoTheFreeScreen()
    {
        QFETCH(QRect, wanted);
        QFETCH(QSize, minimum);
        QFETCH(QRect, available);
        QFETCH(QRect, fitted);
        QCOMPARE(ScreenFitGuard::fittedGeometry(wanted, minimum, available), fitted);
    }

    // Each window as it opens on a screen of 900 × 560: inside the screen, its buttons in reach.
    void dialogsFitASmallScreen()
    {
        storedPoem(QStringLiteral("Herbst"), QStringLiteral("Die Blätter fallen"));
        ScreenFitGuard guard;
        qApp->installEventFilter(&guard);
        const QSize room = QSize(900, 560) - ScreenFitGuard::decorationAllowance();
        FolderScanOutcome scan;
        scan.folder = m_dir.path();
        for (int i = 0; i < 40; ++i)
            scan.proposals.append(ImportProposal{});
        ImportReport report{
            QDateTime::currentDateTimeUtc(), QStringLiteral("Letzter Textimport"), QString(2000, QLatin1Char('x')), {}};
        const QList<std::pair<QString, std::function<QDialog *()>>> dialogs = {
            {QStringLiteral("settings"), [this] { return new SettingsWindow(m_store->viewContext(), nullptr); }},
            {QStringLiteral("statistics"),
             [this] { return new StatisticsWindow(StatisticsReport::make(m_store->viewContext().fetch())); }},
            {QStringLiteral("review"), [this, scan] { return new ImportReviewWindow(m_store->viewContext(), scan); }},
            {QStringLiteral("report"), [report] { return new ImportReportWindow(report, QString()); }},
        };
        for (const auto &[name, make] : dialogs) {
            std::unique_ptr<QDialog> dialog(make());
            QVERIFY2(dialog->minimumSizeHint().width() <= room.width() &&
                         dialog->minimumSizeHint().height() <= room.height(),
                     qPrintable(name + QStringLiteral(" needs %1 × %2")
                                           .arg(dialog->minimumSizeHint().width())
                                           .arg(dialog->minimumSizeHint().height())));
            dialog->show();
            QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
            const QRect screen = dialog->screen()->availableGeometry();
            QVERIFY2(screen.contains(dialog->geometry()), qPrintable(name));
            for (const QAbstractButton *button : dialog->findChildren<QAbstractButton *>()) {
                if (!qobject_cast<const QPushButton *>(button) || !button->isVisible() || scrolls(button, dialog.get()))
                    continue;
                QVERIFY2(dialog->rect().contains(QRect(button->mapTo(dialog.get(), QPoint()), button->size())),
                         qPrintable(name + QStringLiteral(": ") + button->text()));
            }
        }
        qApp->removeEventFilter(&guard);
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
        // A shown title starts at its beginning; the poet's click puts the cursor at its end.
        window.detailView()->titleField()->end(false);
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
        TrashDialog dialog(m_store->viewContext(), [&statuses](const QString &status) { statuses.append(status); });
        auto *empty = dialog.findChild<QPushButton *>(QStringLiteral("emptyTrashButton"));
        QCOMPARE(dialog.shownCount(), 1);
        // Trashed elsewhere while the dialog is open: it shows up without asking.
        storedPoem(QStringLiteral("Später"))->setDeletedAt(QDateTime::currentDateTimeUtc());
        QVERIFY(m_store->viewContext().save().ok());
        QTRY_COMPARE(dialog.shownCount(), 2);
        QVERIFY(Trash(m_store->viewContext())
                    .restore(m_store->viewContext().fetch().constLast(), QDateTime::currentDateTimeUtc())
                    .ok());
        QTRY_COMPARE(dialog.shownCount(), 1);
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
        QTRY_COMPARE(dialog.shownCount(), 0);
        QVERIFY(empty->isHidden());
        QCOMPARE(titlesOf(m_store->viewContext().fetch()), QStringList{"Später"});
    }
};

QTEST_MAIN(MainWindowTest)
#include "tst_mainwindow.moc"
