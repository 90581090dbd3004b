#pragma once

#include "archive/Result.h"
#include "editor/StoredPicture.h"
#include "editor/WriterImageSize.h"

#include <QColor>
#include <QTextCursor>

#include <functional>
#include <optional>

// The editing commands on a poem body. Each acts on the cursor's selection, or, with no
// selection, on the typing attributes or the paragraph at the insertion point, and is one
// undo step.
class RichTextEditing {
public:
    static constexpr double minimumFontSize = 8;

    static void toggleBold(QTextCursor &cursor);
    static void toggleItalic(QTextCursor &cursor);
    static void toggleUnderline(QTextCursor &cursor);
    // Every run by step points, never below 8; a run without a size starts at 17.
    static void changeFontSize(QTextCursor &cursor, int step);
    static void setAlignment(QTextCursor &cursor, Qt::Alignment alignment);
    // No colour: the label colour.
    static void setTextColor(QTextCursor &cursor, const std::optional<QColor> &color);
    static void setParagraphSpacing(QTextCursor &cursor, double lineSpacing, double spacingAfter);
    // Exactly the editor font at 17 points and the label colour; paragraph styles dropped.
    static void clearFormatting(QTextCursor &cursor);
    static void appendText(QTextCursor &cursor, const QString &text);
    // Leaves the placeholder word selected, so typing replaces it.
    static void insertCaption(QTextCursor &cursor);
    static void insertSectionMark(QTextCursor &cursor);
    // A line break at the end of a caption or section mark starts a body paragraph; returns
    // false, changing nothing, anywhere else.
    static bool breakOutOfPiece(QTextCursor &cursor);
    // textWidth: the editor's text width in points.
    static Result<void> insertImage(QTextCursor &cursor, const QString &filePath, double textWidth);
    static Result<void> insertImage(QTextCursor &cursor, const QImage &image, double textWidth);
    // The picture in its stored bytes, shown fitted to the text width.
    static Result<void> insertPicture(QTextCursor &cursor, StoredPicture picture, double textWidth);
    // The selected image, or the one next to the insertion point; false when there is none.
    static bool resizeImage(QTextCursor &cursor, WriterImageSize size);
    static std::optional<int> imagePosition(const QTextCursor &cursor);

    // The format typing would use at the cursor (never an image's).
    static QTextCharFormat typingFormat(const QTextCursor &cursor);

private:
    static void editRuns(QTextCursor &cursor, const std::function<void(QTextCharFormat &)> &change);
    static QTextCharFormat firstRunFormat(const QTextCursor &cursor);
};
