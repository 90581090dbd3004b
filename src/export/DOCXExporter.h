#pragma once

#include "archive/Result.h"
#include "export/ExportDocument.h"
#include "export/ExportImage.h"
#include "export/ZipArchive.h"

#include <QDateTime>

#include <optional>
#include <vector>

// A poem as a word-processing document (Office Open XML), written from fixed templates and
// packed with the program's own ZIP writer.
class DOCXExporter {
public:
    struct Options {
        QString fontName;               // the document font, usually the editor font
        QDateTime moment;               // creation and change time of the core properties
        std::optional<QByteArray> logo; // PNG for the footer; none leaves the footer out

        // The editor font, now, and the program's logo.
        static Options current();
    };

    // The package parts in the order they are packed.
    static std::vector<ZipArchive::Entry> parts(const ExportDocument &document, const Options &options);
    static Result<QByteArray> data(const ExportDocument &document, const Options &options);
    static Result<void> write(const ExportDocument &document, const QString &path);

    // The five XML special characters, in one pass; characters XML 1.0 forbids are dropped.
    static QString escape(const QString &text);
    // The editor's 17 pt body becomes 12.5 pt on paper, and nothing is smaller than 8 pt.
    static double printPointSize(double editorPointSize);
    static int halfPoints(double editorPointSize);
    // Display size of a picture: at most 440 pt wide, in EMU.
    static QSize emuSize(QSizeF points);
};
