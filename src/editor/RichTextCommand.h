#pragma once

#include "editor/WriterImageSize.h"

#include <QColor>
#include <QString>

#include <optional>

// The one message by which toolbar buttons and menu items act on the active editor.
class RichTextCommand {
public:
    enum class Kind {
        textColor,
        paragraphSpacing,
        appendText,
        insertImage,
        resizeSelectedImage,
        undo,
        redo,
        bold,
        italic,
        underline,
        increaseFontSize,
        decreaseFontSize,
        alignLeft,
        alignCenter,
        alignRight,
        clearFormatting,
        checkSpelling,
        insertCaption,
        insertDivider,
        insertTab,
    };

    // A command without a value.
    explicit RichTextCommand(Kind kind) : m_kind(kind) {}

    // No colour is the label colour.
    static RichTextCommand textColor(std::optional<QColor> color);
    static RichTextCommand paragraphSpacing(double lineSpacing, double spacingAfter);
    static RichTextCommand appendText(const QString &text);
    static RichTextCommand insertImage(const QString &filePath);
    static RichTextCommand resizeSelectedImage(WriterImageSize size);

    Kind kind() const { return m_kind; }
    const std::optional<QColor> &color() const { return m_color; }
    double lineSpacing() const { return m_lineSpacing; }
    double spacingAfter() const { return m_spacingAfter; }
    // The text of appendText, the file of insertImage.
    const QString &text() const { return m_text; }
    WriterImageSize imageSize() const { return m_imageSize; }

private:
    Kind m_kind;
    std::optional<QColor> m_color;
    double m_lineSpacing = 0;
    double m_spacingAfter = 0;
    QString m_text;
    WriterImageSize m_imageSize = WriterImageSize::medium;
};
