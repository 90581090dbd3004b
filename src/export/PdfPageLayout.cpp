#include "export/PdfPageLayout.h"

#include "export/XmlText.h"

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QGuiApplication>
#include <QPainter>
#include <QPdfWriter>
#include <QScreen>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextImageFormat>
#include <QTextLayout>

#include <algorithm>
#include <vector>

namespace {

constexpr double logoBoxWidth = 110;
constexpr double logoBoxHeight = 36;
constexpr double logoBottomGap = 28;

struct LineBox {
    double top;
    double bottom;
};

// Every line of the document, laid out as one endless column, in reading order.
std::vector<LineBox> lineBoxes(const QTextDocument &document)
{
    std::vector<LineBox> boxes;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QTextLayout *layout = block.layout();
        if (!layout)
            continue;
        for (int i = 0; i < layout->lineCount(); ++i) {
            const QTextLine line = layout->lineAt(i);
            const double top = layout->position().y() + line.y();
            boxes.push_back({top, top + line.height()});
        }
    }
    return boxes;
}

// Where each page begins, plus the end of the last one. Pages are cut by the program, not by
// the text layout, whose page breaks let a line with extra spacing hang past the page's
// bottom. A page ends before the first line that would not lie whole inside it; a page
// begins at a line top that no earlier line reaches below, so no line is drawn on two pages.
std::vector<double> pageStarts(const std::vector<LineBox> &lines, double pageHeight)
{
    std::vector<double> starts{0};
    double lowestBottom = 0;
    double lastCut = 0; // the latest line top that is free of earlier lines
    for (const LineBox &line : lines) {
        if (line.top >= lowestBottom - 0.01)
            lastCut = line.top;
        if (line.bottom - starts.back() > pageHeight + 0.01) {
            // Lines overlapping back to the page's start cannot be kept apart, and a line
            // taller than a page is cut at the bottom wherever it goes.
            const double next = lastCut > starts.back() ? lastCut : line.top;
            if (next > starts.back() + 0.01)
                starts.push_back(next);
        }
        lowestBottom = std::max(lowestBottom, line.bottom);
    }
    starts.push_back(std::max(lowestBottom, starts.back()) + 1);
    return starts;
}

// The text layout scales picture sizes from the screen's resolution to the device's, while
// the document gives them in points like its fonts; this undoes that scaling.
void sizePicturesInPoints(QTextDocument &document)
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    const double scaleX = (screen ? qRound(screen->logicalDotsPerInchX()) : 96) / 72.0;
    const double scaleY = (screen ? qRound(screen->logicalDotsPerInchY()) : 96) / 72.0;
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (!fragment.charFormat().isImageFormat())
                continue;
            QTextImageFormat image = fragment.charFormat().toImageFormat();
            if (image.width() > 0)
                image.setWidth(image.width() * scaleX);
            if (image.height() > 0)
                image.setHeight(image.height() * scaleY);
            cursor.setPosition(fragment.position());
            cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
            cursor.setCharFormat(image);
        }
    }
    cursor.endEditBlock();
}

} // namespace

QRectF PdfPageLayout::footerLogoRect(QSizeF logoSize)
{
    if (logoSize.width() <= 0 || logoSize.height() <= 0)
        return {};
    const double scale = std::min(logoBoxWidth / logoSize.width(), logoBoxHeight / logoSize.height());
    const QSizeF size = logoSize * scale;
    return {(pageWidth - size.width()) / 2, pageHeight - logoBottomGap - size.height(), size.width(), size.height()};
}

void PdfPageLayout::drawFooter(QPainter &painter, const QImage &logo)
{
    if (logo.isNull())
        return;
    const QRectF target = footerLogoRect(logo.deviceIndependentSize());
    if (target.isEmpty())
        return;
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, logo);
}

Result<void> PdfPageLayout::write(QTextDocument &document, QIODevice &device, const QString &title, const QImage &logo)
{
    QPdfWriter writer(&device);
    writer.setResolution(72); // one device unit per point, as the document's sizes are
    writer.setPageSize(QPageSize(pageSize(), QPageSize::Point, {}, QPageSize::ExactMatch));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    writer.setTitle(XmlText::allowedCharacters(title)); // Qt also writes it as XML metadata
    writer.setCreator(QStringLiteral("OdeLeaf"));

    const QRectF text = textRect();
    sizePicturesInPoints(document);
    document.documentLayout()->setPaintDevice(&writer);
    document.setDocumentMargin(0);
    document.setTextWidth(text.width());
    document.documentLayout()->documentSize(); // lays out every line, not only the first screen
    const std::vector<double> starts = pageStarts(lineBoxes(document), text.height());
    const int pages = int(starts.size()) - 1;

    QPainter painter;
    if (!painter.begin(&writer))
        return Error{tr("PDF konnte nicht erstellt werden.")};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    for (int page = 0; page < pages; ++page) {
        if (page > 0 && !writer.newPage()) {
            painter.end();
            return Error{tr("PDF konnte nicht erstellt werden.")};
        }
        painter.fillRect(QRectF(QPointF(0, 0), pageSize()), Qt::white);
        painter.save();
        const double top = starts[size_t(page)];
        const double bottom = std::min(starts[size_t(page) + 1], top + text.height());
        painter.translate(text.left(), text.top() - top);
        painter.setClipRect(QRectF(0, top, text.width(), text.height()));
        // The layout draws every line touching the clip, and the PDF keeps the text of lines
        // the painter clips away: the context takes only this page's lines.
        QAbstractTextDocumentLayout::PaintContext context;
        context.clip = QRectF(0, top + 0.01, text.width(), bottom - top - 0.02);
        document.documentLayout()->draw(&painter, context);
        painter.restore();
        drawFooter(painter, logo);
    }
    if (!painter.end())
        return Error{tr("PDF konnte nicht erstellt werden.")};
    return {};
}

Result<QByteArray> PdfPageLayout::pdf(QTextDocument &document, const QString &title, const QImage &logo)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (auto written = write(document, buffer, title, logo); !written)
        return written.error();
    return bytes;
}
