#include "import/FolderScanner.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

namespace {

bool hasExtension(const QString &name, const QSet<QString> &extensions)
{
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot < 0)
        return false;
    return extensions.contains(name.mid(dot + 1).toLower());
}

QStringList enumerateRegularFiles(const QString &folder, const QSet<QString> &extensions)
{
    QStringList files;
    // Without QDir::Hidden the iterator neither returns nor enters hidden entries, and
    // without FollowSymlinks it does not enter linked folders.
    QDirIterator walk(folder, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot | QDir::System,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        walk.next();
        const QFileInfo info = walk.fileInfo();
        if (info.isSymLink() || !info.isFile())
            continue;
        if (hasExtension(info.fileName(), extensions))
            files.append(info.absoluteFilePath());
    }
    return files;
}

// Second chance when the regular walk found nothing: every path below the folder, judged
// by its name alone.
QStringList listSubpaths(const QString &folder, const QSet<QString> &extensions)
{
    QStringList files;
    const QDir root(folder);
    QDirIterator walk(folder, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QString path = walk.next();
        const QString subpath = root.relativeFilePath(path);
        if (subpath.startsWith(QLatin1Char('.')) || subpath.contains(QLatin1String("/.")))
            continue;
        if (hasExtension(QFileInfo(subpath).fileName(), extensions))
            files.append(root.absoluteFilePath(subpath));
    }
    return files;
}

} // namespace

QSet<QString> FolderScanner::documentExtensions()
{
    return {QStringLiteral("pdf"), QStringLiteral("docx")};
}

QSet<QString> FolderScanner::imageExtensions()
{
    return {QStringLiteral("png"), QStringLiteral("jpg"), QStringLiteral("jpeg")};
}

QStringList FolderScanner::collectFiles(const QString &folder, const QSet<QString> &extensions)
{
    const QStringList files = enumerateRegularFiles(folder, extensions);
    if (!files.isEmpty())
        return files;
    return listSubpaths(folder, extensions);
}

ScannedFile FolderScanner::scannedFile(const QString &folder, const QString &filePath)
{
    QString prefix = QDir(folder).absolutePath();
    if (!prefix.endsWith(QLatin1Char('/')))
        prefix.append(QLatin1Char('/'));
    const QString relative =
        filePath.startsWith(prefix) ? filePath.mid(prefix.size()) : QDir(folder).relativeFilePath(filePath);
    return {QFileInfo(filePath).fileName(), relative};
}
