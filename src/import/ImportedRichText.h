#pragma once

#include "archive/Result.h"
#include "import/AttributedText.h"

#include <QByteArray>
#include <QTextCharFormat>

// A document's formatted text as a poem stores it (the editor's richTextData).
//
// Kept from the document: bold, italic, single underline, paragraph alignment and the line
// structure (each paragraph one line). Dropped: font family, size and colour, so that an
// imported poem reads in the poet's editor font and size and in the colours of the chosen
// appearance, like a poem typed in the program, on screen and in its exports.
class ImportedRichText {
public:
    // editorDefaults: WriterTypingAttributes::defaults(), taken once per run; it reads the
    // preferences, which a reader thread should not do for every file.
    static Result<QByteArray> encode(const AttributedText &text, const QTextCharFormat &editorDefaults);
};
