#pragma once

#include <QRectF>
#include <QString>

// One line of text on a PDF page, with its bounds in page coordinates (y grows downwards).
struct PDFLine {
    QString text;
    QRectF bounds;
};
