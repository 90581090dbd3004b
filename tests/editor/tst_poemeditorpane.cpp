#include "EditorTestSupport.h"

#include "archive/AppPreferences.h"
#include "archive/ApplicationSupport.h"
#include "archive/PersistenceController.h"
#include "archive/PoemEdit.h"
#include "archive/PoemFactory.h"
#include "editor/AppTheme.h"
#include "editor/PoemRichText.h"
#include "editor/RhymeProvider.h"
#include "editor/RichTextEditing.h"
#include "editor/gui/EditorToolBar.h"
#include "editor/gui/FindReplaceBar.h"
#include "editor/gui/PoemEditorActions.h"
#include "editor/gui/PoemEditorPane.h"
#include "editor/gui/RichPoemTextView.h"
#include "editor/gui/VerseGutter.h"
#include "editor/gui/WritingStatsBar.h"

#include <QAbstractTextDocumentLayout>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSet>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextImageFormat>
#include <QTextLayout>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

using namespace EditorTestSupport;

namespace {

// Every command a click on the toolbar reaches: the shown buttons and their menus.
QSet<QAction *> reachableCommands(const QToolBar &bar)
{
    QSet<QAction *> reached;
    QList<QMenu *> menus;
    for (const QToolButton *button : bar.findChildren<QToolButton *>()) {
        if (!button->isVisible())
            continue;
        if (button->defaultAction())
            reached.insert(button->defaultAction());
        if (button->menu())
            menus.append(button->menu());
    }
    while (!menus.isEmpty()) {
        for (QAction *action : menus.takeFirst()->actions()) {
            reached.insert(action);
            if (action->menu())
                menus.append(action->menu());
        }
    }
    return reached;
}

std::unique_ptr<PoemTextDocument> storedDocument(const Poem &poem)
{
    return PoemRichText::decode(poem.richTextData().value_or(QByteArray()));
}

} // namespace

// Receives the addresses the pane asks the desktop to open.
class UrlCatcher : public QObject {
    Q_OBJECT

public:
    QList<QUrl> opened;

public Q_SLOTS:
    void open(const QUrl &url) { opened.append(url); }
};

class PoemEditorPaneTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    std::unique_ptr<PersistenceController> m_store;
    std::unique_ptr<PoemEditorPane> m_pane;
    PoemPtr m_poem;
    UrlCatcher m_urls;

    ArchiveContext &context() { return m_store->viewContext(); }
    RichPoemTextView *view() { return m_pane->textView(); }

    PoemPtr addPoem(const std::optional<QString> &text, const std::optional<QByteArray> &rich = std::nullopt)
    {
        PoemPtr poem = PoemFactory::makeNewPoem(context(), QDateTime(QDate(2025, 5, 1), QTime(10, 0), Qt::UTC));
        poem->setText(text);
        poem->setRichTextData(rich);
        poem->setWriterNotes(QStringLiteral("erste Fassung"));
        if (!context().save())
            qWarning("could not save the sample poem");
        return poem;
    }

    void placeCursor(int position, int anchor = -1)
    {
        QTextCursor cursor = view()->textCursor();
        cursor.setPosition(anchor >= 0 ? anchor : position);
        if (anchor >= 0)
            cursor.setPosition(position, QTextCursor::KeepAnchor);
        view()->setTextCursor(cursor);
    }

