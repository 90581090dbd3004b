#pragma once

#include <QColor>

// The program's own colours. The "system" colours of the text model are fixed values here:
// stored text must look the same on every desktop, whatever its palette.
class AppTheme {
public:
    static QColor accent();    // gold: insertion point, "Gold" text colour
    static QColor paperText(); // the paper appearance's ink
    static QColor secondaryLabel();
    static QColor systemRed();
    static QColor systemBlue();
    static QColor systemGreen();
    static QColor systemYellow(); // search highlight background
    // Reading surfaces behind the two editor appearances.
    static QColor standardSurface();
    static QColor paperSurface();
};
