#pragma once

#include <QByteArray>

#include <optional>
#include <vector>

// A poem's rich text with its picture bytes cut out, so that the store can keep pictures in
// rows of their own and a keystroke rewrites the verses, not the photograph. Only the
// payloads of RTF "\bin" words are cut; everything else stays in the body. Joining gives
// back the original bytes exactly, whatever they were, so a misread word costs room, never
// a byte.
class StoredRichText {
public:
    // Smaller payloads stay in the body: a row of their own would cost more than it saves.
    static constexpr qsizetype minimumCut = 4096;

    struct Cut {
        qsizetype bodyOffset;   // where the payload goes back into the body
        qsizetype sourceOffset; // where it stood in the rich text
        qsizetype length;
    };

    struct Piece {
        qsizetype bodyOffset;
        QByteArray bytes;
    };

    static StoredRichText split(const QByteArray &richText);
    // Nothing when the pieces do not fit the body: offsets out of order or past its end.
    static std::optional<QByteArray> join(const QByteArray &body, const std::vector<Piece> &pieces);

    QByteArray body;
    std::vector<Cut> cuts;
};
