#pragma once

#include "archive/Result.h"
#include "import/AttributedText.h"
#include "import/ExtractedDocument.h"
#include "import/PDFLine.h"

#include <QList>
#include <QString>

// Turns one DOCX or PDF file into a poem text, in this process. The window and the command
// line never call it directly on a user's file: IsolatedDocumentExtractor runs it in a
// helper process, so a hostile file cannot crash or hang them.
class DocumentTextExtractor {
public:
    // Dispatches on the lower-cased extension: "docx" or "pdf".
    static Result<ExtractedDocument> extract(const QString &path);
    static Result<ExtractedDocument> extractDOCX(const QString &path);
    static Result<ExtractedDocument> extractPDF(const QString &path);

    // Page texts rebuilt from line boxes: reading order, an empty line where the gap
    // between two lines is clearly wider than the usual line distance, one empty line
    // between pages.
    static QString extractPDFByLines(const QList<QList<PDFLine>> &pages);
    static double medianLineDistance(const QList<PDFLine> &linesInReadingOrder);
};
