#pragma once

#include "import/ScannedFile.h"

#include <QSet>
#include <QString>
#include <QStringList>

// Lists the files of one import below a folder the user chose.
class FolderScanner {
public:
    struct Listing {
        QStringList paths;
        // Below the folder, as far as they can be shown: files whose names are no valid
        // UTF-8, so that no path can name them; they are reported, not read.
        QStringList unreadable;
    };

    static QSet<QString> documentExtensions();
    static QSet<QString> imageExtensions();

    // Absolute paths of the regular files below the folder whose lower-cased extension is
    // in the set; hidden files and everything inside hidden folders are left out. The
    // order is the file system's: nothing is sorted.
    static QStringList collectFiles(const QString &folder, const QSet<QString> &extensions);
    static Listing list(const QString &folder, const QSet<QString> &extensions);

    static ScannedFile scannedFile(const QString &folder, const QString &filePath);
};
