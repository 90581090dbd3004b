#include "editor/gui/PoemEditorPane.h"

#include "archive/AppPreferences.h"
#include "archive/ArchiveContext.h"
#include "archive/PoemEdit.h"
#include "editor/DisplayedPoemText.h"
#include "editor/ParagraphSpacingOption.h"
#include "editor/PoemFooter.h"
#include "editor/PoemRichText.h"
#include "editor/PoemTextDocument.h"
#include "editor/PoemTextWriter.h"
#include "editor/SpellChecker.h"
#include "editor/TextColorOption.h"
#include "editor/TextFinder.h"
#include "editor/gui/EditorToolBar.h"
#include "editor/gui/FindReplaceBar.h"
#include "editor/gui/PoemEditorActions.h"
#include "editor/gui/RhymeWordDialog.h"
#include "editor/gui/RichPoemTextView.h"
#include "editor/gui/VerseGutter.h"
#include "editor/gui/WritingStatsBar.h"
#include "verse/BackgroundVerseAnalyzer.h"

#include <QAction>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QFileDialog>
#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QStandardPaths>
#include <QThread>
#include <QVBoxLayout>
#include <QtDebug>

namespace {

constexpr int focusModeTextWidth = 760;

QString savedText()
{
    return QCoreApplication::translate("PoemEditorPane", "Gespeichert");
}

// Not translated: the text the program logs and shows for a failed write.
const QString saveFailedText = QStringLiteral("apply/save failed");

} // namespace

PoemEditorPane::PoemEditorPane(ArchiveContext &context, QWidget *parent)
    : QWidget(parent), m_context(context), m_actions(new PoemEditorActions(this))
{
    buildLayout();
    setAppearance(m_appearance);
    connectActions();
    connect(&m_context, &ArchiveContext::contextDidChange, this, &PoemEditorPane::reloadIfNeeded);
    setPoem(nullptr);
    loadSpellChecker();
}

// A dictionary takes a noticeable moment to load; the editor is usable meanwhile and marks
// misspellings as soon as it is there.
void PoemEditorPane::loadSpellChecker()
{
    auto loaded = std::make_shared<std::unique_ptr<SpellChecker>>();
    // Poems are German unless a paragraph shows otherwise, in whichever language the window speaks.
    QThread *loader = QThread::create([loaded] { *loaded = std::make_unique<SpellChecker>(); });
    connect(loader, &QThread::finished, this, [this, loaded] {
        m_spellChecker = std::move(*loaded);
        m_view->setSpellChecker(m_spellChecker.get());
        // The poem's language is the dictionary's call.
        analyseVerse();
    });
    connect(loader, &QThread::finished, loader, &QObject::deleteLater);
    loader->start();
}

PoemEditorPane::~PoemEditorPane() = default;

void PoemEditorPane::buildLayout()
{
    m_toolBar = new EditorToolBar(*m_actions, this);
    m_findBar = new FindReplaceBar(this);
    m_findBar->hide();

    m_view = new RichPoemTextView(this);

    m_notesPanel = new QWidget(this);
    auto *notesLayout = new QVBoxLayout(m_notesPanel);
    notesLayout->setContentsMargins(10, 8, 10, 8);
    auto *notesTitle = new QLabel(tr("Notizen"), m_notesPanel);
    QFont titleFont = notesTitle->font();
    titleFont.setBold(true);
    notesTitle->setFont(titleFont);
    m_notes = new QPlainTextEdit(m_notesPanel);
    m_notes->setPlaceholderText(tr("Gedanken, Quellen, Fassungen …"));
    notesLayout->addWidget(notesTitle);
    notesLayout->addWidget(m_notes);
    m_notesPanel->hide();

    // Around a narrowed text (focus mode) the writing surface goes on to the edges.
    m_editorArea = new QWidget(this);
    m_editorArea->setAutoFillBackground(true);
    auto *editorLayout = new QHBoxLayout(m_editorArea);
    editorLayout->setContentsMargins(0, 0, 0, 0);
    editorLayout->addStretch(0);
    editorLayout->addWidget(m_view, 1);
    m_gutter = new VerseGutter(m_view, m_editorArea);
    editorLayout->addWidget(m_gutter);
    editorLayout->addStretch(0);

    m_splitter = new QSplitter(Qt::Horizontal, this);
    m_splitter->addWidget(m_editorArea);
    m_splitter->addWidget(m_notesPanel);
    m_splitter->setStretchFactor(0, 3);
    m_splitter->setStretchFactor(1, 1);
    m_splitter->setChildrenCollapsible(false);

    m_statsBar = new WritingStatsBar(this);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_toolBar);
    layout->addWidget(m_findBar);
    layout->addWidget(m_splitter, 1);
    layout->addWidget(m_statsBar);
}

