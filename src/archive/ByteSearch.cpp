#include "archive/ByteSearch.h"

#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace {

// For short stretches (titles, the end of a text) a plain walk beats memmem's set-up.
bool containsPlain(const char *haystack, size_t haystackSize, const char *needle, size_t needleSize)
{
    if (needleSize > haystackSize)
        return false;
    const char *const last = haystack + (haystackSize - needleSize);
    for (const char *at = haystack; at <= last; ++at) {
        at = static_cast<const char *>(std::memchr(at, needle[0], size_t(last - at) + 1));
        if (!at)
            return false;
        if (std::memcmp(at + 1, needle + 1, needleSize - 1) == 0)
            return true;
    }
    return false;
}

#if defined(__SSE2__)
// Sixteen positions at a time: a candidate needs the needle's first and last byte in
// place; only candidates are compared in full.
bool containsWide(const char *haystack, size_t haystackSize, const char *needle, size_t needleSize)
{
    const __m128i first = _mm_set1_epi8(needle[0]);
    const __m128i last = _mm_set1_epi8(needle[needleSize - 1]);
    size_t i = 0;
    for (; i + needleSize - 1 + 16 <= haystackSize; i += 16) {
        const __m128i blockFirst = _mm_loadu_si128(reinterpret_cast<const __m128i *>(haystack + i));
        const __m128i blockLast = _mm_loadu_si128(reinterpret_cast<const __m128i *>(haystack + i + needleSize - 1));
        unsigned mask = unsigned(
            _mm_movemask_epi8(_mm_and_si128(_mm_cmpeq_epi8(first, blockFirst), _mm_cmpeq_epi8(last, blockLast))));
        while (mask != 0) {
            const unsigned offset = unsigned(__builtin_ctz(mask));
            if (std::memcmp(haystack + i + offset + 1, needle + 1, needleSize - 2) == 0)
                return true;
            mask &= mask - 1;
        }
    }
    return containsPlain(haystack + i, haystackSize - i, needle, needleSize);
}
#endif

} // namespace

bool ByteSearch::contains(const QByteArray &haystack, const QByteArray &needle)
{
    return contains(haystack.constData(), size_t(haystack.size()), needle.constData(), size_t(needle.size()));
}

bool ByteSearch::contains(const char *haystack, size_t haystackSize, const char *needle, size_t needleSize)
{
    if (needleSize == 0 || needleSize > haystackSize)
        return false;
    if (needleSize == 1)
        return std::memchr(haystack, needle[0], haystackSize) != nullptr;
#if defined(__SSE2__)
    return containsWide(haystack, haystackSize, needle, needleSize);
#else
    return containsPlain(haystack, haystackSize, needle, needleSize);
#endif
}
