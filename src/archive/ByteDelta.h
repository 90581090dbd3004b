#pragma once

#include <QByteArray>

#include <optional>

// One byte string written as the edits that make it from another, word by word: what a
// few changed words in a long poem cost is those words, not the poem. Words end after a
// space or a line break, so text and rich text alike split where a writer changes them.
class ByteDelta {
public:
    // Nothing when comparing would take too long or the delta would not be smaller than the
    // target itself; the caller then keeps the target whole.
    static std::optional<QByteArray> encode(const QByteArray &base, const QByteArray &target);
    // Nothing when the delta does not fit the base.
    static std::optional<QByteArray> apply(const QByteArray &base, const QByteArray &delta);

    // Beyond this many words on both sides together, comparing costs more than it saves.
    static constexpr size_t maximumWords = 40000;
};
