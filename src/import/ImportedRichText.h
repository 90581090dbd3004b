#pragma once

#include "archive/Result.h"
#include "import/AttributedText.h"

#include <QByteArray>
#include <QString>

// A document's formatted text as a poem stores it (the editor's richTextData).
//
// Kept from the document: bold, italic, single underline, paragraph alignment and the line
// structure (each paragraph one line). Dropped: font family, size and colour, so that an
// imported poem reads in the poet's editor font and size and in the colours of the chosen
// appearance, like a poem typed in the program, on screen and in its exports.
class ImportedRichText {
public:
    // The editor font as plain values. Copies of a QTextCharFormat or QFont share one private
    // part whose font cache is filled in when it is read, so readers on several threads must
    // never share one; each encode builds its own from these.
    struct EditorFont {
        QString family;
        double pointSize = 0;

        // Reads the preferences and the font database: take it once per run, on the
        // caller's thread.
        static EditorFont current();
    };

    // Safe to call from several threads at once.
    static Result<QByteArray> encode(const AttributedText &text, const EditorFont &editorFont);
};
