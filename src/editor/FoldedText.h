#pragma once

#include <QList>
#include <QString>

struct TextRange {
    int start = 0;
    int end = 0;
    int length() const { return end - start; }
    bool operator==(const TextRange &other) const = default;
};

// A text folded for matching that ignores case and diacritics, remembering where each folded
// character came from, so matches are reported in positions of the original text.
class FoldedText {
public:
    explicit FoldedText(const QString &text);

    const QString &folded() const { return m_folded; }
    // Every non-overlapping occurrence, in original positions, from the start.
    QList<TextRange> matches(const QString &needle) const;

    static QString fold(const QString &text);

private:
    QString m_folded;
    QList<int> m_origin;    // original index of each folded character
    QList<int> m_originEnd; // end of the original character it came from
};
