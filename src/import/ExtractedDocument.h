#pragma once

#include "import/AttributedText.h"

#include <QString>

#include <optional>

// A document's text for a poem: always plain text, and for DOCX the formatted form too.
// The formatted form becomes the poem's stored rich text through the editor's codec.
struct ExtractedDocument {
    QString text;
    std::optional<AttributedText> richText;

    bool operator==(const ExtractedDocument &other) const = default;
};
