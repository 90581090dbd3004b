#include "archive/ApplicationSupport.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

namespace {

QString &configuredDirectory()
{
    static QString path;
    return path;
}

} // namespace

QString ApplicationSupport::directory()
{
    if (!configuredDirectory().isEmpty())
        return configuredDirectory();
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/OdeLeaf");
}

void ApplicationSupport::setDirectory(const QString &path)
{
    configuredDirectory() = QDir(path).absolutePath();
}

Result<QString> ApplicationSupport::ensureDirectory()
{
    const QString path = directory();
    if (!QDir().mkpath(path))
        return Error{
            QCoreApplication::translate("ApplicationSupport", "Ordner konnte nicht angelegt werden: %1").arg(path)};
    return path;
}

QString ApplicationSupport::storePath()
{
    return filePath(QStringLiteral("OdeLeaf.sqlite"));
}

QString ApplicationSupport::preferencesPath()
{
    return filePath(QStringLiteral("preferences.ini"));
}

QString ApplicationSupport::filePath(const QString &name)
{
    return directory() + QLatin1Char('/') + name;
}
