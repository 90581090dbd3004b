#pragma once

#include <QString>

#include <optional>

// Yes/no cells of a poem list: "x", "ja", "1", … and the shorthand poets write into the
// published column for a poem that is not out yet.
class CSVFlagParser {
public:
    // Nothing for a blank or unknown value, which leaves the flag as it is.
    static std::optional<bool> parseBool(const QString &text);
    // parseBool, and false for the markers of an unpublished poem.
    static std::optional<bool> parsePublished(const QString &text);
};
