#include "editor/PoemRichText.h"

#include "editor/ImageSizing.h"
#include "editor/PoemPieces.h"
#include "editor/RtfReader.h"
#include "editor/RtfWriter.h"
#include "editor/RtfdContainer.h"
#include "editor/WriterTypingAttributes.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextImageFormat>

Result<QByteArray> PoemRichText::encode(const QTextDocument &document)
{
    return RtfWriter::write(document);
}

std::unique_ptr<PoemTextDocument> PoemRichText::decode(const QByteArray &data)
{
    if (data.isEmpty())
        return nullptr;
    auto document = newDocument();
    if (const auto rtfd = RtfdContainer::read(data)) {
        if (RtfReader::read(rtfd->rtf, *document, rtfd->files))
            return document;
    }
    if (RtfReader::read(data, *document))
        return document;
    return nullptr;
}

QString PoemRichText::plainText(const QTextDocument &document)
{
    QString text;
    text.reserve(document.characterCount());
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (block != document.begin())
            text.append(QLatin1Char('\n'));
        text.append(block.text());
    }
    text.replace(QChar::LineSeparator, QLatin1Char('\n'));
    return text;
}

std::unique_ptr<PoemTextDocument> PoemRichText::newDocument()
{
    auto document = std::make_unique<PoemTextDocument>();
    document->setDefaultFont(WriterTypingAttributes::editorFont());
    QTextCursor cursor(document.get());
    cursor.setBlockCharFormat(WriterTypingAttributes::defaults());
    document->setUndoRedoEnabled(false);
    document->setUndoRedoEnabled(true);
    return document;
}

std::unique_ptr<PoemTextDocument> PoemRichText::fromPlainText(const QString &text)
{
    auto document = newDocument();
    QString cleaned = text;
    cleaned.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    cleaned.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    // An object character without its image would show as an empty box.
    cleaned.remove(QChar::ObjectReplacementCharacter);
    QTextCursor cursor(document.get());
    document->setUndoRedoEnabled(false);
    cursor.insertText(cleaned, WriterTypingAttributes::defaults());
    document->setUndoRedoEnabled(true);
    return document;
}

Result<QByteArray> PoemRichText::encodePlainText(const QString &text)
{
    return encode(*fromPlainText(text));
}

Result<void> PoemRichText::appendImage(const QString &imagePath, PoemTextDocument &document)
{
    QString error;
    auto picture = StoredPicture::fromFile(imagePath, &error);
    if (!picture) {
        return Error{QCoreApplication::translate("PoemRichText", "Bild konnte nicht gelesen werden: %1 (%2)")
                         .arg(QFileInfo(imagePath).fileName(), error)};
    }
    const QSizeF size = ImageSizing::forAppend(picture->naturalSize);
    QTextImageFormat format;
    format.setName(document.addPicture(std::move(*picture)));
    format.setWidth(size.width());
    format.setHeight(size.height());

    QTextCursor cursor(&document);
    cursor.movePosition(QTextCursor::End);
    cursor.beginEditBlock();
    const bool bodyIsEmpty = document.characterCount() <= 1;
    if (!bodyIsEmpty)
        cursor.insertBlock();
    cursor.setBlockFormat(PoemPieces::imageParagraph());
    cursor.insertImage(format);
    cursor.endEditBlock();
    return {};
}

std::unique_ptr<PoemTextDocument> PoemRichText::bodyOf(const std::optional<QByteArray> &richTextData,
                                                       const std::optional<QString> &text)
{
    if (richTextData) {
        if (auto decoded = decode(*richTextData); decoded && decoded->characterCount() > 1)
            return decoded;
    }
    return fromPlainText(text.value_or(QString()));
}

Result<StoredPoemText> PoemRichText::appendingImage(const QString &imagePath,
                                                    const std::optional<QByteArray> &richTextData,
                                                    const std::optional<QString> &text)
{
    auto body = bodyOf(richTextData, text);
    if (auto appended = appendImage(imagePath, *body); !appended)
        return appended.error();
    auto encoded = encode(*body);
    if (!encoded)
        return encoded.error();
    return StoredPoemText{std::move(*encoded), plainText(*body)};
}
