#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QPair>
#include <QString>

#include <optional>

// The flat RTFD stream found in backups made on another platform: a "rtfd" header followed
// by the file names and the files of an RTFD folder ("TXT.rtf" and its attachments).
// Reading is best effort: when the layout is not the expected one, the RTF text and the
// images are still looked for by their signatures.
struct RtfdContents {
    QByteArray rtf;
    QHash<QString, QByteArray> files;
};

class RtfdContainer {
public:
    static bool looksLikeRtfd(const QByteArray &bytes);
    static std::optional<RtfdContents> read(const QByteArray &bytes);
    // The stream read() reads first: header, entry count, the names, then the files.
    static QByteArray write(const QByteArray &rtf, const QList<QPair<QString, QByteArray>> &attachments);
};
