#include "archive/ByteDelta.h"

#include <dtl/dtl.hpp>

#include <string_view>
#include <vector>

namespace {

using Word = std::string_view;

std::vector<Word> wordsOf(const QByteArray &bytes)
{
    std::vector<Word> words;
    const char *data = bytes.constData();
    qsizetype start = 0;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        if (data[i] == ' ' || data[i] == '\n') {
            words.emplace_back(data + start, size_t(i + 1 - start));
            start = i + 1;
        }
    }
    if (start < bytes.size())
        words.emplace_back(data + start, size_t(bytes.size() - start));
    return words;
}

void appendNumber(QByteArray &out, quint64 value)
{
    do {
        const char low = char(value & 0x7f);
        value >>= 7;
        out.append(value ? char(low | 0x80) : low);
    } while (value);
}

std::optional<quint64> readNumber(const QByteArray &in, qsizetype &at)
{
    quint64 value = 0;
    for (int shift = 0; shift < 64 && at < in.size(); shift += 7) {
        const auto byte = quint8(in.at(at++));
        value |= quint64(byte & 0x7f) << shift;
        if (!(byte & 0x80))
            return value;
    }
    return std::nullopt;
}

// One step: keep `copy` words of the base, drop `skip` more, then insert bytes.
struct Step {
    quint64 copy = 0;
    quint64 skip = 0;
    QByteArray insert;
};

void appendStep(QByteArray &out, const Step &step)
{
    appendNumber(out, step.copy);
    appendNumber(out, step.skip);
    appendNumber(out, quint64(step.insert.size()));
    out.append(step.insert);
}

} // namespace

std::optional<QByteArray> ByteDelta::encode(const QByteArray &base, const QByteArray &target)
{
    const std::vector<Word> from = wordsOf(base);
    const std::vector<Word> to = wordsOf(target);
    if (from.size() + to.size() > maximumWords)
        return std::nullopt;
    dtl::Diff<Word, std::vector<Word>> diff(from, to);
    diff.compose();
    QByteArray out;
    Step step;
    for (const auto &[word, info] : diff.getSes().getSequence()) {
        if (info.type == dtl::SES_COMMON) {
            if (step.skip || !step.insert.isEmpty()) {
                appendStep(out, step);
                step = Step{};
            }
            ++step.copy;
        } else if (info.type == dtl::SES_DELETE) {
            ++step.skip;
        } else {
            step.insert.append(word.data(), qsizetype(word.size()));
        }
        if (out.size() >= target.size())
            return std::nullopt;
    }
    appendStep(out, step);
    if (out.size() >= target.size())
        return std::nullopt;
    return out;
}

std::optional<QByteArray> ByteDelta::apply(const QByteArray &base, const QByteArray &delta)
{
    const std::vector<Word> words = wordsOf(base);
    QByteArray out;
    size_t next = 0;
    qsizetype at = 0;
    while (at < delta.size()) {
        const auto copy = readNumber(delta, at);
        const auto skip = copy ? readNumber(delta, at) : std::nullopt;
        const auto length = skip ? readNumber(delta, at) : std::nullopt;
        if (!length || *copy > words.size() - next || *skip > words.size() - next - *copy ||
            *length > quint64(delta.size() - at))
            return std::nullopt;
        for (size_t i = 0; i < *copy; ++i, ++next)
            out.append(words[next].data(), qsizetype(words[next].size()));
        next += *skip;
        out.append(delta.constData() + at, qsizetype(*length));
        at += qsizetype(*length);
    }
    if (next != words.size())
        return std::nullopt;
    return out;
}
