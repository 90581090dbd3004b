#pragma once

#include <QString>
#include <QTextBlockFormat>
#include <QTextCharFormat>

// The shapes of the pieces the editor inserts: image paragraphs, captions, section marks.
class PoemPieces {
public:
    static QTextBlockFormat imageParagraph();
    static QString captionText();
    static QTextBlockFormat captionParagraph();
    static QTextCharFormat captionCharacters();
    // The mark itself; inserted with a line break before and after it.
    static QString sectionMarkText();
    static QTextBlockFormat sectionMarkParagraph();
    static QTextCharFormat sectionMarkCharacters();
};
