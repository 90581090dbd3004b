#pragma once

#include "editor/EditorAppearance.h"
#include "editor/PoemTextDocument.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

class QTextDocument;

// What the editor or a read-only view shows for a poem's stored text.
class DisplayedPoemText {
public:
    enum class Source { richText, plainText, placeholder };

    struct Input {
        std::optional<QByteArray> richTextData;
        std::optional<QString> text;
        bool isEditable = true;
        QString highlight;
        EditorAppearance appearance = EditorAppearance::standard;
    };

    struct Output {
        std::unique_ptr<PoemTextDocument> document;
        Source source = Source::plainText;
    };

    // The formatted text when it decodes to something, else the plain text, else (read-only)
    // the placeholder. The read-only view lays the appearance's text colour over everything
    // and marks the search text; the editor does its marking in the layout only (see
    // PoemTextHighlighter), so nothing of it can be saved.
    static Output build(const Input &input);

    static QString placeholderText();
    // Marks every occurrence of the search text, ignoring case and diacritics.
    static void applySearchHighlight(QTextDocument &document, const QString &highlight);
    static QColor highlightBackground();
    static QColor highlightForeground();
};
