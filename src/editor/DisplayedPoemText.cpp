#include "editor/DisplayedPoemText.h"

#include "editor/AppTheme.h"
#include "editor/FoldedText.h"
#include "editor/PoemRichText.h"
#include "editor/TextFinder.h"
#include "editor/WriterTypingAttributes.h"

#include <QCoreApplication>
#include <QTextBlock>
#include <QTextCursor>

namespace {

// Lays a colour over every run except images, keeping each run's font.
void overlayForeground(QTextDocument &document, const QColor &color)
{
    QTextCursor cursor(&document);
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (fragment.charFormat().isImageFormat())
                continue;
            QTextCharFormat format;
            format.setForeground(color);
            cursor.setPosition(fragment.position());
            cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
            cursor.mergeCharFormat(format);
        }
    }
}

} // namespace

QString DisplayedPoemText::placeholderText()
{
    return QCoreApplication::translate("DisplayedPoemText", "— kein Text —");
}

QColor DisplayedPoemText::highlightBackground()
{
    return AppTheme::systemYellow();
}

QColor DisplayedPoemText::highlightForeground()
{
    return QColor(Qt::black);
}

DisplayedPoemText::Output DisplayedPoemText::build(const Input &input)
{
    Output output;
    if (input.richTextData && !input.richTextData->isEmpty()) {
        auto decoded = PoemRichText::decode(*input.richTextData);
        if (decoded && decoded->characterCount() > 1) {
            output.document = std::move(decoded);
            output.source = Source::richText;
            if (!input.isEditable)
                overlayForeground(*output.document, textColor(input.appearance));
        }
    }
    const QString text = input.text.value_or(QString());
    if (!output.document && (!text.isEmpty() || input.isEditable)) {
        output.document = PoemRichText::fromPlainText(text);
        output.source = Source::plainText;
        if (!input.isEditable)
            overlayForeground(*output.document, textColor(input.appearance));
    }
    if (!output.document) {
        output.document = PoemRichText::newDocument();
        QTextCursor cursor(output.document.get());
        QTextCharFormat format = WriterTypingAttributes::defaults();
        format.setForeground(AppTheme::secondaryLabel());
        cursor.insertText(placeholderText(), format);
        output.source = Source::placeholder;
    }
    if (!input.isEditable && output.source != Source::placeholder)
        applySearchHighlight(*output.document, input.highlight);
    output.document->setUndoRedoEnabled(false);
    output.document->setUndoRedoEnabled(true);
    output.document->setModified(false);
    return output;
}

void DisplayedPoemText::applySearchHighlight(QTextDocument &document, const QString &highlight)
{
    const QString term = highlight.trimmed();
    if (term.isEmpty())
        return;
    QTextCharFormat format;
    format.setBackground(highlightBackground());
    format.setForeground(highlightForeground());
    QTextCursor cursor(&document);
    for (const TextRange &match : FoldedText(TextFinder::documentText(document)).matches(term)) {
        cursor.setPosition(match.start);
        cursor.setPosition(match.end, QTextCursor::KeepAnchor);
        cursor.mergeCharFormat(format);
    }
}
