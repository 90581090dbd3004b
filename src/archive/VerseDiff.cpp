#include "archive/VerseDiff.h"

#include <QRegularExpression>

#include <algorithm>

#include <dtl/dtl.hpp>

namespace {

// Stands for a line end among the words of a changed run; no word contains it.
const QString lineBreak = QStringLiteral("\n");

std::vector<QString> splitLines(const QString &text)
{
    QString unified = text;
    unified.replace(QStringLiteral("\r\n"), lineBreak);
    unified.replace(QChar(u'\r'), QChar(u'\n'));
    unified.replace(QChar(0x2028), QChar(u'\n'));
    unified.replace(QChar(0x2029), QChar(u'\n'));
    if (unified.endsWith(lineBreak))
        unified.chop(1);
    if (unified.isEmpty())
        return {};
    std::vector<QString> lines;
    for (const QString &line : unified.split(QChar(u'\n')))
        lines.push_back(line.trimmed());
    return lines;
}

std::vector<QString> wordsOf(const QString &line)
{
    static const QRegularExpression space(QStringLiteral("\\s+"));
    std::vector<QString> words;
    for (const QString &word : line.split(space, Qt::SkipEmptyParts))
        words.push_back(word);
    return words;
}

std::vector<QString> tokensOf(const std::vector<QString> &lines)
{
    std::vector<QString> tokens;
    for (size_t i = 0; i < lines.size(); ++i) {
        if (i > 0)
            tokens.push_back(lineBreak);
        const auto words = wordsOf(lines[i]);
        tokens.insert(tokens.end(), words.begin(), words.end());
    }
    return tokens;
}

template <typename Sequence> auto editScript(const Sequence &older, const Sequence &newer)
{
    dtl::Diff<QString, Sequence> diff(older, newer);
    diff.compose();
    return diff.getSes().getSequence();
}

} // namespace

VerseDiff VerseDiff::compare(const QString &older, const QString &newer)
{
    VerseDiff result;
    std::vector<QString> removed;
    std::vector<QString> added;
    for (const auto &[line, info] : editScript(splitLines(older), splitLines(newer))) {
        if (info.type == dtl::SES_DELETE) {
            removed.push_back(line);
            continue;
        }
        if (info.type == dtl::SES_ADD) {
            added.push_back(line);
            continue;
        }
        result.addHunk(removed, added);
        removed.clear();
        added.clear();
        Line &kept = result.openLine();
        for (const QString &word : wordsOf(line))
            kept.words.push_back({word, Change::kept});
    }
    result.addHunk(removed, added);
    return result;
}

std::pair<int, int> VerseDiff::wordCounts(const QString &older, const QString &newer)
{
    const VerseDiff diff = compare(older, newer);
    return {diff.wordsAdded(), diff.wordsRemoved()};
}

VerseDiff::Line &VerseDiff::openLine()
{
    m_lines.emplace_back();
    return m_lines.back();
}

void VerseDiff::addHunk(const std::vector<QString> &removedLines, const std::vector<QString> &addedLines)
{
    if (removedLines.empty() && addedLines.empty())
        return;
    m_structureChanged = m_structureChanged || removedLines.size() != addedLines.size();
    // Lines gone without a successor still show, struck through, where they stood.
    if (addedLines.empty()) {
        for (const QString &text : removedLines) {
            Line &line = openLine();
            line.changed = true;
            for (const QString &word : wordsOf(text))
                line.words.push_back({word, Change::removed});
            m_wordsRemoved += int(wordsOf(text).size());
        }
        return;
    }
    const size_t firstLine = m_lines.size();
    Line *line = &openLine();
    line->changed = true;
    for (const auto &[token, info] : editScript(tokensOf(removedLines), tokensOf(addedLines))) {
        if (token == lineBreak) {
            // The newer text's lines lead: a line end only the older text had joins two lines.
            if (info.type != dtl::SES_DELETE) {
                line = &openLine();
                line->changed = true;
            }
            continue;
        }
        if (info.type == dtl::SES_ADD) {
            line->words.push_back({token, Change::added});
            ++m_wordsAdded;
        } else if (info.type == dtl::SES_DELETE) {
            line->words.push_back({token, Change::removed});
            ++m_wordsRemoved;
        } else {
            line->words.push_back({token, Change::kept});
        }
    }
    // Read as "instead of this, that": in each run of changed words the deleted ones come first.
    for (size_t i = firstLine; i < m_lines.size(); ++i) {
        auto &words = m_lines[i].words;
        for (auto run = words.begin(); run != words.end();) {
            const auto end = std::find_if(run, words.end(), [](const Word &w) { return w.change == Change::kept; });
            std::stable_partition(run, end, [](const Word &w) { return w.change == Change::removed; });
            run = end == words.end() ? end : end + 1;
        }
    }
}

QString VerseDiff::markedText() const
{
    QStringList out;
    for (const Line &line : m_lines) {
        QStringList words;
        for (const Word &word : line.words) {
            if (word.change == Change::added)
                words.append(QStringLiteral("{+%1+}").arg(word.text));
            else if (word.change == Change::removed)
                words.append(QStringLiteral("[-%1-]").arg(word.text));
            else
                words.append(word.text);
        }
        out.append(words.join(QLatin1Char(' ')));
    }
    return out.join(QLatin1Char('\n'));
}

std::vector<VerseDiff::Block> VerseDiff::foldedBlocks() const
{
    std::vector<Block> blocks;
    int unchanged = 0;
    const auto flushFolded = [&] {
        if (unchanged > 0)
            blocks.emplace_back(FoldedStanzas{unchanged});
        unchanged = 0;
    };
    size_t start = 0;
    while (start < m_lines.size()) {
        if (m_lines[start].isBlank() && !m_lines[start].changed) {
            ++start;
            continue;
        }
        size_t end = start;
        bool changed = false;
        while (end < m_lines.size() && !(m_lines[end].isBlank() && !m_lines[end].changed)) {
            changed = changed || m_lines[end].changed;
            ++end;
        }
        if (!changed) {
            ++unchanged;
        } else {
            flushFolded();
            if (!blocks.empty())
                blocks.emplace_back(Line{});
            for (size_t i = start; i < end; ++i)
                blocks.emplace_back(m_lines[i]);
        }
        start = end;
    }
    flushFolded();
    return blocks;
}
