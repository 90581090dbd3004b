#include "editor/gui/RichPoemTextView.h"

#include "editor/AppTheme.h"
#include "editor/PoemRichText.h"
#include "editor/PoemTextDocument.h"
#include "editor/PoemTextHighlighter.h"
#include "editor/RichTextEditing.h"
#include "editor/RtfdContainer.h"
#include "editor/SpellChecker.h"
#include "editor/TextFinder.h"
#include "editor/WriterTypingAttributes.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QContextMenuEvent>
#include <QFontMetricsF>
#include <QImageReader>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QResizeEvent>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocumentFragment>

namespace {

const QString rtfMimeTypes[] = {QStringLiteral("text/rtf"), QStringLiteral("application/rtf")};
// The stored form, also when it is an RTFD stream, which other programs would take for RTF.
const QString ownMimeType = QStringLiteral("application/x-odeleaf-richtext");

QByteArray rtfOf(const QMimeData *source)
{
    if (source->hasFormat(ownMimeType))
        return source->data(ownMimeType);
    for (const QString &type : rtfMimeTypes) {
        if (source->hasFormat(type))
            return source->data(type);
    }
    return {};
}

// Image files dropped from a file manager.
QStringList imageFilesOf(const QMimeData *source)
{
    QStringList files;
    if (!source->hasUrls())
        return files;
    for (const QUrl &url : source->urls()) {
        if (!url.isLocalFile() || QImageReader::imageFormat(url.toLocalFile()).isEmpty())
            return {};
        files.append(url.toLocalFile());
    }
    return files;
}

} // namespace

RichPoemTextView::RichPoemTextView(QWidget *parent) : QTextEdit(parent)
{
    setFrameShape(QFrame::NoFrame);
    setAcceptRichText(true);
    // Tab moves on through the detail pane as in a form; a tab character comes from Ctrl+Tab.
    setTabChangesFocus(true);
    setLineWrapMode(QTextEdit::WidgetWidth);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    // The insertion point is drawn in the theme accent (see paintEvent).
    setCursorWidth(0);
    m_defaults = WriterTypingAttributes::defaults();
    setFont(WriterTypingAttributes::editorFont());
    setPoemDocument(PoemRichText::newDocument());
    setAppearance(EditorAppearance::standard);

    const int flash = QApplication::cursorFlashTime();
    m_caretBlink.setInterval(flash > 0 ? flash / 2 : 0);
    connect(&m_caretBlink, &QTimer::timeout, this, [this] {
        m_caretShown = !m_caretShown;
        viewport()->update(cursorRect().adjusted(-2, -1, 2, 1));
    });
    connect(this, &QTextEdit::cursorPositionChanged, this, [this] {
        keepTypingAttributesComplete();
        restartCaretBlink();
    });
}

RichPoemTextView::~RichPoemTextView() = default;

void RichPoemTextView::setPoemDocument(std::unique_ptr<PoemTextDocument> document)
{
    // The editor's own first document is deleted by setDocument(); ours are deleted here.
    const QPointer<QTextDocument> previous = QTextEdit::document();
    document->setParent(this);
    m_defaults = WriterTypingAttributes::defaults();
    const QFont font = WriterTypingAttributes::editorFont();
    setFont(font);
    setDocument(document.release());
    QTextEdit::document()->setDefaultFont(font);
    if (previous && previous->parent() == this)
        delete previous.data();
    m_highlighter = new PoemTextHighlighter(QTextEdit::document(), m_spellChecker);
    m_highlighter->setSearchHighlight(m_searchHighlight);
    // A new document is laid out at full size until the insets scale it.
    m_textScale = 1.0;
    applyInsets();
    keepTypingAttributesComplete();
}

void RichPoemTextView::refreshEditorFont()
{
    m_defaults = WriterTypingAttributes::defaults();
    const QFont font = WriterTypingAttributes::editorFont();
    setFont(font);
    QTextEdit::document()->setDefaultFont(font);
    // An empty poem has no formatting of its own yet: it starts in the new font.
    if (QTextEdit::document()->isEmpty())
        setCurrentCharFormat(m_defaults);
    keepTypingAttributesComplete();
}

