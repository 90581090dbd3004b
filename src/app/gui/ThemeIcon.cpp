#include "app/gui/ThemeIcon.h"

#include <QStandardPaths>

QIcon ThemeIcon::named(const QString &name)
{
    const QIcon symbolic = QIcon::fromTheme(name + QStringLiteral("-symbolic"));
    return symbolic.isNull() ? QIcon::fromTheme(name) : symbolic;
}

void ThemeIcon::useDesktopTheme()
{
    QStringList paths = QIcon::themeSearchPaths();
    for (const QString &folder : QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation)) {
        const QString icons = folder + QStringLiteral("/icons");
        if (!paths.contains(icons))
            paths.append(icons);
    }
    QIcon::setThemeSearchPaths(paths);
    QIcon::setFallbackThemeName(QStringLiteral("Adwaita"));
    if (QIcon::themeName().isEmpty())
        QIcon::setThemeName(QStringLiteral("Adwaita"));
}
