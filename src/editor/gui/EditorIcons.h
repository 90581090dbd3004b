#pragma once

#include <QColor>
#include <QIcon>

// Small icons drawn by the program, so the toolbar looks the same under every icon theme.
class EditorIcons {
public:
    static QIcon alignment(Qt::Alignment alignment);
    static QIcon colorSwatch(const QColor &color);
    // A letter in the given style: bold "F", italic "K", underlined "U".
    static QIcon letter(const QString &letter, bool bold, bool italic, bool underline);
    static QIcon clearFormatting();
    static QIcon spelling();
    static QIcon find();
    static QIcon notes();
    static QIcon duplicate();
};
