#pragma once

#include "editor/WriterImageSize.h"

#include <QSizeF>

// The display size of an image attachment, in points. Images are never enlarged.
class ImageSizing {
public:
    static constexpr double minimumInsertWidth = 240;
    static constexpr double maximumInsertWidth = 780;
    static constexpr double appendBoxWidth = 500;
    static constexpr double appendBoxHeight = 650;

    // Inserting from a file: fitted to the editor's text width, clamped to 240...780.
    static QSizeF forInsert(QSizeF natural, double textWidth);
    // Resizing to one of the menu sizes, measured against the natural size.
    static QSizeF forResize(QSizeF natural, WriterImageSize size);
    // Appending from the image import: fitted into a 500 × 650 box.
    static QSizeF forAppend(QSizeF natural);

private:
    static QSizeF fittedToWidth(QSizeF natural, double target);
};
