#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

class PoemTextDocument;

// Reads RTF into a poem body: what this program writes, and what word processors write
// (code pages through \'xx, \ucN, font and colour tables, \par and \line, ignorable
// destinations, shapes, pictures of every kind). Attachments of an RTFD container are looked
// up by the file names the text refers to. Pictures the program cannot draw are kept as they
// are; everything else outside the poem text model is dropped, and so is anything after
// the document's closing brace.
//
// Arbitrary bytes never crash or hang the reader: groups nest at most maxGroupDepth deep
// (deeper ones are skipped), tables and pictures are bounded, and the work is linear in
// the input.
class RtfReader {
public:
    using Attachments = QHash<QString, QByteArray>;

    static constexpr int maxGroupDepth = 200;
    static constexpr qsizetype maxInputSize = 256 * 1024 * 1024;

    // False when the bytes are not RTF; the document is then left empty.
    static bool read(const QByteArray &rtf, PoemTextDocument &document, const Attachments &attachments = {});
    static bool looksLikeRtf(const QByteArray &bytes);
};
