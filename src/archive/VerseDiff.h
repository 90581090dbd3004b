#pragma once

#include <QString>

#include <variant>
#include <vector>

// What changed between two texts of a poem, line by line and, inside changed lines, word by
// word. Lines are compared first, so a line that moved shows as gone in one place and new in
// the other instead of being spread over the words of its neighbours; the words of a changed
// run of lines are then compared across the run, so a line split in two keeps its words.
class VerseDiff {
public:
    enum class Change { kept, added, removed };

    struct Word {
        QString text;
        Change change = Change::kept;
    };

    // One line of the newer text, with the older text's words deleted there.
    struct Line {
        std::vector<Word> words;
        bool changed = false;
        bool isBlank() const { return words.empty(); }
    };

    struct FoldedStanzas {
        int count = 0;
    };
    // Lines of changed stanzas, blank lines between stanzas, and runs of unchanged stanzas.
    using Block = std::variant<Line, FoldedStanzas>;

    static VerseDiff compare(const QString &older, const QString &newer);
    // Only the counts, for when a version is recorded.
    static std::pair<int, int> wordCounts(const QString &older, const QString &newer);

    const std::vector<Line> &lines() const { return m_lines; }
    int wordsAdded() const { return m_wordsAdded; }
    int wordsRemoved() const { return m_wordsRemoved; }
    bool hasChanges() const { return m_wordsAdded > 0 || m_wordsRemoved > 0 || m_structureChanged; }

    // One line per verse line, deleted words as [-word-], inserted words as {+word+}.
    QString markedText() const;
    std::vector<Block> foldedBlocks() const;

private:
    void addHunk(const std::vector<QString> &removedLines, const std::vector<QString> &addedLines);
    Line &openLine();

    std::vector<Line> m_lines;
    int m_wordsAdded = 0;
    int m_wordsRemoved = 0;
    bool m_structureChanged = false;
};
