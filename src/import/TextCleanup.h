#pragma once

#include "import/AttributedText.h"

#include <QString>

// Imported text tidied for a poem: unified line ends, every line trimmed, runs of blank
// lines shrunk to one empty line, nothing blank at either end.
class TextCleanup {
public:
    static QString cleanup(const QString &text);
    // The same rules on formatted text; each kept line keeps its own attributes.
    static AttributedText cleanupAttributed(const AttributedText &text);
};
