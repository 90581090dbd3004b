#pragma once

#include "archive/Result.h"
#include "export/ExportDocument.h"

#include <QByteArray>

#include <memory>

class PoemTextDocument;

// A poem on the program's printed page (PdfPageLayout): the title in gold, the meta lines
// in grey, then the body at print size.
class PDFExporter {
public:
    static constexpr double titlePointSize = 22;
    static constexpr double metaPointSize = 10;
    static constexpr double bodyPointSize = 12.5;

    // The page text in the document font (the editor font, or the system font where that
    // is missing).
    static std::unique_ptr<PoemTextDocument> makeAttributedText(const ExportDocument &document,
                                                                const QString &fontName);
    static Result<QByteArray> data(const ExportDocument &document);
    static Result<void> write(const ExportDocument &document, const QString &path);
};