void PoemEditorPane::connectActions()
{
    using Kind = RichTextCommand::Kind;
    const QList<QPair<QAction *, Kind>> plain = {
        {m_actions->undo, Kind::undo},
        {m_actions->redo, Kind::redo},
        {m_actions->bold, Kind::bold},
        {m_actions->italic, Kind::italic},
        {m_actions->underline, Kind::underline},
        {m_actions->biggerFont, Kind::increaseFontSize},
        {m_actions->smallerFont, Kind::decreaseFontSize},
        {m_actions->alignLeft, Kind::alignLeft},
        {m_actions->alignCenter, Kind::alignCenter},
        {m_actions->alignRight, Kind::alignRight},
        {m_actions->clearFormatting, Kind::clearFormatting},
        {m_actions->checkSpelling, Kind::checkSpelling},
        {m_actions->insertCaption, Kind::insertCaption},
        {m_actions->insertDivider, Kind::insertDivider},
        {m_actions->insertTab, Kind::insertTab},
    };
    for (const auto &[action, kind] : plain)
        connect(action, &QAction::triggered, this, [this, kind = kind] { send(RichTextCommand(kind)); });
    for (QAction *action : std::as_const(m_actions->colors)) {
        connect(action, &QAction::triggered, this,
                [this, action] { send(RichTextCommand::textColor(color(TextColorOption(action->data().toInt())))); });
    }
    for (QAction *action : std::as_const(m_actions->spacings)) {
        connect(action, &QAction::triggered, this, [this, action] {
            const auto option = ParagraphSpacingOption(action->data().toInt());
            send(RichTextCommand::paragraphSpacing(lineSpacing(option), paragraphSpacingAfter(option)));
        });
    }
    for (QAction *action : std::as_const(m_actions->imageSizes)) {
        connect(action, &QAction::triggered, this, [this, action] {
            send(RichTextCommand::resizeSelectedImage(WriterImageSize(action->data().toInt())));
        });
    }
    for (QAction *action : std::as_const(m_actions->rhymeProviders)) {
        connect(action, &QAction::triggered, this,
                [this, action] { lookUpRhymes(RhymeProvider(action->data().toInt())); });
    }
    connect(m_actions->rhymes, &QAction::triggered, this, [this] { lookUpRhymes(defaultRhymeProvider()); });
    connect(m_actions->rhymesForSelection, &QAction::triggered, this, [this] { lookUpRhymes(defaultRhymeProvider()); });
    connect(m_view, &RichPoemTextView::rhymeLookupRequested, this, [this] { lookUpRhymes(defaultRhymeProvider()); });
    connect(m_actions->insertFooter, &QAction::triggered, this,
            [this] { send(RichTextCommand::appendText(PoemFooter::standardPoemFooter())); });
    connect(m_actions->insertImage, &QAction::triggered, this, &PoemEditorPane::chooseImage);
    connect(m_view, &RichPoemTextView::imageFailed, this, [this](const QString &message) {
        const QString text = tr("Bild konnte nicht gespeichert werden: %1").arg(message);
        m_statsBar->setSaveStatus(text);
        Q_EMIT statusMessage(text);
    });

    connect(m_actions->find, &QAction::triggered, this, [this] { openFindBar(false); });
    connect(m_actions->replace, &QAction::triggered, this, [this] { openFindBar(true); });
    connect(m_actions->findNext, &QAction::triggered, this, [this] { findInText(false); });
    connect(m_actions->findPrevious, &QAction::triggered, this, [this] { findInText(true); });
    connect(m_findBar, &FindReplaceBar::findNextRequested, this, [this] { findInText(false); });
    connect(m_findBar, &FindReplaceBar::findPreviousRequested, this, [this] { findInText(true); });
    connect(m_findBar, &FindReplaceBar::replaceRequested, this, &PoemEditorPane::replaceCurrent);
    connect(m_findBar, &FindReplaceBar::replaceAllRequested, this, &PoemEditorPane::replaceAll);
    connect(m_findBar, &FindReplaceBar::closeRequested, this, [this] {
        setFindReplaceVisible(false);
        m_view->setFocus();
    });

    connect(m_actions->toggleNotes, &QAction::toggled, this, &PoemEditorPane::setWriterNotesVisible);
    m_showVerse = AppPreferences::showsVerseTools();
    m_actions->toggleVerse->setChecked(m_showVerse);
    connect(m_actions->toggleVerse, &QAction::toggled, this, [this](bool shown) {
        if (auto stored = AppPreferences::setShowsVerseTools(shown); !stored)
            Q_EMIT statusMessage(stored.errorMessage());
        setVerseToolsShown(shown);
    });
    m_verseAnalyzer = new BackgroundVerseAnalyzer(this);
    connect(m_verseAnalyzer, &BackgroundVerseAnalyzer::analysed, this, [this](const VerseAnalysis &analysis) {
        m_gutter->setAnalysis(analysis);
        showVerseAnalysis();
    });
    connect(m_statsBar, &WritingStatsBar::meterClicked, m_gutter, &VerseGutter::setBreakingLinesMarked);
    connect(m_actions->toggleWriterMode, &QAction::toggled, this, &PoemEditorPane::setWriterMode);
    connect(m_actions->toggleFocusMode, &QAction::toggled, this, &PoemEditorPane::setFocusMode);
    connect(m_actions->toggleToolbar, &QAction::toggled, this, &PoemEditorPane::setWriterToolbarHidden);
    connect(m_actions->paperAppearance, &QAction::toggled, this,
            [this](bool paper) { setAppearance(paper ? EditorAppearance::paper : EditorAppearance::standard); });
    connect(m_actions->duplicate, &QAction::triggered, this, &PoemEditorPane::duplicateRequested);
    connect(m_notes, &QPlainTextEdit::textChanged, this, &PoemEditorPane::writeNotes);
    connect(m_view, &QTextEdit::currentCharFormatChanged, this, &PoemEditorPane::showCurrentFormat);
    connect(m_view, &QTextEdit::cursorPositionChanged, this, &PoemEditorPane::showCurrentFormat);
}

