#pragma once

#include <QString>

class QObject;

// Shows a written file in the desktop's file manager: selected in its folder where the
// file manager offers that over D-Bus, else the folder is opened.
class FileManagerReveal {
public:
    static void reveal(const QString &filePath, QObject *owner);
};
