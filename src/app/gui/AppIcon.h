#pragma once

#include <QIcon>

// The program's logo, a leaf over a line of verse, as the window and About icon.
class AppIcon {
public:
    static QIcon icon();
};