// The toggles show the format at the insertion point, as in a word processor.
void PoemEditorPane::showCurrentFormat()
{
    const QTextCharFormat format = m_view->currentCharFormat();
    m_actions->bold->setChecked(format.fontWeight() >= QFont::DemiBold);
    m_actions->italic->setChecked(format.fontItalic());
    m_actions->underline->setChecked(format.fontUnderline());
    const Qt::Alignment alignment = m_view->textCursor().blockFormat().alignment() & Qt::AlignHorizontal_Mask;
    m_actions->alignCenter->setChecked(alignment & Qt::AlignHCenter);
    m_actions->alignRight->setChecked(alignment & Qt::AlignRight);
    m_actions->alignLeft->setChecked(!(alignment & (Qt::AlignHCenter | Qt::AlignRight)));
}

QMenu *PoemEditorPane::formattingMenu() const
{
    return m_actions->formattingMenu;
}

bool PoemEditorPane::poemIsInContext() const
{
    return m_poem && m_context.poemWithObjectID(m_poem->objectID()) == m_poem;
}

void PoemEditorPane::setPoem(PoemPtr poem)
{
    // The find bar searched the poem that was shown; another poem starts without it.
    if (poem != m_poem)
        m_showFindReplace = false;
    m_poem = std::move(poem);
    m_sync.reset();
    loadFromPoem();
    m_loadingNotes = true;
    m_notes->setPlainText(m_poem ? m_poem->writerNotes().value_or(QString()) : QString());
    m_loadingNotes = false;
    m_saveStatus.clear();
    m_statsBar->setSaveStatus(QString());
    updateChrome();
}

