#include "editor/TextFinder.h"

#include "archive/TextComparison.h"
#include "editor/WriterTypingAttributes.h"

#include <QCoreApplication>
#include <QTextBlock>
#include <QTextDocument>

QString TextFinder::noTermStatus()
{
    return QCoreApplication::translate("TextFinder", "Kein Suchbegriff");
}

QString TextFinder::notFoundStatus()
{
    return QCoreApplication::translate("TextFinder", "Nicht gefunden");
}

QString TextFinder::replacedStatus()
{
    return QCoreApplication::translate("TextFinder", "Ersetzt");
}

QString TextFinder::replacedAllStatus(int count)
{
    if (count == 1)
        return QCoreApplication::translate("TextFinder", "1 Treffer ersetzt");
    return QCoreApplication::translate("TextFinder", "%1 Treffer ersetzt").arg(count);
}

QString TextFinder::documentText(const QTextDocument &document)
{
    QString text;
    text.reserve(document.characterCount());
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (block != document.begin())
            text.append(QChar::ParagraphSeparator);
        text.append(block.text());
    }
    return text;
}

std::optional<TextRange> TextFinder::find(const QTextDocument &document, const QString &term, int selectionStart,
                                          int selectionEnd, bool backwards)
{
    const QList<TextRange> matches = FoldedText(documentText(document)).matches(term);
    if (matches.isEmpty())
        return std::nullopt;
    if (backwards) {
        for (auto it = matches.crbegin(); it != matches.crend(); ++it) {
            if (it->end <= selectionStart)
                return *it;
        }
        return matches.last();
    }
    for (const TextRange &match : matches) {
        if (match.start >= selectionEnd)
            return match;
    }
    return matches.first();
}

FindOutcome TextFinder::find(QTextCursor &cursor, const QString &term, bool backwards)
{
    if (term.isEmpty())
        return {false, 0, noTermStatus()};
    const auto match = find(*cursor.document(), term, cursor.selectionStart(), cursor.selectionEnd(), backwards);
    if (!match)
        return {false, 0, notFoundStatus()};
    cursor.setPosition(match->start);
    cursor.setPosition(match->end, QTextCursor::KeepAnchor);
    return {true, 0, {}};
}

QTextCharFormat TextFinder::replacementFormat(const QTextDocument &document, int position, const QString &editorFamily)
{
    const int last = qMax(0, document.characterCount() - 1);
    QTextCursor probe(const_cast<QTextDocument *>(&document));
    probe.setPosition(qBound(0, position + 1, last));
    QTextCharFormat format = probe.charFormat();
    if (format.isImageFormat())
        format = QTextCharFormat();
    if (format.fontFamilies().toStringList().isEmpty())
        format.setFontFamilies({editorFamily});
    if (!(format.fontPointSize() > 0))
        format.setFontPointSize(WriterTypingAttributes::defaultPointSize);
    return format;
}

FindOutcome TextFinder::replaceCurrent(QTextCursor &cursor, const QString &term, const QString &replacement)
{
    if (term.isEmpty())
        return {false, 0, noTermStatus()};
    if (cursor.hasSelection()) {
        QString selected = cursor.selectedText();
        if (TextComparison::equalsIgnoringCaseAndDiacritics(selected, term)) {
            const QTextCharFormat format = replacementFormat(*cursor.document(), cursor.selectionStart(),
                                                             WriterTypingAttributes::editorFontFamily());
            cursor.beginEditBlock();
            cursor.insertText(replacement, format);
            cursor.endEditBlock();
            return {true, 1, replacedStatus()};
        }
    }
    return find(cursor, term, false);
}

FindOutcome TextFinder::replaceAll(QTextCursor &cursor, const QString &term, const QString &replacement)
{
    if (term.isEmpty())
        return {false, 0, noTermStatus()};
    QTextDocument &document = *cursor.document();
    const QList<TextRange> matches = FoldedText(documentText(document)).matches(term);
    if (matches.isEmpty())
        return {false, 0, replacedAllStatus(0)};
    const QString editorFamily = WriterTypingAttributes::editorFontFamily();
    QTextCursor editor(&document);
    editor.beginEditBlock();
    // Back to front, so the positions of the matches still to come stay valid.
    for (auto it = matches.crbegin(); it != matches.crend(); ++it) {
        const QTextCharFormat format = replacementFormat(document, it->start, editorFamily);
        editor.setPosition(it->start);
        editor.setPosition(it->end, QTextCursor::KeepAnchor);
        editor.insertText(replacement, format);
    }
    editor.endEditBlock();
    return {true, int(matches.size()), replacedAllStatus(int(matches.size()))};
}
