#pragma once

#include <QIcon>

// The program's leaf, drawn rather than shipped so every size stays sharp.
class AppIcon {
public:
    static QIcon icon();
};
