#include "archive/ApplicationSupport.h"

#include "archive/AtomicFileWriter.h"

#include <QDir>
#include <QFile>
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
    if (auto created = AtomicFileWriter::ensurePrivateFolder(path); !created)
        return created.error();
    tightenPermissions();
    return path;
}

void ApplicationSupport::tightenPermissions()
{
    constexpr QFileDevice::Permissions ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    // Best effort: a folder on a read-only disk stays as it is and still opens.
    QFile::setPermissions(directory(), ownerOnly | QFileDevice::ExeOwner);
    const QString store = storePath();
    for (const QString &file : {store, store + QStringLiteral("-wal"), store + QStringLiteral("-shm"),
                                store + QStringLiteral("-journal"), preferencesPath()}) {
        if (QFile::exists(file))
            QFile::setPermissions(file, ownerOnly);
    }
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
