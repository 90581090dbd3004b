#pragma once

#include <QString>

// Text bound for an XML document. Titles and poems can hold characters that XML 1.0 allows
// nowhere, not even as references (control characters from a CSV or a backup, an unpaired
// surrogate); a document holding one is refused by every reader.
class XmlText {
public:
    // The text without those characters; tab, line feed and carriage return stay.
    static QString allowedCharacters(const QString &text);
};
