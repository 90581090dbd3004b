#pragma once

#include <QByteArray>

// Substring search over UTF-8 bytes, fast enough to scan a whole archive's folded texts
// on every keystroke. Matching bytes of valid UTF-8 is matching characters.
class ByteSearch {
public:
    // An empty needle finds nothing.
    static bool contains(const QByteArray &haystack, const QByteArray &needle);
    static bool contains(const char *haystack, size_t haystackSize, const char *needle, size_t needleSize);
};
