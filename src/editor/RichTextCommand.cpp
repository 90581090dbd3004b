#include "editor/RichTextCommand.h"

RichTextCommand RichTextCommand::textColor(std::optional<QColor> color)
{
    RichTextCommand command(Kind::textColor);
    command.m_color = std::move(color);
    return command;
}

RichTextCommand RichTextCommand::paragraphSpacing(double lineSpacing, double spacingAfter)
{
    RichTextCommand command(Kind::paragraphSpacing);
    command.m_lineSpacing = lineSpacing;
    command.m_spacingAfter = spacingAfter;
    return command;
}

RichTextCommand RichTextCommand::appendText(const QString &text)
{
    RichTextCommand command(Kind::appendText);
    command.m_text = text;
    return command;
}

RichTextCommand RichTextCommand::insertImage(const QString &filePath)
{
    RichTextCommand command(Kind::insertImage);
    command.m_text = filePath;
    return command;
}

RichTextCommand RichTextCommand::resizeSelectedImage(WriterImageSize size)
{
    RichTextCommand command(Kind::resizeSelectedImage);
    command.m_imageSize = size;
    return command;
}
