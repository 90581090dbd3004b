#include "editor/RichTextEditing.h"

#include "editor/ImageSizing.h"
#include "editor/PoemPieces.h"
#include "editor/PoemTextDocument.h"
#include "editor/WriterTypingAttributes.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFileInfo>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextImageFormat>

#include <vector>

namespace {

struct Run {
    int start;
    int end;
    QTextCharFormat format;
};

QTextCharFormat withoutImage(QTextCharFormat format)
{
    if (!format.isImageFormat())
        return format;
    for (const int property : {int(QTextFormat::ObjectType), int(QTextFormat::ImageName), int(QTextFormat::ImageWidth),
                               int(QTextFormat::ImageHeight), int(QTextFormat::ImageQuality)})
        format.clearProperty(property);
    return format;
}

// The text runs of the selection, images left out.
std::vector<Run> selectedRuns(const QTextCursor &cursor)
{
    std::vector<Run> runs;
    const int start = cursor.selectionStart();
    const int end = cursor.selectionEnd();
    for (QTextBlock block = cursor.document()->findBlock(start); block.isValid() && block.position() <= end;
         block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const int from = qMax(fragment.position(), start);
            const int to = qMin(fragment.position() + fragment.length(), end);
            if (from < to && !fragment.charFormat().isImageFormat())
                runs.push_back({from, to, fragment.charFormat()});
        }
    }
    return runs;
}

QTextCursor selecting(QTextDocument *document, int start, int end)
{
    QTextCursor cursor(document);
    cursor.setPosition(start);
    cursor.setPosition(end, QTextCursor::KeepAnchor);
    return cursor;
}

// Each paragraph the selection touches, or the one at the insertion point.
template <typename Change> void forEachTouchedBlock(const QTextCursor &cursor, Change change)
{
    QTextDocument *document = cursor.document();
    const QTextBlock last = document->findBlock(cursor.selectionEnd());
    for (QTextBlock block = document->findBlock(cursor.selectionStart()); block.isValid(); block = block.next()) {
        change(block);
        if (block == last)
            break;
    }
}

} // namespace

QTextCharFormat RichTextEditing::typingFormat(const QTextCursor &cursor)
{
    // clearSelection() would also forget the typing attributes set on the cursor.
    if (!cursor.hasSelection())
        return withoutImage(cursor.charFormat());
    QTextCursor probe(cursor.document());
    probe.setPosition(cursor.selectionStart());
    return withoutImage(probe.charFormat());
}

QTextCharFormat RichTextEditing::firstRunFormat(const QTextCursor &cursor)
{
    if (cursor.hasSelection()) {
        const std::vector<Run> runs = selectedRuns(cursor);
        if (!runs.empty())
            return runs.front().format;
    }
    return typingFormat(cursor);
}

void RichTextEditing::editRuns(QTextCursor &cursor, const std::function<void(QTextCharFormat &)> &change)
{
    if (!cursor.hasSelection()) {
        QTextCharFormat format = typingFormat(cursor);
        change(format);
        cursor.setCharFormat(format);
        return;
    }
    QTextDocument *document = cursor.document();
    const std::vector<Run> runs = selectedRuns(cursor);
    cursor.beginEditBlock();
    for (const Run &run : runs) {
        QTextCharFormat format = run.format;
        change(format);
        QTextCursor editor = selecting(document, run.start, run.end);
        editor.setCharFormat(format);
    }
    // Empty paragraphs in the selection keep the format typing would start with there.
    forEachTouchedBlock(cursor, [&](const QTextBlock &block) {
        if (block.length() > 1 || block.position() < cursor.selectionStart())
            return;
        QTextCharFormat format = block.charFormat();
        change(format);
        QTextCursor(block).setBlockCharFormat(format);
    });
    cursor.endEditBlock();
}

void RichTextEditing::toggleBold(QTextCursor &cursor)
{
    const bool makeBold = firstRunFormat(cursor).fontWeight() < QFont::DemiBold;
    editRuns(cursor,
             [makeBold](QTextCharFormat &format) { format.setFontWeight(makeBold ? QFont::Bold : QFont::Normal); });
}