// The vertical inset is the document's margin, so it scrolls with the text like a page
// edge; what the horizontal inset has beyond it stays fixed at the sides.
QString RichPoemTextView::sampleVerseLine()
{
    return QStringLiteral("Die Blätter fallen leise von den Bäumen,");
}

// A narrow editor gives up page edge before it wraps a verse: the edges shrink until a
// line like sampleVerseLine() fits, down to a thin margin; past that the text is shown
// smaller. Only the display scales; the stored sizes stay.
void RichPoemTextView::applyInsets()
{
    const QSizeF inset = textInset(m_appearance);
    const double verse = QFontMetricsF(font()).horizontalAdvance(sampleVerseLine());
    const double room = width() - 2 * frameWidth();
    const double smallestInset = std::min(minimumInset, inset.width());
    const double scale = std::clamp((room - 2 * smallestInset) / verse, minimumTextScale, 1.0);
    if (!qFuzzyCompare(scale, m_textScale)) {
        m_textScale = scale;
        QAbstractTextDocumentLayout *layout = QTextEdit::document()->documentLayout();
        if (scale < 1.0) {
            m_scaledLayoutDevice = QImage(1, 1, QImage::Format_RGB32);
            const double dotsPerMeter = logicalDpiY() * scale / 0.0254;
            m_scaledLayoutDevice.setDotsPerMeterX(qRound(dotsPerMeter));
            m_scaledLayoutDevice.setDotsPerMeterY(qRound(dotsPerMeter));
        }
        layout->setPaintDevice(scale < 1.0 ? &m_scaledLayoutDevice : nullptr);
        QTextEdit::document()->markContentsDirty(0, QTextEdit::document()->characterCount());
    }
    const double spare = (room - verse * m_textScale) / 2;
    const double horizontal = std::clamp(spare, smallestInset, inset.width());
    const double vertical = std::min(inset.height(), horizontal);
    QTextEdit::document()->setDocumentMargin(vertical);
    const int side = qMax(0, int(horizontal - vertical));
    setViewportMargins(side, 0, side, 0);
}

void RichPoemTextView::resizeEvent(QResizeEvent *event)
{
    // The margins first: the base class lays the text out for the viewport they leave.
    if (event->size().width() != event->oldSize().width())
        applyInsets();
    QTextEdit::resizeEvent(event);
}

PoemTextDocument *RichPoemTextView::poemDocument() const
{
    return qobject_cast<PoemTextDocument *>(QTextEdit::document());
}

void RichPoemTextView::setSpellChecker(SpellChecker *spellChecker)
{
    m_spellChecker = spellChecker;
    // The highlighter keeps the checker it was made with; make a new one.
    delete m_highlighter.data();
    m_highlighter = new PoemTextHighlighter(QTextEdit::document(), m_spellChecker);
    m_highlighter->setSearchHighlight(m_searchHighlight);
}

void RichPoemTextView::setSearchHighlight(const QString &term)
{
    m_searchHighlight = term;
    if (m_highlighter)
        m_highlighter->setSearchHighlight(term);
}

