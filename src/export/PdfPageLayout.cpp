#include "export/PdfPageLayout.h"

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
#include <cmath>
#include <limits>
#include <vector>

namespace {

constexpr double logoBoxWidth = 110;
constexpr double logoBoxHeight = 36;
constexpr double logoBottomGap = 28;

// Where each page's first line starts. A page is drawn from its first line to the next
// page's, so the leading of a page's last line, which reaches past the page edge, never
// brings that line onto the next page as well (hidden by the clip, yet in the PDF's text).
std::vector<double> pageStarts(const QTextDocument &document, double pageHeight, int pages)
{
    std::vector<double> starts(size_t(pages) + 1, std::numeric_limits<double>::infinity());
    for (int page = 0; page < pages; ++page)
        starts[size_t(page)] = page * pageHeight;
    std::vector<bool> seen(size_t(pages), false);
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QTextLayout *layout = block.layout();
        if (!layout)
            continue;
        for (int i = 0; i < layout->lineCount(); ++i) {
            const double top = layout->position().y() + layout->lineAt(i).y();
            const int page = std::clamp(int(std::floor((top + 0.01) / pageHeight)), 0, pages - 1);
            if (!seen[size_t(page)] || top < starts[size_t(page)]) {
                starts[size_t(page)] = top;
                seen[size_t(page)] = true;
            }
        }
    }
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
    writer.setTitle(title);
    writer.setCreator(QStringLiteral("OdeLeaf"));

    const QRectF text = textRect();
    sizePicturesInPoints(document);
    document.documentLayout()->setPaintDevice(&writer);
    document.setDocumentMargin(0);
    document.setPageSize(text.size());
    const int pages = std::max(1, document.pageCount());
    const std::vector<double> starts = pageStarts(document, text.height(), pages);

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
        const QRectF slice(0, page * text.height(), text.width(), text.height());
        painter.translate(text.left(), text.top() - slice.top());
        painter.setClipRect(slice);
        QAbstractTextDocumentLayout::PaintContext context;
        context.clip =
            QRectF(0, starts[size_t(page)] + 0.01, text.width(),
                   std::min(starts[size_t(page) + 1], slice.bottom() + text.height()) - starts[size_t(page)] - 0.02);
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
