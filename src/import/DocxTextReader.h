#pragma once

#include "archive/Result.h"
#include "import/AttributedText.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

// Reads the word-processing XML of a DOCX: one line per paragraph, with bold, italic,
// underline, font, size, colour and alignment from the styles and the runs. Drawings,
// text boxes, deleted revisions and field codes are left out.
class DocxTextReader {
    Q_DECLARE_TR_FUNCTIONS(DocxTextReader)

public:
    static Result<AttributedText> read(const QString &path);
    // The parts themselves; styles may be empty.
    static Result<AttributedText> parse(const QByteArray &documentXml, const QByteArray &stylesXml);
};