void RichPoemTextView::keyPressEvent(QKeyEvent *event)
{
    const bool plainReturn = (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
                             !(event->modifiers() & ~Qt::KeypadModifier);
    if (plainReturn && !isReadOnly()) {
        QTextCursor cursor = textCursor();
        if (RichTextEditing::breakOutOfPiece(cursor)) {
            setTextCursor(cursor);
            ensureCursorVisible();
            return;
        }
    }
    QTextEdit::keyPressEvent(event);
}

bool RichPoemTextView::event(QEvent *event)
{
    const bool handled = QTextEdit::event(event);
    // An application style sheet hands the widget its own palette when it polishes it; the
    // appearance's colours go back on afterwards.
    if (event->type() == QEvent::Polish || event->type() == QEvent::StyleChange)
        setAppearance(m_appearance);
    return handled;
}

void RichPoemTextView::setAppearance(EditorAppearance appearance)
{
    m_appearance = appearance;
    QPalette colours = palette();
    const QColor surface = surfaceColor(appearance);
    colours.setColor(QPalette::Base, surface);
    colours.setColor(QPalette::Window, surface);
    colours.setColor(QPalette::Text, ::textColor(appearance));
    QColor selection = AppTheme::accent();
    selection.setAlpha(appearance == EditorAppearance::paper ? 90 : 110);
    colours.setColor(QPalette::Highlight, selection);
    colours.setColor(QPalette::HighlightedText, ::textColor(appearance));
    setPalette(colours);
    viewport()->setPalette(colours);
    applyInsets();
    viewport()->update();
}

double RichPoemTextView::textWidth() const
{
    return viewport()->width() - 2 * QTextEdit::document()->documentMargin();
}

void RichPoemTextView::apply(const RichTextCommand &command)
{
    QTextCursor cursor = textCursor();
    using Kind = RichTextCommand::Kind;
    switch (command.kind()) {
    case Kind::undo:
        undo();
        return;
    case Kind::redo:
        redo();
        return;
    case Kind::checkSpelling:
        selectNextMisspelling();
        return;
    case Kind::textColor:
        RichTextEditing::setTextColor(cursor, command.color());
        break;
    case Kind::paragraphSpacing:
        RichTextEditing::setParagraphSpacing(cursor, command.lineSpacing(), command.spacingAfter());
        break;
    case Kind::appendText:
        RichTextEditing::appendText(cursor, command.text());
        break;
    case Kind::insertImage:
        if (auto inserted = RichTextEditing::insertImage(cursor, command.text(), textWidth()); !inserted) {
            Q_EMIT imageFailed(inserted.errorMessage());
            return;
        }
        break;
    case Kind::resizeSelectedImage:
        if (!RichTextEditing::resizeImage(cursor, command.imageSize()))
            return;
        break;
    case Kind::bold:
        RichTextEditing::toggleBold(cursor);
        break;
    case Kind::italic:
        RichTextEditing::toggleItalic(cursor);
        break;
    case Kind::underline:
        RichTextEditing::toggleUnderline(cursor);
        break;
    case Kind::increaseFontSize:
        RichTextEditing::changeFontSize(cursor, 1);
        break;
    case Kind::decreaseFontSize:
        RichTextEditing::changeFontSize(cursor, -1);
        break;
    case Kind::alignLeft:
        RichTextEditing::setAlignment(cursor, Qt::AlignLeft);
        break;
    case Kind::alignCenter:
        RichTextEditing::setAlignment(cursor, Qt::AlignHCenter);
        break;
    case Kind::alignRight:
        RichTextEditing::setAlignment(cursor, Qt::AlignRight);
        break;
    case Kind::clearFormatting:
        RichTextEditing::clearFormatting(cursor);
        break;
    case Kind::insertCaption:
        RichTextEditing::insertCaption(cursor);
        break;
    case Kind::insertDivider:
        RichTextEditing::insertSectionMark(cursor);
        break;
    case Kind::insertTab:
        cursor.insertText(QStringLiteral("\t"));
        break;
    }
    setTextCursor(cursor);
    ensureCursorVisible();
}

bool RichPoemTextView::selectNextMisspelling()
{
    if (!m_spellChecker || !m_spellChecker->isAvailable())
        return false;
    const QString text = TextFinder::documentText(*QTextEdit::document());
    const auto found = m_spellChecker->nextMisspelling(text, textCursor().selectionEnd());
    if (!found)
        return false;
    QTextCursor cursor = textCursor();
    cursor.setPosition(found->start);
    cursor.setPosition(found->end, QTextCursor::KeepAnchor);
    setTextCursor(cursor);
    ensureCursorVisible();
    return true;
}

QString RichPoemTextView::wordForLookup() const
{
    QTextCursor cursor = textCursor();
    if (!cursor.hasSelection())
        cursor.select(QTextCursor::WordUnderCursor);
    return cursor.selectedText();
}

void RichPoemTextView::keepTypingAttributesComplete()
{
    const QTextCharFormat current = RichTextEditing::typingFormat(textCursor());
    if (current.hasProperty(QTextFormat::FontFamilies) && current.hasProperty(QTextFormat::FontPointSize))
        return;
    setCurrentCharFormat(WriterTypingAttributes::preservingFormatting(current, m_defaults));
}

void RichPoemTextView::restartCaretBlink()
{
    m_caretShown = true;
    if (hasFocus() && m_caretBlink.interval() > 0)
        m_caretBlink.start();
    viewport()->update();
}

void RichPoemTextView::paintEvent(QPaintEvent *event)
{
    QTextEdit::paintEvent(event);
    if (!hasFocus() || isReadOnly() || !m_caretShown)
        return;
    QRect caret = cursorRect();
    caret.setWidth(2);
    QPainter painter(viewport());
    painter.fillRect(caret, insertionPointColor(m_appearance));
}

void RichPoemTextView::focusInEvent(QFocusEvent *event)
{
    QTextEdit::focusInEvent(event);
    restartCaretBlink();
}

void RichPoemTextView::focusOutEvent(QFocusEvent *event)
{
    QTextEdit::focusOutEvent(event);
    m_caretBlink.stop();
    viewport()->update();
}

void RichPoemTextView::addSpellingActions(QMenu *menu, const QPoint &position)
{
    if (!m_spellChecker || !m_spellChecker->isAvailable())
        return;
    QTextCursor word = cursorForPosition(position);
    word.select(QTextCursor::WordUnderCursor);
    const QString text = word.selectedText();
    const QString paragraph = word.block().text();
    if (text.isEmpty() || m_spellChecker->isCorrect(text, paragraph))
        return;
    QAction *first = menu->actions().value(0);
    const QStringList suggestions = m_spellChecker->suggestions(text, 8, paragraph);
    if (suggestions.isEmpty()) {
        QAction *none = new QAction(tr("Keine Vorschläge"), menu);
        none->setEnabled(false);
        menu->insertAction(first, none);
    }
    for (const QString &suggestion : suggestions) {
        QAction *replace = new QAction(suggestion, menu);
        QFont bold = replace->font();
        bold.setBold(true);
        replace->setFont(bold);
        connect(replace, &QAction::triggered, this, [this, word, suggestion] {
            QTextCursor cursor = word;
            const QTextCharFormat format = RichTextEditing::typingFormat(cursor);
            cursor.beginEditBlock();
            cursor.insertText(suggestion, format);
            cursor.endEditBlock();
        });
        menu->insertAction(first, replace);
    }
    QAction *ignore = new QAction(tr("Wort ignorieren"), menu);
    connect(ignore, &QAction::triggered, this, [this, text] {
        m_spellChecker->ignore(text);
        if (m_highlighter)
            m_highlighter->rehighlight();
    });
    menu->insertAction(first, ignore);
    menu->insertSeparator(first);
}

// The editing menu is built here rather than taken from Qt, so it speaks German whatever
// translations the system has.
void RichPoemTextView::contextMenuEvent(QContextMenuEvent *event)
{
    auto menu = std::make_unique<QMenu>();
    const bool editable = !isReadOnly();
    const bool selected = textCursor().hasSelection();
    auto add = [&](const QString &text, const QKeySequence &keys, bool enabled, auto slot) {
        QAction *action = menu->addAction(text, this, slot);
        action->setShortcut(keys);
        action->setEnabled(enabled);
    };
    add(tr("Rückgängig"), QKeySequence::Undo, editable && document()->isUndoAvailable(), &QTextEdit::undo);
    add(tr("Wiederholen"), QKeySequence::Redo, editable && document()->isRedoAvailable(), &QTextEdit::redo);
    menu->addSeparator();
    add(tr("Ausschneiden"), QKeySequence::Cut, editable && selected, &QTextEdit::cut);
    add(tr("Kopieren"), QKeySequence::Copy, selected, &QTextEdit::copy);
    add(tr("Einfügen"), QKeySequence::Paste, editable && canPaste(), &QTextEdit::paste);
    menu->addSeparator();
    add(tr("Alles auswählen"), QKeySequence::SelectAll, true, &QTextEdit::selectAll);
    if (editable)
        addSpellingActions(menu.get(), event->pos());
    menu->addSeparator();
    QAction *rhymes = menu->addAction(tr("Reime zum markierten Wort suchen"));
    connect(rhymes, &QAction::triggered, this, &RichPoemTextView::rhymeLookupRequested);
    menu->exec(event->globalPos());
}

bool RichPoemTextView::canInsertFromMimeData(const QMimeData *source) const
{
    return !rtfOf(source).isEmpty() || source->hasImage() || !imageFilesOf(source).isEmpty() ||
           QTextEdit::canInsertFromMimeData(source);
}

void RichPoemTextView::insertRichFragment(const QByteArray &rtf)
{
    const auto pasted = PoemRichText::decode(rtf);
    if (!pasted) {
        return;
    }
    poemDocument()->adoptPictures(*pasted);
    QTextCursor cursor = textCursor();
    cursor.beginEditBlock();
    cursor.insertFragment(QTextDocumentFragment(pasted.get()));
    cursor.endEditBlock();
    setTextCursor(cursor);
}

// Whatever comes in is brought into the poem text model: formatted text through the
// program's own codec, images as PNG pictures, anything else as plain text.
void RichPoemTextView::insertFromMimeData(const QMimeData *source)
{
    if (const QByteArray rtf = rtfOf(source); !rtf.isEmpty()) {
        insertRichFragment(rtf);
        return;
    }
    if (const QStringList files = imageFilesOf(source); !files.isEmpty()) {
        for (const QString &file : files)
            apply(RichTextCommand::insertImage(file));
        return;
    }
    if (source->hasImage()) {
        QTextCursor cursor = textCursor();
        const QImage image = qvariant_cast<QImage>(source->imageData());
        if (auto inserted = RichTextEditing::insertImage(cursor, image, textWidth()); !inserted) {
            Q_EMIT imageFailed(inserted.errorMessage());
            return;
        }
        setTextCursor(cursor);
        return;
    }
    if (source->hasHtml()) {
        auto converted = PoemRichText::newDocument();
        QTextCursor(converted.get()).insertFragment(QTextDocumentFragment::fromHtml(source->html()));
        if (const auto rtf = PoemRichText::encode(*converted); rtf.ok()) {
            insertRichFragment(*rtf);
            return;
        }
    }
    QTextCursor cursor = textCursor();
    cursor.insertText(source->text(), RichTextEditing::typingFormat(cursor));
    setTextCursor(cursor);
}

QMimeData *RichPoemTextView::createMimeDataFromSelection() const
{
    // The editor's own mime data lists a fixed set of formats; build one that also says RTF.
    const std::unique_ptr<QMimeData> standard(QTextEdit::createMimeDataFromSelection());
    auto *data = new QMimeData;
    data->setText(standard->text());
    data->setHtml(standard->html());
    auto copy = PoemRichText::newDocument();
    copy->adoptPictures(*poemDocument());
    QTextCursor(copy.get()).insertFragment(textCursor().selection());
    if (const auto rtf = PoemRichText::encode(*copy); rtf.ok()) {
        data->setData(ownMimeType, *rtf);
        if (!RtfdContainer::looksLikeRtfd(*rtf)) {
            for (const QString &type : rtfMimeTypes)
                data->setData(type, *rtf);
        }
    }
    return data;
}
