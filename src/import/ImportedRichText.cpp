#include "import/ImportedRichText.h"

#include "editor/PoemRichText.h"
#include "editor/WriterTypingAttributes.h"

#include <QFont>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextCursor>

namespace {

QTextCharFormat editorFormat(const TextAttributes &attributes, const QTextCharFormat &defaults)
{
    QTextCharFormat format = defaults;
    if (attributes.bold)
        format.setFontWeight(QFont::Bold);
    if (attributes.italic)
        format.setFontItalic(true);
    if (attributes.underline)
        format.setFontUnderline(true);
    return format;
}

QTextBlockFormat paragraphFormat(const TextAttributes &attributes)
{
    QTextBlockFormat format;
    format.setAlignment(attributes.alignment & Qt::AlignHorizontal_Mask);
    return format;
}

} // namespace

ImportedRichText::EditorFont ImportedRichText::EditorFont::current()
{
    return {WriterTypingAttributes::editorFontFamily(), WriterTypingAttributes::defaultPointSize};
}

Result<QByteArray> ImportedRichText::encode(const AttributedText &text, const EditorFont &editorFont)
{
    QTextCharFormat editorDefaults;
    editorDefaults.setFontFamilies({editorFont.family});
    editorDefaults.setFontPointSize(editorFont.pointSize);
    QFont defaultFont(editorFont.family);
    defaultFont.setPointSizeF(editorFont.pointSize);

    PoemTextDocument document;
    document.setUndoRedoEnabled(false);
    document.setDefaultFont(defaultFont);
    QTextCursor cursor(&document);
    cursor.setBlockCharFormat(editorDefaults);
    bool paragraphStarted = false;
    for (const TextRun &run : text.runs()) {
        const QTextCharFormat format = editorFormat(run.attributes, editorDefaults);
        const QList<QStringView> lines = QStringView(run.text).split(QLatin1Char('\n'));
        for (qsizetype i = 0; i < lines.size(); ++i) {
            if (i > 0) {
                cursor.insertBlock(QTextBlockFormat(), format);
                paragraphStarted = false;
            }
            if (lines.at(i).isEmpty())
                continue;
            if (!paragraphStarted) {
                // A paragraph takes its alignment from its first run, as the reader set it.
                cursor.setBlockFormat(paragraphFormat(run.attributes));
                paragraphStarted = true;
            }
            cursor.insertText(lines.at(i).toString(), format);
        }
    }
    return PoemRichText::encode(document);
}