void PoemEditorPane::loadFromPoem()
{
    DisplayedPoemText::Input input;
    if (m_poem) {
        input.richTextData = m_poem->richTextData();
        input.text = m_poem->text();
    }
    input.isEditable = m_editable && m_poem;
    input.highlight = m_highlight;
    input.appearance = m_appearance;
    DisplayedPoemText::Output shown = DisplayedPoemText::build(input);

    const int position = m_view->textCursor().position();
    m_sync.setUpdating(true);
    m_view->setPoemDocument(std::move(shown.document));
    m_view->setSearchHighlight(input.isEditable ? m_highlight : QString());
    m_sync.setUpdating(false);
    connect(m_view->document(), &QTextDocument::contentsChanged, this, &PoemEditorPane::writeText);

    QTextCursor cursor = m_view->textCursor();
    cursor.setPosition(qBound(0, position, m_view->document()->characterCount() - 1));
    m_view->setTextCursor(cursor);
    if (m_poem)
        m_sync.noteLoaded(m_poem->richTextData(), m_poem->text(), m_highlight);
    const auto loaded = PoemRichText::encode(*m_view->document());
    m_lastEncoded = loaded ? *loaded : QByteArray();
    updateStats();
}

void PoemEditorPane::reloadIfNeeded()
{
    if (!m_poem)
        return;
    if (!poemIsInContext()) {
        setPoem(nullptr);
        return;
    }
    if (m_sync.needsReload(m_poem->richTextData(), m_poem->text(), m_highlight))
        loadFromPoem();
    const QString notes = m_poem->writerNotes().value_or(QString());
    if (!m_sync.isUpdating() && m_notes->toPlainText() != notes) {
        m_loadingNotes = true;
        m_notes->setPlainText(notes);
        m_loadingNotes = false;
    }
}

void PoemEditorPane::writeText()
{
    if (!m_poem || !m_editable || m_sync.isUpdating())
        return;
    const QTextDocument &document = *m_view->document();
    const QString plain = PoemRichText::plainText(document);
    m_stats = WritingStats::of(plain);
    m_statsBar->setStats(m_stats);
    analyseVerse();
    const auto encoded = PoemRichText::encode(document);
    if (!encoded) {
        // The record keeps its previous formatted text; nothing is written half.
        const QString message = tr("Formatierter Text konnte nicht gespeichert werden: %1").arg(encoded.errorMessage());
        m_statsBar->setSaveStatus(message);
        Q_EMIT statusMessage(message);
        return;
    }
    // Layout-only changes (spelling marks, the search highlight) also report a changed
    // document; only a change of the text model itself is an edit to store.
    if (*encoded == m_lastEncoded)
        return;
    const bool textChanged = m_poem->text().value_or(QString()) != plain;
    m_sync.setUpdating(true);
    const auto saved = PoemTextWriter::write(m_context, *m_poem, *encoded, plain, QDateTime::currentDateTimeUtc());
    m_sync.setUpdating(false);
    if (!saved) {
        qWarning().noquote() << saveFailedText << saved.error().forLog();
        setSaveStatus(saveFailedText);
        // Why it failed matters when another program changed the poem meanwhile.
        Q_EMIT statusMessage(saved.errorMessage());
        return;
    }
    m_sync.noteWritten(*encoded, plain);
    m_lastEncoded = *encoded;
    setSaveStatus(savedText());
    Q_EMIT poemChanged(textChanged);
}

void PoemEditorPane::writeNotes()
{
    if (m_loadingNotes || !m_poem || !m_editable)
        return;
    const QString notes = m_notes->toPlainText();
    if (m_poem->writerNotes().value_or(QString()) == notes)
        return;
    m_sync.setUpdating(true);
    const auto saved = PoemEdit::apply(
        m_context, *m_poem, [&notes](Poem &poem) { poem.setWriterNotes(notes); }, QDateTime::currentDateTimeUtc());
    m_sync.setUpdating(false);
    if (!saved) {
        qWarning().noquote() << saveFailedText << saved.error().forLog();
        setSaveStatus(saveFailedText);
        // Why it failed matters when another program changed the poem meanwhile.
        Q_EMIT statusMessage(saved.errorMessage());
        return;
    }
    setSaveStatus(savedText());
    Q_EMIT poemChanged(false);
}

void PoemEditorPane::setSaveStatusShown(bool shown)
{
    m_statsBar->setSaveStatusShown(shown);
}

void PoemEditorPane::setSaveStatus(const QString &status)
{
    m_saveStatus = status;
    m_statsBar->setSaveStatus(status);
    Q_EMIT saveStatusChanged(status);
}

