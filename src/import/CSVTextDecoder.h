#pragma once

#include "archive/Result.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

struct DecodedText {
    QString text;
    // "UTF-8", "UTF-16LE (BOM)", …: shown in the import's diagnostics.
    QString encoding;
};

// Turns the bytes of a spreadsheet export into text. A byte-order mark decides; without one,
// UTF-16 is recognised by its pattern (little-endian first), and everything else must be
// valid UTF-8. Nothing is guessed beyond that: a wrong guess would garble titles silently.
class CSVTextDecoder {
    Q_DECLARE_TR_FUNCTIONS(CSVTextDecoder)

public:
    // Fails with "CSV Encoding nicht lesbar: " and what was found.
    static Result<DecodedText> decodeText(const QByteArray &bytes);

    // Byte offset of the first byte that breaks UTF-8, or -1 when all of it is valid.
    static qsizetype firstInvalidUtf8Byte(const QByteArray &bytes);
};