private Q_SLOTS:
    void initTestCase()
    {
        ApplicationSupport::setDirectory(m_dir.path());
        AppPreferences::applyAppLanguage(AppLanguage::german);
        QDesktopServices::setUrlHandler(QStringLiteral("https"), &m_urls, "open");
    }

    void cleanupTestCase() { QDesktopServices::unsetUrlHandler(QStringLiteral("https")); }

    void statisticsBadgesWrapInsteadOfBeingCut()
    {
        // As under the editor: a column of the given width holds the bar.
        QWidget column;
        auto *layout = new QVBoxLayout(&column);
        auto &bar = *new WritingStatsBar(&column);
        layout->addWidget(&bar);
        WritingStats stats;
        stats.words = 1234;
        stats.characters = 56789;
        stats.lines = 321;
        stats.stanzas = 45;
        bar.setStats(stats);
        column.resize(340, 90);
        column.show();
        QVERIFY(QTest::qWaitForWindowExposed(&column));
        QCOMPARE(bar.badgesPerRow(), 2);
        for (const QLabel *badge : bar.findChildren<QLabel *>(QStringLiteral("statsBadge")))
            QVERIFY2(badge->geometry().right() < bar.width() && badge->width() >= badge->sizeHint().width(),
                     qPrintable(badge->text()));
        column.resize(900, 90);
        QTRY_COMPARE(bar.badgesPerRow(), 4);
    }

    void init()
    {
        m_store = PersistenceController::inMemory();
        m_pane = std::make_unique<PoemEditorPane>(context());
        m_pane->resize(900, 640);
        m_pane->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_pane.get()));
        m_poem = addPoem(QStringLiteral("Der Mond ist aufgegangen"));
        m_pane->setPoem(m_poem);
        m_urls.opened.clear();
    }

    void cleanup()
    {
        m_pane.reset();
        m_poem.reset();
        m_store.reset();
    }

    void toolbarFormFollowsTheWidthAndKeepsEveryCommand()
    {
        EditorToolBar *bar = m_pane->toolBar();
        const int fullWidth = bar->widthFor(EditorToolBar::Form::full);
        const int compactWidth = bar->widthFor(EditorToolBar::Form::compact);
        const int minimalWidth = bar->widthFor(EditorToolBar::Form::minimal);
        QVERIFY(fullWidth > compactWidth && compactWidth > minimalWidth);
        // Fits the detail column of the smallest window.
        QVERIFY2(minimalWidth <= 320, qPrintable(QString::number(minimalWidth)));

        m_pane->resize(fullWidth + 200, 640);
        QTRY_COMPARE(bar->form(), EditorToolBar::Form::full);
        QSet<QAction *> everyCommand = reachableCommands(*bar);
        // "Reime…" looks up the same word as its menu's first entry, which "Mehr" holds.
        everyCommand.remove(m_pane->actions()->rhymes);
        QVERIFY(everyCommand.contains(m_pane->actions()->clearFormatting));

        const QList<QPair<int, EditorToolBar::Form>> widths = {
            {fullWidth, EditorToolBar::Form::full},       {fullWidth - 1, EditorToolBar::Form::compact},
            {compactWidth, EditorToolBar::Form::compact}, {compactWidth - 1, EditorToolBar::Form::minimal},
            {minimalWidth, EditorToolBar::Form::minimal},
        };
        for (const auto &[width, form] : widths) {
            m_pane->resize(width, 640);
            QTRY_COMPARE(bar->width(), width);
            QCOMPARE(bar->form(), form);
            // Nothing spills into the overflow arrow, and nothing is clipped at the edge.
            const auto *overflow = bar->findChild<QWidget *>(QStringLiteral("qt_toolbar_ext_button"));
            QVERIFY2(!overflow || !overflow->isVisible(), qPrintable(QString::number(width)));
            for (const QToolButton *button : bar->findChildren<QToolButton *>()) {
                if (button->isVisible() && button != overflow)
                    QVERIFY2(bar->rect().contains(button->geometry()), qPrintable(button->text()));
            }
            QVERIFY2(reachableCommands(*bar).contains(everyCommand), qPrintable(QString::number(width)));
        }
        // The smaller form's "Mehr" leaves the shared commands visible in the menus.
        QVERIFY(m_pane->actions()->clearFormatting->isVisible());
    }

    // Each gutter row stands level with its line as laid out, also after a line that wraps
    // and at a larger font; the metre marks its breaking lines on a click; "Versmaß" off is
    // remembered.
    void verseGutterFollowsTheLaidOutLines()
    {
        const QString longLine = QStringLiteral("So für mich hin und immer weiter durch den Wald und über alle Berge "
                                                "bis an das Ende der Welt");
        m_poem = addPoem(QStringLiteral("Ich ging im Walde\n") + longLine +
                         QStringLiteral("\nUnd nichts zu suchen,\nDas war mein Sinn.\n\nIm Schatten sah ich"));
        m_pane->setPoem(m_poem);
        VerseGutter *gutter = m_pane->verseGutter();
        QTRY_COMPARE(gutter->analysis().lines().size(), 5);
        QVERIFY(gutter->isVisible());

        const auto rowsLevelWithBlocks = [&] {
            const QList<QPair<const VerseLine *, QRect>> rows = gutter->lineRects();
            if (rows.size() != 5)
                return false;
            for (const auto &[line, row] : rows) {
                const QTextBlock block = view()->document()->findBlockByNumber(line->lineNumber);
                QRectF box = view()->document()->documentLayout()->blockBoundingRect(block);
                box.translate(0, -view()->verticalScrollBar()->value());
                const int top =
                    gutter->mapFrom(m_pane.get(), view()->viewport()->mapTo(m_pane.get(), box.topLeft().toPoint())).y();
                if (row.top() < top - 1 || row.bottom() > top + box.height() + 1)
                    return false;
            }
            return true;
        };
        QVERIFY(rowsLevelWithBlocks());
        const QList<QPair<const VerseLine *, QRect>> rows = gutter->lineRects();
        QVERIFY2(rows.at(2).second.top() - rows.at(1).second.top() > 3 * rows.at(1).second.height() / 2,
                 "the long line should wrap and push the next row down");

        view()->selectAll();
        for (int i = 0; i < 4; ++i)
            m_pane->send(RichTextCommand(RichTextCommand::Kind::increaseFontSize));
        QTRY_VERIFY(gutter->lineRects().at(0).second.height() > rows.at(0).second.height());
        QVERIFY(rowsLevelWithBlocks());

        const QList<int> breaking = gutter->analysis().breakingLineNumbers();
        QVERIFY(!breaking.isEmpty());
        auto *meter = m_pane->statsBar()->findChild<QToolButton *>(QStringLiteral("meterButton"));
        QVERIFY(meter && meter->isVisible());
        QVERIFY(m_pane->statsBar()->meterText().startsWith(gutter->analysis().meterText()));
        meter->click();
        QCOMPARE(view()->extraSelections().size(), breaking.size());
        meter->click();
        QVERIFY(view()->extraSelections().isEmpty());

        m_pane->actions()->toggleVerse->trigger();
        QVERIFY(!gutter->isVisible());
        QVERIFY(!meter->isVisible());
        PoemEditorPane reopened(context());
        QVERIFY(!reopened.showsVerseTools());
        m_pane->actions()->toggleVerse->trigger();
        QTRY_VERIFY(gutter->isVisible());
    }

    void typingSavesBothFormsAtOnce()
    {
        QSignalSpy saved(m_pane.get(), &PoemEditorPane::saveStatusChanged);
        QSignalSpy changed(m_pane.get(), &PoemEditorPane::poemChanged);
        const QDateTime before = *m_poem->updatedAt();
        view()->setFocus();
        view()->moveCursor(QTextCursor::End);
        QTest::keyClicks(view(), QStringLiteral(", die goldnen"));
        QTest::keyClick(view(), Qt::Key_Return);
        QTest::keyClicks(view(), QStringLiteral("Sternlein prangen"));

        const QString expected = QStringLiteral("Der Mond ist aufgegangen, die goldnen\nSternlein prangen");
        QCOMPARE(m_poem->text(), std::optional<QString>(expected));
        QVERIFY(!context().hasChanges());
        QVERIFY(*m_poem->updatedAt() > before);
        QCOMPARE(PoemRichText::plainText(*storedDocument(*m_poem)), expected);
        QCOMPARE(saved.last().first().toString(), QStringLiteral("Gespeichert"));
        QCOMPARE(m_pane->saveStatus(), QStringLiteral("Gespeichert"));
        QVERIFY(changed.last().first().toBool());
        QCOMPARE(m_pane->stats().words, 8);
        QCOMPARE(m_pane->stats().lines, 2);
    }

    void boldAndItsUndoAreSavedAsOneStepEach()
    {
        view()->setFocus();
        placeCursor(8, 4); // "Mond"
        QSignalSpy changed(m_pane.get(), &PoemEditorPane::poemChanged);
        QTest::keyClick(view(), Qt::Key_B, Qt::ControlModifier);
        QCOMPARE(formatOf(*storedDocument(*m_poem), QStringLiteral("Mond")).fontWeight(), int(QFont::Bold));
        QCOMPARE(formatOf(*storedDocument(*m_poem), QStringLiteral("Der")).fontWeight(), int(QFont::Normal));
        QCOMPARE(m_poem->text(), std::optional<QString>(QStringLiteral("Der Mond ist aufgegangen")));
        // Formatting alone does not change what the list shows.
        QVERIFY(!changed.last().first().toBool());

        QTest::keyClick(view(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(formatOf(*storedDocument(*m_poem), QStringLiteral("Mond")).fontWeight(), int(QFont::Normal));
        QTest::keyClick(view(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(formatOf(*storedDocument(*m_poem), QStringLiteral("Mond")).fontWeight(), int(QFont::Bold));
    }

    void toolbarCommandsReachTheText()
    {
        placeCursor(3);
        m_pane->actions()->alignCenter->trigger();
        QCOMPARE(storedDocument(*m_poem)->begin().blockFormat().alignment() & Qt::AlignHorizontal_Mask,
                 Qt::AlignHCenter);
        m_pane->actions()->spacings.last()->trigger();
        QCOMPARE(storedDocument(*m_poem)->begin().blockFormat().bottomMargin(), 4.0);
        placeCursor(24, 16);
        m_pane->actions()->colors.at(1)->trigger();
        QCOMPARE(formatOf(*storedDocument(*m_poem), QStringLiteral("gegangen")).foreground().color(),
                 AppTheme::accent());
        // Replaces the selection.
        m_pane->actions()->insertDivider->trigger();
        QCOMPARE(m_poem->text(), std::optional<QString>(QStringLiteral("Der Mond ist auf\n* * *\n")));
    }

    void commandsWithoutAPoemAreDropped()
    {
        m_pane->setPoem(nullptr);
        m_pane->send(RichTextCommand(RichTextCommand::Kind::insertDivider));
        QCOMPARE(m_poem->text(), std::optional<QString>(QStringLiteral("Der Mond ist aufgegangen")));
        QVERIFY(!view()->isEnabled());
    }

    void footerIsAppendedAtTheInsertionPoint()
    {
        QVERIFY(AppPreferences::setPoemFooterAuthor(QStringLiteral("Ida Berg")).ok());
        QVERIFY(AppPreferences::setPoemFooterPlace(QString()).ok());
        view()->moveCursor(QTextCursor::End);
        m_pane->actions()->insertFooter->trigger();
        const QString today = QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy"));
        QCOMPARE(*m_poem->text(), QStringLiteral("Der Mond ist aufgegangen© Ida Berg\n") + today);
    }

    void findBarReportsEveryStatus()
    {
        m_poem->setText(QStringLiteral("Rose, rosé und ROSE"));
        QVERIFY(context().save().ok());
        FindReplaceBar *bar = m_pane->findReplaceBar();
        m_pane->actions()->find->trigger();
        QVERIFY(m_pane->isFindReplaceVisible());
        bar->setFindText(QString());
        Q_EMIT bar->findNextRequested();
        QCOMPARE(m_pane->findReplaceStatus(), QStringLiteral("Kein Suchbegriff"));
        bar->setFindText(QStringLiteral("Tulpe"));
        Q_EMIT bar->findNextRequested();
        QCOMPARE(m_pane->findReplaceStatus(), QStringLiteral("Nicht gefunden"));

        bar->setFindText(QStringLiteral("rose"));
        placeCursor(19);
        Q_EMIT bar->findNextRequested(); // wraps to the first
        QCOMPARE(view()->textCursor().selectionStart(), 0);
        Q_EMIT bar->findPreviousRequested(); // wraps to the last
        QCOMPARE(view()->textCursor().selectionStart(), 15);

        bar->findChild<QLineEdit *>()->setText(QStringLiteral("rose"));
        const auto edits = bar->findChildren<QLineEdit *>();
        edits.at(1)->setText(QStringLiteral("Lilie"));
        Q_EMIT bar->replaceRequested();
        QCOMPARE(m_pane->findReplaceStatus(), QStringLiteral("Ersetzt"));
        QCOMPARE(*m_poem->text(), QStringLiteral("Rose, rosé und Lilie"));
        Q_EMIT bar->replaceAllRequested();
        QCOMPARE(m_pane->findReplaceStatus(), QStringLiteral("2 Treffer ersetzt"));
        QCOMPARE(*m_poem->text(), QStringLiteral("Lilie, Lilie und Lilie"));
        Q_EMIT bar->replaceAllRequested();
        QCOMPARE(m_pane->findReplaceStatus(), QStringLiteral("0 Treffer ersetzt"));
    }

    void unreadableRichTextIsLeftAloneUntilTheNextEdit()
    {
        const QByteArray broken("\x01\x02 kaputt", 9);
        PoemPtr poem = addPoem(QStringLiteral("Klartext"), broken);
        const QDateTime stamped = *poem->updatedAt();
        m_pane->setPoem(poem);
        QCOMPARE(PoemRichText::plainText(*view()->document()), QStringLiteral("Klartext"));
        QTest::qWait(20); // let the highlighter run
        QCOMPARE(poem->richTextData(), std::optional<QByteArray>(broken));
        QCOMPARE(*poem->updatedAt(), stamped);

        view()->moveCursor(QTextCursor::End);
        QTest::keyClicks(view(), QStringLiteral("!"));
        QVERIFY(PoemRichText::decode(*poem->richTextData()));
        QCOMPARE(*poem->text(), QStringLiteral("Klartext!"));
    }

    void richTextWinsOverPlainTextAndReloadsWhenTheRecordChanges()
    {
        auto formatted = PoemRichText::fromPlainText(QStringLiteral("Reich"));
        PoemPtr poem = addPoem(QString(), *PoemRichText::encode(*formatted));
        m_pane->setPoem(poem);
        QCOMPARE(PoemRichText::plainText(*view()->document()), QStringLiteral("Reich"));

        // Someone else (an import) writes the record: the editor follows.
        QVERIFY(PoemEdit::apply(
            context(), *poem,
            [](Poem &p) {
                p.setText(QStringLiteral("Neu"));
                p.setRichTextData(*PoemRichText::encodePlainText(QStringLiteral("Neu")));
            },
            QDateTime::currentDateTimeUtc()));
        QCOMPARE(PoemRichText::plainText(*view()->document()), QStringLiteral("Neu"));
    }

    void notesAreSavedLikeTheText()
    {
        m_pane->setWriterNotesVisible(true);
        auto *notes = m_pane->findChild<QPlainTextEdit *>();
        QVERIFY(notes->isVisible());
        QCOMPARE(notes->toPlainText(), QStringLiteral("erste Fassung"));
        notes->setFocus();
        notes->moveCursor(QTextCursor::End);
        QTest::keyClicks(notes, QStringLiteral(", gekuerzt"));
        QCOMPARE(m_poem->writerNotes(), std::optional<QString>(QStringLiteral("erste Fassung, gekuerzt")));
        QCOMPARE(m_pane->saveStatus(), QStringLiteral("Gespeichert"));
    }

    void searchHighlightIsShownButNeverSaved()
    {
        const QByteArray before = m_poem->richTextData().value_or(QByteArray());
        m_pane->setSearchHighlight(QStringLiteral("mond"));
        const auto formats = view()->document()->begin().layout()->formats();
        QVERIFY(std::any_of(formats.cbegin(), formats.cend(), [](const QTextLayout::FormatRange &range) {
            return range.start == 4 && range.format.background().color() == QColor(255, 204, 0);
        }));
        QCOMPARE(m_poem->richTextData().value_or(QByteArray()), before);
        view()->moveCursor(QTextCursor::End);
        QTest::keyClicks(view(), QStringLiteral("."));
        QVERIFY(!m_poem->richTextData()->contains("\\cb"));
    }

    void readOnlyPaneShowsThePlaceholder()
    {
        PoemPtr empty = addPoem(std::nullopt);
        m_pane->setEditable(false);
        m_pane->setPoem(empty);
        QCOMPARE(PoemRichText::plainText(*view()->document()), QStringLiteral("— kein Text —"));
        QVERIFY(view()->isReadOnly());
        QTest::keyClicks(view(), QStringLiteral("x"));
        QVERIFY(!empty->text());
        // The placeholder is no text of the poem.
        QCOMPARE(m_pane->stats(), WritingStats());

        // A trashed poem's counts come from its plain text, not from what the view shows.
        PoemPtr written = addPoem(QStringLiteral("Eins zwei\ndrei"),
                                  PoemRichText::encodePlainText(QStringLiteral("Eins zwei drei vier")).value());
        m_pane->setPoem(written);
        QCOMPARE(m_pane->stats().words, 3);
        QCOMPARE(m_pane->stats().lines, 2);
    }

    void rhymesUseTheWordAtTheCursorAndEveryProvider()
    {
        placeCursor(6); // inside "Mond"
        m_pane->actions()->rhymes->trigger();
        QCOMPARE(m_urls.opened.size(), 1);
        QCOMPARE(m_urls.opened.last(), *RhymeLookup::url(defaultRhymeProvider(), QStringLiteral("Mond")));
        placeCursor(24, 13); // "aufgegangen"
        m_pane->actions()->rhymeProviders.at(2)->trigger();
        QCOMPARE(m_urls.opened.last(), *RhymeLookup::url(RhymeProvider::reimOMat, QStringLiteral("aufgegangen")));
    }

    void duplicateAndWriterModeAreReported()
    {
        QSignalSpy duplicate(m_pane.get(), &PoemEditorPane::duplicateRequested);
        QSignalSpy writer(m_pane.get(), &PoemEditorPane::writerModeChanged);
        m_pane->actions()->duplicate->trigger();
        QCOMPARE(duplicate.size(), 1);
        m_pane->actions()->toggleWriterMode->trigger();
        QCOMPARE(writer.size(), 1);
        QVERIFY(writer.first().first().toBool());
        m_pane->setWriterToolbarHidden(true);
        QVERIFY(!m_pane->findChild<QToolBar *>()->isVisible());
        m_pane->setWriterMode(false);
        QVERIFY(m_pane->findChild<QToolBar *>()->isVisible());
    }

    void imagesArriveThroughTheCommandAndThroughPaste()
    {
        const QString path = m_dir.filePath(QStringLiteral("bild.png"));
        QVERIFY(patternImage(400, 200).save(path));
        view()->moveCursor(QTextCursor::End);
        m_pane->send(RichTextCommand::insertImage(path));
        QCOMPARE(imageCount(*storedDocument(*m_poem)), 1);
        QSignalSpy status(m_pane.get(), &PoemEditorPane::statusMessage);
        m_pane->send(RichTextCommand::insertImage(m_dir.filePath(QStringLiteral("fehlt.png"))));
        QCOMPARE(status.size(), 1);
        QVERIFY(status.first().first().toString().startsWith(QStringLiteral("Bild konnte nicht gespeichert werden: ")));

        // Copy the whole text and paste it again: the image travels as RTF.
        view()->selectAll();
        view()->copy();
        QVERIFY(QApplication::clipboard()->mimeData()->hasFormat(QStringLiteral("text/rtf")));
        view()->moveCursor(QTextCursor::End);
        view()->paste();
        QCOMPARE(imageCount(*storedDocument(*m_poem)), 2);
        const auto stored = storedDocument(*m_poem);
        QVERIFY(stored->pngData(firstImage(*stored).name()));

        // An image file from the file manager arrives as the image, not as its path.
        auto *files = new QMimeData;
        files->setUrls({QUrl::fromLocalFile(path)});
        QApplication::clipboard()->setMimeData(files);
        view()->paste();
        QCOMPARE(imageCount(*storedDocument(*m_poem)), 3);
        QVERIFY(!m_poem->text()->contains(QStringLiteral("bild.png")));
    }

    // A photo in a poem on disk: typing next to it saves without re-encoding it, and the
    // file gives back its very bytes.
    void aPhotoKeepsItsBytesThroughTypingAndReopening()
    {
        const QString photo = m_dir.filePath(QStringLiteral("foto.jpg"));
        QVERIFY(patternImage(1600, 1200).save(photo, "JPEG", 85));
        QFile file(photo);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray jpeg = file.readAll();
        const QString storePath = m_dir.filePath(QStringLiteral("mit-foto.sqlite"));
        QByteArray typed;
        {
            auto store = PersistenceController::open(storePath);
            QVERIFY(store);
            ArchiveContext &onDisk = (*store)->viewContext();
            PoemPtr poem = PoemFactory::makeNewPoem(onDisk, QDateTime::currentDateTimeUtc());
            poem->setText(QStringLiteral("Am Meer"));
            QVERIFY(onDisk.save());
            PoemEditorPane pane(onDisk);
            pane.show();
            pane.setPoem(poem);
            pane.textView()->moveCursor(QTextCursor::End);
            pane.send(RichTextCommand::insertImage(photo));
            pane.textView()->moveCursor(QTextCursor::Start);
            QTest::keyClicks(pane.textView(), QStringLiteral("Abends "));
            QVERIFY(!onDisk.hasChanges());
            typed = poem->richTextData().value_or(QByteArray());
        }
        auto reopened = PersistenceController::open(storePath);
        QVERIFY(reopened);
        const auto poems = (*reopened)->viewContext().fetch();
        QCOMPARE(poems.size(), 1);
        QCOMPARE(poems.front()->richTextData(), std::optional<QByteArray>(typed));
        const auto document = storedDocument(*poems.front());
        QVERIFY(PoemRichText::plainText(*document).startsWith(QStringLiteral("Abends Am Meer")));
        QCOMPARE(document->picture(firstImage(*document).name())->bytes, jpeg);
    }

    // On a conflict the window tells standard error (the system journal, when started from
    // a desktop) which poem it was by its id, never by its title or its words.
    void conflictsAreLoggedByIdOnly()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("OdeLeaf.sqlite"));
        auto mine = PersistenceController::open(path);
        QVERIFY(mine.ok());
        ArchiveContext &archive = (*mine)->viewContext();
        const PoemPtr poem = PoemFactory::makeNewPoem(archive, QDateTime::currentDateTimeUtc());
        poem->setTitle(QStringLiteral("Geheimes Liebesgedicht"));
        poem->setText(QStringLiteral("Nur für dich"));
        QVERIFY(archive.save().ok());
        {
            auto other = PersistenceController::open(path);
            QVERIFY(other.ok());
            (*other)->viewContext().poemWithID(*poem->id())->setText(QStringLiteral("Fassung aus dem Nebenfenster"));
            QVERIFY((*other)->viewContext().save().ok());
        }
        PoemEditorPane pane(archive);
        pane.show();
        QVERIFY(QTest::qWaitForWindowExposed(&pane));
        pane.setPoem(poem);

        static QStringList logged;
        logged.clear();
        const QtMessageHandler previous = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext &, const QString &message) { logged.append(message); });
        pane.textView()->setFocus();
        pane.textView()->moveCursor(QTextCursor::End);
        QTest::keyClicks(pane.textView(), QStringLiteral(" und mich"));
        qInstallMessageHandler(previous);

        const bool named = std::any_of(logged.begin(), logged.end(), [&poem](const QString &line) {
            return line.contains(QStringLiteral("apply/save failed")) && line.contains(uuidText(*poem->id()));
        });
        QVERIFY2(named, qPrintable(logged.join(u'\n')));
        for (const QString &line : std::as_const(logged)) {
            for (const QString &words : {QStringLiteral("Geheimes"), QStringLiteral("Nur für dich"),
                                         QStringLiteral("Nebenfenster"), QStringLiteral("und mich")})
                QVERIFY2(!line.contains(words), qPrintable(line));
        }
    }

    void rendersInBothAppearances()
    {
        auto formatted = PoemRichText::fromPlainText(QStringLiteral("Abendlied\nDer Mond ist aufgegangen,\n"
                                                                    "die goldnen Sternlein prangen\n"));
        QTextCursor cursor(formatted.get());
        cursor.setPosition(0);
        cursor.setPosition(9, QTextCursor::KeepAnchor);
        RichTextEditing::toggleBold(cursor);
        RichTextEditing::changeFontSize(cursor, 5);
        RichTextEditing::setAlignment(cursor, Qt::AlignHCenter);
        cursor.setPosition(40);
        cursor.setPosition(47, QTextCursor::KeepAnchor);
        RichTextEditing::setTextColor(cursor, AppTheme::accent());
        RichTextEditing::toggleItalic(cursor);
        cursor.movePosition(QTextCursor::End);
        RichTextEditing::insertSectionMark(cursor);
        cursor.insertText(QStringLiteral("Wie ist die Welt so stille"));
        cursor.insertBlock();
        QVERIFY(RichTextEditing::insertImage(cursor, patternImage(360, 200), 400));
        cursor.insertBlock();
        RichTextEditing::insertCaption(cursor);
        cursor.insertText(QStringLiteral("Am Fluss, im Herbst"));
        PoemPtr poem = addPoem(PoemRichText::plainText(*formatted), *PoemRichText::encode(*formatted));
        m_pane->setPoem(poem);
        QTRY_VERIFY(m_pane->spellChecker());
        m_pane->setSearchHighlight(QStringLiteral("Sternlein"));
        m_pane->actions()->find->trigger();
        m_pane->findReplaceBar()->setFindText(QStringLiteral("Welt"));
        Q_EMIT m_pane->findReplaceBar()->findNextRequested();

        const QString folder = qEnvironmentVariable("ODELEAF_SCREENSHOT_DIR");
        if (!folder.isEmpty()) {
            QFile rtf(QDir(folder).filePath(QStringLiteral("poem.rtf")));
            QVERIFY(rtf.open(QIODevice::WriteOnly));
            rtf.write(*poem->richTextData());
        }
        for (const EditorAppearance appearance : allEditorAppearances) {
            m_pane->setAppearance(appearance);
            QTest::qWait(30);
            const QImage shot = m_pane->grab().toImage();
            // The writing surface shows the appearance's colour right of the text.
            const QPoint probe = view()->mapTo(m_pane.get(), QPoint(view()->width() - 30, view()->height() - 30));
            QCOMPARE(QColor(shot.pixel(probe)), surfaceColor(appearance));
            if (!folder.isEmpty())
                QVERIFY(shot.save(QDir(folder).filePath(QStringLiteral("editor-%1.png").arg(rawValue(appearance)))));
        }

        m_pane->resize(1300, 700);
        m_pane->setWriterNotesVisible(true);
        m_pane->setFocusMode(true);
        QVERIFY(!m_pane->findChild<QToolBar *>()->isVisible());
        QVERIFY(!m_pane->findChild<QPlainTextEdit *>()->isVisible());
        // The text keeps a comfortable line length in the middle.
        QTRY_VERIFY(view()->width() < 1000);
        if (!folder.isEmpty())
            QVERIFY(m_pane->grab().save(QDir(folder).filePath(QStringLiteral("editor-focus.png"))));
        m_pane->setFocusMode(false);
        QVERIFY(m_pane->findChild<QPlainTextEdit *>()->isVisible());
        if (!folder.isEmpty())
            QVERIFY(m_pane->grab().save(QDir(folder).filePath(QStringLiteral("editor-notes.png"))));
    }
};

QTEST_MAIN(PoemEditorPaneTest)
#include "tst_poemeditorpane.moc"