void PoemEditorPane::updateStats()
{
    if (!m_poem) {
        m_stats = WritingStats();
    } else if (m_editable) {
        m_stats = WritingStats::of(PoemRichText::plainText(*m_view->document()));
    } else {
        // The read-only view may show a placeholder, which is no part of the poem.
        m_stats = WritingStats::of(m_poem->text().value_or(QString()));
    }
    m_statsBar->setStats(m_stats);
    analyseVerse();
}

// The analysis runs on its own thread and answers within milliseconds; until then the gutter
// keeps the previous lines, so typing never waits for it.
void PoemEditorPane::analyseVerse()
{
    m_gutter->watchDocument();
    if (!m_showVerse || !m_poem || !m_editable) {
        m_gutter->setAnalysis(VerseAnalysis());
        showVerseAnalysis();
        return;
    }
    const QString text = VerseGutter::verseText(*m_view->document());
    const QString language = m_spellChecker ? m_spellChecker->paragraphLanguage(text) : QStringLiteral("de");
    m_verseAnalyzer->request(text, language);
}

void PoemEditorPane::showVerseAnalysis()
{
    const VerseAnalysis &analysis = m_gutter->analysis();
    const bool hasVerse = m_showVerse && !analysis.lines().isEmpty();
    m_gutter->setVisible(m_showVerse && m_poem && m_editable);
    m_statsBar->setMeter(hasVerse ? analysis.meterText() : QString(), hasVerse ? analysis.breakingText() : QString(),
                         int(analysis.breakingLineNumbers().size()));
    if (analysis.breakingLineNumbers().isEmpty() && m_gutter->breakingLinesMarked())
        m_gutter->setBreakingLinesMarked(false);
}

void PoemEditorPane::setVerseToolsShown(bool shown)
{
    m_showVerse = shown;
    const QSignalBlocker blocker(m_actions->toggleVerse);
    m_actions->toggleVerse->setChecked(shown);
    analyseVerse();
}

void PoemEditorPane::setSearchHighlight(const QString &text)
{
    if (text == m_highlight)
        return;
    m_highlight = text;
    if (m_editable && m_poem) {
        m_view->setSearchHighlight(text);
        m_sync.noteLoaded(m_poem->richTextData(), m_poem->text(), m_highlight);
        return;
    }
    loadFromPoem();
}

void PoemEditorPane::setAppearance(EditorAppearance appearance)
{
    m_appearance = appearance;
    m_view->setAppearance(appearance);
    QPalette surface = m_editorArea->palette();
    surface.setColor(QPalette::Window, surfaceColor(appearance));
    m_editorArea->setPalette(surface);
    const QSignalBlocker blocker(m_actions->paperAppearance);
    m_actions->paperAppearance->setChecked(appearance == EditorAppearance::paper);
    // A read-only text carries the appearance's colour in its characters.
    if (!m_editable)
        loadFromPoem();
}

void PoemEditorPane::setEditable(bool editable)
{
    if (editable == m_editable)
        return;
    m_editable = editable;
    loadFromPoem();
    updateChrome();
}

void PoemEditorPane::send(const RichTextCommand &command)
{
    if (!m_poem || !m_editable)
        return;
    m_view->apply(command);
}

void PoemEditorPane::setWriterMode(bool writerMode)
{
    if (writerMode == m_isWriterMode)
        return;
    m_isWriterMode = writerMode;
    const QSignalBlocker blocker(m_actions->toggleWriterMode);
    m_actions->toggleWriterMode->setChecked(writerMode);
    updateChrome();
    Q_EMIT writerModeChanged(writerMode);
}

void PoemEditorPane::setFocusMode(bool focusMode)
{
    m_isFocusMode = focusMode;
    const QSignalBlocker blocker(m_actions->toggleFocusMode);
    m_actions->toggleFocusMode->setChecked(focusMode);
    updateChrome();
}

void PoemEditorPane::setWriterToolbarHidden(bool hidden)
{
    m_isWriterToolbarHidden = hidden;
    const QSignalBlocker blocker(m_actions->toggleToolbar);
    m_actions->toggleToolbar->setChecked(hidden);
    updateChrome();
}

void PoemEditorPane::setWriterNotesVisible(bool visible)
{
    m_isWriterNotesVisible = visible;
    const QSignalBlocker blocker(m_actions->toggleNotes);
    m_actions->toggleNotes->setChecked(visible);
    updateChrome();
}

void PoemEditorPane::setFindReplaceVisible(bool visible)
{
    m_showFindReplace = visible;
    updateChrome();
}

