#include "app/ProgramFiles.h"

#include <QCoreApplication>
#include <QDir>

QString ProgramFiles::helperExecutable()
{
    return helperExecutable(QCoreApplication::applicationDirPath());
}

QString ProgramFiles::translationsDirectory()
{
    return translationsDirectory(QCoreApplication::applicationDirPath());
}

QString ProgramFiles::helperExecutable(const QString &programDirectory)
{
    return QDir::cleanPath(programDirectory + QStringLiteral("/" ODELEAF_BIN_TO_LIBEXEC "/odeleaf-extract"));
}

QString ProgramFiles::translationsDirectory(const QString &programDirectory)
{
    return QDir::cleanPath(programDirectory + QStringLiteral("/" ODELEAF_BIN_TO_DATA "/translations"));
}
