#pragma once

#include "archive/Result.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QImage>
#include <QRectF>
#include <QSizeF>

class QIODevice;
class QPainter;
class QTextDocument;

// The program's printed page: A4 in points, one text rectangle (64 pt left and right, 90 pt
// top, 64 pt bottom) and the logo centred in the footer of every page. Any text document
// can be printed through it; it is laid out into as many pages as it needs.
class PdfPageLayout {
    Q_DECLARE_TR_FUNCTIONS(PdfPageLayout)

public:
    static constexpr double pageWidth = 595.2;
    static constexpr double pageHeight = 841.8;

    static QSizeF pageSize() { return {pageWidth, pageHeight}; }
    static QRectF textRect() { return {64, 90, pageWidth - 128, pageHeight - 154}; }
    // The logo fitted into 110 × 36 pt, centred, its lower edge 28 pt above the page's.
    // Empty for a logo without a positive size.
    static QRectF footerLogoRect(QSizeF logoSize);

    // Writes the document as PDF. The document is laid out for the page (its picture sizes,
    // given in points, are adjusted for that), so pass one made for printing.
    // "PDF konnte nicht erstellt werden." when no PDF can be drawn.
    static Result<void> write(QTextDocument &document, QIODevice &device, const QString &title, const QImage &logo);
    static Result<QByteArray> pdf(QTextDocument &document, const QString &title, const QImage &logo);

private:
    static void drawFooter(QPainter &painter, const QImage &logo);
};
