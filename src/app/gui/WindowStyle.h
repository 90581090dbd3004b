#pragma once

#include <QString>

// The window's quiet look: a warm grey sidebar, white list and page, muted secondary text.
class WindowStyle {
public:
    static QString styleSheet();
};