// Which parts are shown follows from the modes: focus mode keeps the text alone, the
// toolbar can be hidden while writing, the notes and the find bar come when asked for.
void PoemEditorPane::updateChrome()
{
    const bool hasPoem = m_poem != nullptr;
    const bool editable = hasPoem && m_editable;
    m_view->setReadOnly(!editable);
    m_view->setEnabled(hasPoem);
    m_toolBar->setEnabled(editable);
    m_notes->setReadOnly(!editable);
    for (QAction *action : m_actions->formattingMenu->actions())
        action->setEnabled(editable);
    m_actions->toggleToolbar->setEnabled(m_isWriterMode);

    const bool toolbarHidden = m_isFocusMode || (m_isWriterMode && m_isWriterToolbarHidden);
    m_toolBar->setVisible(!toolbarHidden);
    m_findBar->setVisible(m_showFindReplace && !m_isFocusMode);
    m_notesPanel->setVisible(m_isWriterNotesVisible && !m_isFocusMode && hasPoem);
    m_statsBar->setVisible(!m_isFocusMode);
    m_view->setMaximumWidth(m_isFocusMode ? focusModeTextWidth + 2 * int(textInset(m_appearance).width())
                                          : QWIDGETSIZE_MAX);
    layout()->activate();
}

void PoemEditorPane::chooseImage()
{
    if (!m_poem || !m_editable)
        return;
    const QString path = QFileDialog::getOpenFileName(
        this, tr("Wähle ein Bild, das an der aktuellen Cursorposition eingefügt werden soll."),
        QStandardPaths::writableLocation(QStandardPaths::PicturesLocation),
        tr("Bilder (*.png *.jpg *.jpeg *.gif *.bmp *.webp)"));
    if (path.isEmpty())
        return;
    send(RichTextCommand::insertImage(path));
}

void PoemEditorPane::lookUpRhymes(RhymeProvider provider)
{
    QString word = RhymeLookup::normalizedRhymeWord(m_view->wordForLookup());
    if (word.isEmpty()) {
        RhymeWordDialog dialog(this);
        if (dialog.exec() != QDialog::Accepted)
            return;
        word = RhymeLookup::normalizedRhymeWord(dialog.word());
    }
    const auto url = RhymeLookup::url(provider, word);
    if (!url)
        return;
    if (!QDesktopServices::openUrl(*url))
        Q_EMIT statusMessage(tr("Kein Webbrowser gefunden. Die Reimseite ist: %1").arg(url->toString()));
}

QString PoemEditorPane::findReplaceStatus() const
{
    return m_findBar->status();
}

void PoemEditorPane::openFindBar(bool focusReplace)
{
    if (!m_poem)
        return;
    const QString selected = m_view->textCursor().selectedText();
    if (!selected.isEmpty() && !selected.contains(QChar::ParagraphSeparator))
        m_findBar->setFindText(selected);
    setFindReplaceVisible(true);
    if (focusReplace)
        m_findBar->focusReplace();
    else
        m_findBar->focusFind();
}

void PoemEditorPane::findInText(bool backwards)
{
    if (!m_poem)
        return;
    if (!m_showFindReplace)
        setFindReplaceVisible(true);
    QTextCursor cursor = m_view->textCursor();
    const FindOutcome outcome = TextFinder::find(cursor, m_findBar->findText(), backwards);
    m_findBar->setStatus(outcome.status);
    if (!outcome.found)
        return;
    m_view->setTextCursor(cursor);
    m_view->ensureCursorVisible();
}

void PoemEditorPane::replaceCurrent()
{
    if (!m_poem || !m_editable)
        return;
    QTextCursor cursor = m_view->textCursor();
    const FindOutcome outcome = TextFinder::replaceCurrent(cursor, m_findBar->findText(), m_findBar->replaceText());
    m_findBar->setStatus(outcome.status);
    m_view->setTextCursor(cursor);
    m_view->ensureCursorVisible();
}

void PoemEditorPane::replaceAll()
{
    if (!m_poem || !m_editable)
        return;
    QTextCursor cursor = m_view->textCursor();
    const FindOutcome outcome = TextFinder::replaceAll(cursor, m_findBar->findText(), m_findBar->replaceText());
    m_findBar->setStatus(outcome.status);
}
