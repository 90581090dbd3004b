#pragma once

#include <QString>

// A file found below the scanned folder, as the matcher and the review see it.
struct ScannedFile {
    QString fileName;     // last path component, with extension
    QString relativePath; // below the scanned folder

    bool operator==(const ScannedFile &other) const = default;
};
