#include "editor/gui/StressPatternOverlay.h"

#include "editor/AppTheme.h"

#include <QPainter>
#include <QPainterPath>
#include <QTextEdit>

StressPatternOverlay::StressPatternOverlay(QTextEdit *view) : QWidget(view->viewport()), m_view(view)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    hide();
}

void StressPatternOverlay::showLine(const VerseLine *line, int lineStart)
{
    m_hasLine = line != nullptr && line->hasWords();
    if (m_hasLine) {
        m_line = *line;
        m_lineStart = lineStart;
    }
    setGeometry(m_view->viewport()->rect());
    setVisible(m_hasLine);
    raise();
    update();
}

void StressPatternOverlay::paintEvent(QPaintEvent *)
{
    if (!m_hasLine)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QFont font = this->font();
    font.setPointSizeF(font.pointSizeF() * 0.85);
    font.setBold(true);
    painter.setFont(font);
    const QFontMetrics metrics(font);
    const QStringList patterns = m_line.stressPerWord();
    QTextCursor cursor(m_view->document());
    // The text may be a keystroke ahead of the analysis.
    const int last = m_view->document()->characterCount() - 1;
    for (qsizetype w = 0; w < m_line.words.size() && w < patterns.size(); ++w) {
        if (m_lineStart + m_line.words.at(w).second > last)
            break;
        cursor.setPosition(m_lineStart + m_line.words.at(w).first);
        const QRect start = m_view->cursorRect(cursor);
        cursor.setPosition(m_lineStart + m_line.words.at(w).second);
        const QRect end = m_view->cursorRect(cursor);
        // A word broken over two laid-out lines takes its first part's place.
        const int right =
            end.top() == start.top() ? end.left() : start.left() + metrics.horizontalAdvance(patterns.at(w));
        const int width = metrics.horizontalAdvance(patterns.at(w)) + 6;
        const QRect box((start.left() + right - width) / 2, start.top() - metrics.height(), width, metrics.height());
        QPainterPath pill;
        pill.addRoundedRect(box, 4, 4);
        QColor ground = palette().color(QPalette::Base);
        ground.setAlpha(215);
        painter.fillPath(pill, ground);
        painter.setPen(AppTheme::accent().darker(140));
        painter.drawText(box, Qt::AlignCenter, patterns.at(w));
    }
}
