#include "analysis/StatisticsPdfWriter.h"

#include "archive/AppPreferences.h"
#include "archive/AtomicFileWriter.h"
#include "editor/AppTheme.h"

#include <QAbstractTextDocumentLayout>
#include <QFontDatabase>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QTextBlock>
#include <QTextBlockFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>

#include <algorithm>

namespace {

QFont documentFont(qreal pointSize, bool bold)
{
    const QString family = AppPreferences::editorFontName();
    QFont font = !family.isEmpty() && QFontDatabase::hasFamily(family)
                     ? QFont(family)
                     : QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPointSizeF(pointSize);
    font.setWeight(bold ? QFont::Bold : QFont::Normal);
    return font;
}

void fillDocument(QTextDocument &document, const QString &title, const QString &body)
{
    document.setDocumentMargin(0);
    QTextCursor cursor(&document);

    QTextBlockFormat titleBlock;
    titleBlock.setBottomMargin(18);
    QTextCharFormat titleChars;
    titleChars.setFont(documentFont(22, true));
    titleChars.setForeground(AppTheme::accent());
    cursor.setBlockFormat(titleBlock);
    cursor.setBlockCharFormat(titleChars);
    cursor.insertText(title, titleChars);

    QTextBlockFormat bodyBlock;
    bodyBlock.setLineHeight(5, QTextBlockFormat::LineDistanceHeight);
    QTextCharFormat bodyChars;
    bodyChars.setFont(documentFont(12.5, false));
    bodyChars.setForeground(QColor::fromRgbF(0.12f, 0.12f, 0.12f));
    for (const QString &line : body.split(QLatin1Char('\n'))) {
        cursor.insertBlock(bodyBlock, bodyChars);
        cursor.insertText(line, bodyChars);
    }
}

// One laid-out line and where it goes: its page and its top on that page.
struct PlacedLine {
    QTextLine line;
    QPointF layoutOrigin;
    int page = 0;
    qreal top = 0;
};

// Lines fill a page until the next one would cross its end; that line starts the next
// page, so no line is cut or drawn twice.
std::vector<PlacedLine> placeLines(const QTextDocument &document, qreal pageHeight)
{
    std::vector<PlacedLine> placed;
    int page = 0;
    qreal pageStart = 0;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QTextLayout *layout = block.layout();
        for (int i = 0; i < layout->lineCount(); ++i) {
            const QTextLine line = layout->lineAt(i);
            const qreal y = layout->position().y() + line.y();
            if (y + line.height() - pageStart > pageHeight && y > pageStart) {
                ++page;
                pageStart = y;
            }
            placed.push_back({line, layout->position(), page, y - pageStart});
        }
    }
    return placed;
}

// Fitted into 110 × 36 pt, centred, its lower edge 28 pt above the page's.
void drawFooter(QPainter &painter, const QImage &logo)
{
    if (logo.isNull() || logo.width() <= 0 || logo.height() <= 0)
        return;
    const qreal scale = std::min(110.0 / logo.width(), 36.0 / logo.height());
    const QSizeF size(logo.width() * scale, logo.height() * scale);
    const QRectF target((StatisticsPdfWriter::pageWidth - size.width()) / 2,
                        StatisticsPdfWriter::pageHeight - 28 - size.height(), size.width(), size.height());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, logo);
}

} // namespace

Result<int> StatisticsPdfWriter::write(QIODevice &device, const QString &title, const QString &body, const QImage &logo)
{
    QPdfWriter writer(&device);
    writer.setResolution(72); // one unit is one point
    writer.setPageLayout(
        QPageLayout(QPageSize(QSizeF(pageWidth, pageHeight), QPageSize::Point), QPageLayout::Portrait, QMarginsF()));
    writer.setTitle(title);
    writer.setCreator(QStringLiteral("OdeLeaf"));

    QTextDocument document;
    document.documentLayout()->setPaintDevice(&writer);
    fillDocument(document, title, body);
    const QRectF text = textRect();
    document.setTextWidth(text.width());
    document.size(); // lays out every block now; the layout is lazy otherwise
    const std::vector<PlacedLine> lines = placeLines(document, text.height());

    QPainter painter;
    if (!painter.begin(&writer))
        return Error{tr("PDF konnte nicht erstellt werden.")};
    const int pages = lines.empty() ? 1 : lines.back().page + 1;
    for (int page = 0; page < pages; ++page) {
        if (page > 0)
            writer.newPage();
        painter.fillRect(QRectF(0, 0, pageWidth, pageHeight), Qt::white);
        for (const PlacedLine &placed : lines) {
            if (placed.page != page)
                continue;
            const QPointF lineTop(text.left() + placed.layoutOrigin.x(), text.top() + placed.top);
            placed.line.draw(&painter, lineTop - QPointF(0, placed.line.y()));
        }
        drawFooter(painter, logo);
    }
    if (!painter.end())
        return Error{tr("PDF konnte nicht erstellt werden.")};
    return pages;
}

Result<void> StatisticsPdfWriter::write(const QString &path, const QString &title, const QString &body,
                                        const QImage &logo)
{
    return AtomicFileWriter::write(path, [&](QIODevice &device) -> Result<void> {
        if (auto written = write(device, title, body, logo); !written)
            return written.error();
        return {};
    });
}
