#include "editor/gui/VerseGutter.h"

#include "editor/AppTheme.h"
#include "editor/gui/RichPoemTextView.h"
#include "editor/gui/StressPatternOverlay.h"

#include <QAbstractTextDocumentLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollBar>
#include <QTextBlock>

namespace {

constexpr int countWidth = 24;
constexpr int letterWidth = 22;
constexpr int gutterWidth = countWidth + letterWidth + 14;

bool isCaption(const QTextBlock &block)
{
    const QTextBlock above = block.previous();
    return above.isValid() && above.text().contains(QChar::ObjectReplacementCharacter) &&
           !block.text().contains(QChar::ObjectReplacementCharacter) &&
           (block.blockFormat().alignment() & Qt::AlignHCenter);
}

} // namespace

VerseGutter::VerseGutter(RichPoemTextView *view, QWidget *parent)
    : QWidget(parent), m_view(view), m_overlay(new StressPatternOverlay(view))
{
    setObjectName(QStringLiteral("verseGutter"));
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    connect(view->verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { update(); });
    view->viewport()->installEventFilter(this);
    view->viewport()->setMouseTracking(true);
    watchDocument();
}

QSize VerseGutter::sizeHint() const
{
    return {gutterWidth, 0};
}

void VerseGutter::watchDocument()
{
    QTextDocument *document = m_view->document();
    if (m_watched == document)
        return;
    if (m_watched)
        disconnect(m_watched->documentLayout(), nullptr, this, nullptr);
    m_watched = document;
    // Wrapping, pictures and font sizes move lines without changing the text.
    connect(document->documentLayout(), &QAbstractTextDocumentLayout::update, this, [this] { update(); });
    m_overlay->showLine(nullptr, 0);
}

QString VerseGutter::verseText(const QTextDocument &document)
{
    QString text;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (block != document.begin())
            text.append(QLatin1Char('\n'));
        text.append(isCaption(block) ? QString(QChar::ObjectReplacementCharacter) : block.text());
    }
    return text;
}

QList<int> VerseGutter::lineStarts(const QTextDocument &document)
{
    QList<int> starts;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        starts.append(block.position());
        const QString text = block.text();
        for (qsizetype i = 0; i < text.size(); ++i) {
            if (text.at(i) == QChar::LineSeparator)
                starts.append(block.position() + int(i) + 1);
        }
    }
    return starts;
}

QColor VerseGutter::rhymeColor(const QString &letter)
{
    static const QList<QColor> colors = {QColor(0xc0, 0x5a, 0x2b), QColor(0x2e, 0x7d, 0x9a), QColor(0x5d, 0x8a, 0x2f),
                                         QColor(0x8e, 0x4d, 0xa8), QColor(0xb3, 0x8a, 0x1c), QColor(0xb8, 0x3b, 0x6b),
                                         QColor(0x3d, 0x5a, 0xb8), QColor(0x2f, 0x8f, 0x6f)};
    int index = 0;
    for (const QChar c : letter)
        index = index * 26 + (c.unicode() - 'A');
    return colors.at(index % colors.size());
}

void VerseGutter::setAnalysis(const VerseAnalysis &analysis)
{
    m_analysis = analysis;
    m_rhymingLines.clear();
    for (const VerseStanza &stanza : m_analysis.stanzas) {
        QHash<QString, int> linesOfLetter;
        for (const VerseLine &line : stanza.lines)
            ++linesOfLetter[line.rhyme];
        for (const VerseLine &line : stanza.lines) {
            if (!line.rhyme.isEmpty() && linesOfLetter.value(line.rhyme) > 1)
                m_rhymingLines.insert(line.lineNumber);
        }
    }
    m_overlay->showLine(nullptr, 0);
    if (m_markBreaking)
        markInText();
    update();
}

void VerseGutter::setBreakingLinesMarked(bool marked)
{
    m_markBreaking = marked;
    markInText();
    update();
}

void VerseGutter::markInText()
{
    QList<QTextEdit::ExtraSelection> selections;
    if (m_markBreaking) {
        const QList<int> starts = lineStarts(*m_view->document());
        const int last = m_view->document()->characterCount() - 1;
        QColor mark = AppTheme::systemRed();
        mark.setAlpha(45);
        for (const VerseLine *line : m_analysis.lines()) {
            if (!line->breaksMeter || line->lineNumber >= starts.size())
                continue;
            QTextEdit::ExtraSelection selection;
            selection.cursor = QTextCursor(m_view->document());
            selection.cursor.setPosition(std::min(starts.at(line->lineNumber), last));
            selection.cursor.setPosition(std::min(starts.at(line->lineNumber) + int(line->text.size()), last),
                                         QTextCursor::KeepAnchor);
            selection.format.setBackground(mark);
            selections.append(selection);
        }
    }
    m_view->setExtraSelections(selections);
}