void RichTextEditing::toggleItalic(QTextCursor &cursor)
{
    const bool makeItalic = !firstRunFormat(cursor).fontItalic();
    editRuns(cursor, [makeItalic](QTextCharFormat &format) { format.setFontItalic(makeItalic); });
}

void RichTextEditing::toggleUnderline(QTextCursor &cursor)
{
    const bool makeUnderlined = !firstRunFormat(cursor).fontUnderline();
    editRuns(cursor, [makeUnderlined](QTextCharFormat &format) { format.setFontUnderline(makeUnderlined); });
}

void RichTextEditing::changeFontSize(QTextCursor &cursor, int step)
{
    editRuns(cursor, [step](QTextCharFormat &format) {
        const double current =
            format.fontPointSize() > 0 ? format.fontPointSize() : WriterTypingAttributes::defaultPointSize;
        format.setFontPointSize(qMax(current + step, minimumFontSize));
    });
}

void RichTextEditing::setAlignment(QTextCursor &cursor, Qt::Alignment alignment)
{
    QTextBlockFormat format;
    format.setAlignment(alignment);
    cursor.beginEditBlock();
    cursor.mergeBlockFormat(format);
    cursor.endEditBlock();
}

void RichTextEditing::setTextColor(QTextCursor &cursor, const std::optional<QColor> &color)
{
    editRuns(cursor, [&color](QTextCharFormat &format) {
        if (color)
            format.setForeground(*color);
        else
            format.clearForeground();
    });
}

void RichTextEditing::setParagraphSpacing(QTextCursor &cursor, double lineSpacing, double spacingAfter)
{
    QTextBlockFormat format;
    format.setLineHeight(lineSpacing, QTextBlockFormat::LineDistanceHeight);
    format.setBottomMargin(spacingAfter);
    cursor.beginEditBlock();
    cursor.mergeBlockFormat(format);
    cursor.endEditBlock();
}

void RichTextEditing::clearFormatting(QTextCursor &cursor)
{
    const QTextCharFormat plain = WriterTypingAttributes::defaults();
    if (!cursor.hasSelection()) {
        cursor.setCharFormat(plain);
        return;
    }
    cursor.beginEditBlock();
    editRuns(cursor, [&plain](QTextCharFormat &format) { format = plain; });
    forEachTouchedBlock(cursor, [](const QTextBlock &block) { QTextCursor(block).setBlockFormat(QTextBlockFormat()); });
    cursor.endEditBlock();
}

void RichTextEditing::appendText(QTextCursor &cursor, const QString &text)
{
    cursor.beginEditBlock();
    cursor.insertText(text, typingFormat(cursor));
    cursor.endEditBlock();
}

void RichTextEditing::insertCaption(QTextCursor &cursor)
{
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    const QTextBlockFormat surroundingParagraph = cursor.blockFormat();
    const QTextCharFormat surroundingText = typingFormat(cursor);
    if (cursor.positionInBlock() > 0)
        cursor.insertBlock();
    if (cursor.positionInBlock() < cursor.block().length() - 1) {
        // The rest of the line stays a paragraph of its own, as it was.
        cursor.insertBlock(surroundingParagraph, surroundingText);
        cursor.movePosition(QTextCursor::PreviousBlock);
    }
    const QTextCharFormat characters = PoemPieces::captionCharacters();
    cursor.setBlockFormat(PoemPieces::captionParagraph());
    cursor.setBlockCharFormat(characters);
    const int start = cursor.position();
    const QString text = PoemPieces::captionText();
    cursor.insertText(text, characters);
    cursor.setPosition(start);
    cursor.setPosition(start + int(text.size()), QTextCursor::KeepAnchor);
    cursor.endEditBlock();
}

void RichTextEditing::insertSectionMark(QTextCursor &cursor)
{
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    const QTextBlockFormat surroundingParagraph = cursor.blockFormat();
    const QTextCharFormat surroundingText = typingFormat(cursor);
    const QTextCharFormat characters = PoemPieces::sectionMarkCharacters();
    cursor.insertBlock(PoemPieces::sectionMarkParagraph(), characters);
    cursor.insertText(PoemPieces::sectionMarkText(), characters);
    // Writing goes on below the mark as it was before it.
    cursor.insertBlock(surroundingParagraph, surroundingText);
    cursor.setCharFormat(surroundingText);
    cursor.endEditBlock();
}

