#include "import/FolderScanner.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include <dirent.h>
#include <sys/stat.h>

namespace {

bool hasExtension(const QString &name, const QSet<QString> &extensions)
{
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot < 0)
        return false;
    return extensions.contains(name.mid(dot + 1).toLower());
}

bool isReadableName(const QByteArray &name)
{
    return QFile::encodeName(QFile::decodeName(name)) == name;
}

// Qt's own listing leaves out names that are no valid UTF-8, as no QString names them:
// the folder is read a second time with the system's calls to find them. A folder with
// such a name is reported as a whole, as nothing below it can be named either.
void collectUnreadable(const QByteArray &folder, const QString &relative, const QSet<QString> &extensions,
                       QStringList &unreadable)
{
    DIR *stream = ::opendir(folder.constData());
    if (!stream)
        return;
    while (const dirent *entry = ::readdir(stream)) {
        const QByteArray name(entry->d_name);
        if (name.startsWith('.'))
            continue;
        const QByteArray path = folder + '/' + name;
        struct stat status {};
        if (::lstat(path.constData(), &status) != 0)
            continue;
        const QString shown = relative + QFile::decodeName(name);
        if (S_ISDIR(status.st_mode)) {
            if (isReadableName(name))
                collectUnreadable(path, shown + QLatin1Char('/'), extensions, unreadable);
            else
                unreadable.append(shown + QLatin1Char('/'));
        } else if (S_ISREG(status.st_mode) && !isReadableName(name) && hasExtension(shown, extensions)) {
            unreadable.append(shown);
        }
    }
    ::closedir(stream);
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
    return list(folder, extensions).paths;
}

FolderScanner::Listing FolderScanner::list(const QString &folder, const QSet<QString> &extensions)
{
    Listing listing;
    listing.paths = enumerateRegularFiles(folder, extensions);
    if (listing.paths.isEmpty())
        listing.paths = listSubpaths(folder, extensions);
    collectUnreadable(QFile::encodeName(QDir(folder).absolutePath()), QString(), extensions, listing.unreadable);
    return listing;
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
