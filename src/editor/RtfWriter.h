#pragma once

#include "archive/Result.h"

#include <QByteArray>

class QTextDocument;

// Writes a poem body as RTF that word processors open: Unicode through \uN, pictures in
// their stored bytes with their display size. Pictures RTF cannot carry inline (GIF, TIFF,
// PDF…, and those that came as attachments) make the result a flat RTFD stream. Only the attributes of the poem text
// model travel: font family and size, bold, italic, underline, strikethrough, colour, alignment, line spacing, spacing
// after a paragraph, images. Lengths are points (1 pt = 20 twips).
class RtfWriter {
public:
    static Result<QByteArray> write(const QTextDocument &document);
};
