#pragma once

#include "archive/Result.h"
#include "editor/PoemTextDocument.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

class QTextDocument;

// Both forms of a poem body as the record stores them.
struct StoredPoemText {
    QByteArray richTextData;
    QString text;
};

// The stored form of a poem's formatted text (richTextData) and its plain companion.
// richTextData is RTF written by this program; reading also accepts RTF from other programs
// and the flat RTFD stream of backups made on another platform. Lengths in the document
// (image sizes, spacing) are points.
class PoemRichText {
public:
    static Result<QByteArray> encode(const QTextDocument &document);
    // RTFD first, then RTF; nothing when neither reader accepts the data. Empty data counts
    // as absent.
    static std::unique_ptr<PoemTextDocument> decode(const QByteArray &data);

    // The editor's plain string: one line feed between paragraphs and for each line break,
    // one object character per image.
    static QString plainText(const QTextDocument &document);

    // An empty body with the editor font as its default.
    static std::unique_ptr<PoemTextDocument> newDocument();
    // A body built from plain text with the default typing attributes.
    static std::unique_ptr<PoemTextDocument> fromPlainText(const QString &text);
    // What the editor stores for a plain text: its richTextData.
    static Result<QByteArray> encodePlainText(const QString &text);

    // Appends the image file in its own centred paragraph at the end, shown fitted into a
    // 500 × 650 box and stored in the file's own bytes.
    static Result<void> appendImage(const QString &imagePath, PoemTextDocument &document);
    // The image import's step: the stored body (formatted when it decodes, else built from
    // the plain text) with the image appended, in both forms.
    static Result<StoredPoemText> appendingImage(const QString &imagePath,
                                                 const std::optional<QByteArray> &richTextData,
                                                 const std::optional<QString> &text);
    // The body to edit for a record: its formatted text when that decodes to something,
    // else its plain text.
    static std::unique_ptr<PoemTextDocument> bodyOf(const std::optional<QByteArray> &richTextData,
                                                    const std::optional<QString> &text);
};