QList<QPair<const VerseLine *, QRect>> VerseGutter::lineRects() const
{
    QList<QPair<const VerseLine *, QRect>> rects;
    QTextDocument *document = m_view->document();
    const QList<int> starts = lineStarts(*document);
    const int end = document->characterCount() - 1;
    QTextCursor cursor(document);
    for (const VerseLine *line : m_analysis.lines()) {
        // The text may be a keystroke ahead of the analysis.
        if (!line->hasWords() || line->lineNumber >= starts.size() || starts.at(line->lineNumber) > end)
            continue;
        cursor.setPosition(starts.at(line->lineNumber));
        const QRect caret = m_view->cursorRect(cursor);
        const QPoint topLeft = mapFrom(window(), m_view->viewport()->mapTo(window(), caret.topLeft()));
        rects.append({line, QRect(0, topLeft.y(), width(), caret.height())});
    }
    return rects;
}

void VerseGutter::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QFont font = this->font();
    font.setPointSizeF(font.pointSizeF() * 0.9);
    painter.setFont(font);
    const QColor muted = AppTheme::secondaryLabel();
    for (const auto &[line, rect] : lineRects()) {
        if (rect.bottom() < 0 || rect.top() > height())
            continue;
        const int rowHeight = std::min(rect.height(), QFontMetrics(font).height() + 4);
        const QRect row(0, rect.top() + (rect.height() - rowHeight) / 2, width(), rowHeight);
        if (m_markBreaking && line->breaksMeter) {
            QColor mark = AppTheme::systemRed();
            mark.setAlpha(60);
            painter.fillRect(QRect(0, row.top(), 3, row.height()), mark);
        }
        painter.setPen(muted);
        painter.drawText(QRect(4, row.top(), countWidth, row.height()), Qt::AlignRight | Qt::AlignVCenter,
                         QString::number(line->syllables));

        const bool impure = !line->impureWith.isEmpty();
        const bool rhymes = impure || m_rhymingLines.contains(line->lineNumber);
        const QRect badge(countWidth + 10, row.top() + 1, letterWidth, row.height() - 2);
        if (!rhymes) {
            painter.setPen(muted);
            painter.drawText(badge, Qt::AlignCenter, line->rhyme);
            continue;
        }
        // An impure rhyme wears the colour of the letter it nearly rhymes with.
        QColor color = rhymeColor(impure ? std::min(line->rhyme, line->impureWith) : line->rhyme);
        QColor fill = color;
        fill.setAlpha(impure ? 28 : 60);
        QPainterPath path;
        path.addRoundedRect(badge, 5, 5);
        painter.fillPath(path, fill);
        painter.setPen(impure ? color.lighter(150) : color.darker(120));
        painter.drawText(badge, Qt::AlignCenter, line->rhyme);
    }
}

void VerseGutter::mouseMoveEvent(QMouseEvent *event)
{
    const int y = event->position().toPoint().y();
    for (const auto &[line, rect] : lineRects()) {
        if (y >= rect.top() && y <= rect.bottom()) {
            showHovered(line);
            return;
        }
    }
    showHovered(nullptr);
}

void VerseGutter::leaveEvent(QEvent *)
{
    showHovered(nullptr);
}

bool VerseGutter::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_view->viewport()) {
        if (event->type() == QEvent::MouseMove)
            hoverAt(m_view->cursorForPosition(static_cast<QMouseEvent *>(event)->position().toPoint()).position());
        else if (event->type() == QEvent::Leave)
            showHovered(nullptr);
        else if (event->type() == QEvent::Resize)
            update();
    }
    return QWidget::eventFilter(watched, event);
}

void VerseGutter::hoverAt(int documentPosition)
{
    const QList<int> starts = lineStarts(*m_view->document());
    const auto after = std::upper_bound(starts.cbegin(), starts.cend(), documentPosition);
    const int lineNumber = int(after - starts.cbegin()) - 1;
    for (const VerseLine *line : m_analysis.lines()) {
        if (line->lineNumber == lineNumber) {
            showHovered(line);
            return;
        }
    }
    showHovered(nullptr);
}

void VerseGutter::showHovered(const VerseLine *line)
{
    const QList<int> starts = lineStarts(*m_view->document());
    if (line && line->lineNumber < starts.size())
        m_overlay->showLine(line, starts.at(line->lineNumber));
    else
        m_overlay->showLine(nullptr, 0);
}
