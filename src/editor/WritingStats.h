#pragma once

#include <QString>

// The four counts of the statistics bar, from the plain text.
struct WritingStats {
    int words = 0;
    int characters = 0;
    int lines = 0;
    int stanzas = 0;

    static WritingStats of(const QString &text);
    bool operator==(const WritingStats &other) const = default;
};
