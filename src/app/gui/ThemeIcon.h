#pragma once

#include <QIcon>
#include <QString>

// Icons from the desktop's theme: the monochrome "-symbolic" form first, as it suits the
// calm look of the window, then the plain name.
class ThemeIcon {
public:
    static QIcon named(const QString &name);
    // Outside a desktop session Qt looks in no icon folder and knows no theme; the system's
    // icon folders and the common GNOME theme stand in.
    static void useDesktopTheme();
};
