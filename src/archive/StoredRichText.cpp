#include "archive/StoredRichText.h"

#include <cstring>

namespace {

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// The binary payloads of "\binN" words, in order. Small ones are skipped as well, so their
// bytes are never mistaken for control words.
std::vector<StoredRichText::Cut> binaryPayloads(const QByteArray &rtf)
{
    std::vector<StoredRichText::Cut> payloads;
    const char *const data = rtf.constData();
    const qsizetype size = rtf.size();
    qsizetype at = 0;
    while (at < size) {
        const void *found = std::memchr(data + at, '\\', size_t(size - at));
        if (!found)
            break;
        qsizetype word = static_cast<const char *>(found) - data + 1;
        if (word >= size || !isLetter(data[word])) {
            at = word + 1; // a control symbol such as \\ or \{
            continue;
        }
        qsizetype end = word;
        while (end < size && isLetter(data[end]))
            ++end;
        const bool isBin = end - word == 3 && std::memcmp(data + word, "bin", 3) == 0;
        const bool negative = end < size && data[end] == '-';
        if (negative)
            ++end;
        qint64 parameter = 0;
        int digits = 0;
        while (end < size && isDigit(data[end]) && digits < 10) {
            parameter = parameter * 10 + (data[end] - '0');
            ++end;
            ++digits;
        }
        if (end < size && data[end] == ' ')
            ++end;
        at = end;
        if (!isBin || negative || digits == 0 || parameter == 0)
            continue;
        const qsizetype length = qsizetype(qMin<qint64>(parameter, size - end));
        payloads.push_back({0, end, length});
        at = end + length;
    }
    return payloads;
}

} // namespace

StoredRichText StoredRichText::split(const QByteArray &richText)
{
    if (!richText.startsWith("{\\rtf"))
        return {richText, {}};
    StoredRichText result;
    qsizetype copied = 0;
    for (const Cut &payload : binaryPayloads(richText)) {
        if (payload.length < minimumCut)
            continue;
        result.body.append(richText.constData() + copied, payload.sourceOffset - copied);
        result.cuts.push_back({result.body.size(), payload.sourceOffset, payload.length});
        copied = payload.sourceOffset + payload.length;
    }
    if (result.cuts.empty())
        return {richText, {}};
    result.body.append(richText.constData() + copied, richText.size() - copied);
    return result;
}

std::optional<QByteArray> StoredRichText::join(const QByteArray &body, const std::vector<Piece> &pieces)
{
    qsizetype total = body.size();
    qsizetype previous = 0;
    for (const Piece &piece : pieces) {
        if (piece.bodyOffset < previous || piece.bodyOffset > body.size())
            return std::nullopt;
        previous = piece.bodyOffset;
        total += piece.bytes.size();
    }
    QByteArray joined;
    joined.reserve(total);
    qsizetype copied = 0;
    for (const Piece &piece : pieces) {
        joined.append(body.constData() + copied, piece.bodyOffset - copied);
        joined.append(piece.bytes);
        copied = piece.bodyOffset;
    }
    joined.append(body.constData() + copied, body.size() - copied);
    return joined;
}
