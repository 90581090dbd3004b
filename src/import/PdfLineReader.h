#pragma once

#include "archive/Result.h"
#include "import/PDFLine.h"

#include <QList>
#include <QString>

// The text lines of every page of a PDF, as poppler lays them out.
class PdfLineReader {
public:
    static Result<QList<QList<PDFLine>>> read(const QString &path);
};
