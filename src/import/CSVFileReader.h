#pragma once

#include "archive/Result.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

// Reads a whole input file that the user chose, but only a regular one and only up to a
// limit, so that a device, a pipe or a huge file ends in a message instead of in the
// memory of the window.
class CSVFileReader {
    Q_DECLARE_TR_FUNCTIONS(CSVFileReader)

public:
    // A poem list of 100,000 rows is about 5 MB; parsing keeps several copies of the text.
    static constexpr qint64 maxBytes = 32 * 1024 * 1024;

    static Result<QByteArray> read(const QString &path, qint64 limit = maxBytes);
};
