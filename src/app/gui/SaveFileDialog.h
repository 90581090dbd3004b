#pragma once

#include <QString>

class QWidget;

// The save dialog of the export actions: titled, filtered to one file type, opening at the
// proposed folder with the proposed name.
class SaveFileDialog {
public:
    // The chosen path, or empty when the user cancelled.
    static QString ask(QWidget *parent, const QString &title, const QString &nameFilter, const QString &suffix,
                       const QString &proposedPath);
};