bool RichTextEditing::breakOutOfPiece(QTextCursor &cursor)
{
    const QTextBlockFormat paragraph = cursor.blockFormat();
    const bool inPiece = paragraph == PoemPieces::captionParagraph() || paragraph == PoemPieces::sectionMarkParagraph();
    if (!inPiece || cursor.hasSelection() || !cursor.atBlockEnd())
        return false;
    cursor.insertBlock(QTextBlockFormat(), WriterTypingAttributes::defaults());
    cursor.setCharFormat(WriterTypingAttributes::defaults());
    return true;
}

Result<void> RichTextEditing::insertImage(QTextCursor &cursor, const QString &filePath, double textWidth)
{
    QString error;
    auto picture = StoredPicture::fromFile(filePath, &error);
    if (!picture) {
        return Error{QCoreApplication::translate("RichTextEditing", "„%1“ ist kein lesbares Bild (%2).")
                         .arg(QFileInfo(filePath).fileName(), error)};
    }
    return insertPicture(cursor, std::move(*picture), textWidth);
}

Result<void> RichTextEditing::insertImage(QTextCursor &cursor, const QImage &image, double textWidth)
{
    if (image.isNull())
        return Error{QCoreApplication::translate("RichTextEditing", "Das Bild ist leer.")};
    StoredPicture picture;
    QBuffer buffer(&picture.bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG"))
        return Error{QCoreApplication::translate("RichTextEditing", "Das Bild ist leer.")};
    picture.format = PictureFormat::png;
    picture.naturalSize = image.size();
    return insertPicture(cursor, std::move(picture), textWidth);
}

Result<void> RichTextEditing::insertPicture(QTextCursor &cursor, StoredPicture picture, double textWidth)
{
    auto *document = qobject_cast<PoemTextDocument *>(cursor.document());
    if (!document)
        return Error{QCoreApplication::translate("RichTextEditing", "Der Text kann keine Bilder aufnehmen.")};
    const QSizeF size = ImageSizing::forInsert(picture.naturalSize, textWidth);
    QTextImageFormat format;
    format.setName(document->addPicture(std::move(picture)));
    format.setWidth(size.width());
    format.setHeight(size.height());
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    cursor.insertImage(format);
    cursor.mergeBlockFormat(PoemPieces::imageParagraph());
    cursor.endEditBlock();
    return {};
}

std::optional<int> RichTextEditing::imagePosition(const QTextCursor &cursor)
{
    QTextDocument *document = cursor.document();
    auto isImageAt = [document](int position) {
        if (position < 0 || position >= document->characterCount() - 1)
            return false;
        if (document->characterAt(position) != QChar::ObjectReplacementCharacter)
            return false;
        QTextCursor probe(document);
        probe.setPosition(position + 1);
        return probe.charFormat().isImageFormat();
    };
    if (cursor.hasSelection()) {
        for (int position = cursor.selectionStart(); position < cursor.selectionEnd(); ++position) {
            if (isImageAt(position))
                return position;
        }
        return std::nullopt;
    }
    for (const int position : {cursor.position(), cursor.position() - 1}) {
        if (isImageAt(position))
            return position;
    }
    return std::nullopt;
}

bool RichTextEditing::resizeImage(QTextCursor &cursor, WriterImageSize size)
{
    const auto position = imagePosition(cursor);
    if (!position)
        return false;
    QTextDocument *document = cursor.document();
    QTextCursor editor = selecting(document, *position, *position + 1);
    QTextImageFormat format = editor.charFormat().toImageFormat();
    QSizeF natural;
    if (const auto *pictures = qobject_cast<const PoemTextDocument *>(document);
        pictures && pictures->hasPicture(format.name())) {
        natural = pictures->naturalSize(format.name());
    } else {
        natural = document->resource(QTextDocument::ImageResource, QUrl(format.name())).value<QImage>().size();
    }
    const QSizeF target = ImageSizing::forResize(natural, size);
    format.setWidth(target.width());
    format.setHeight(target.height());
    editor.beginEditBlock();
    editor.setCharFormat(format);
    editor.endEditBlock();
    return true;
}
