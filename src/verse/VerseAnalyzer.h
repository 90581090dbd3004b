#pragma once

#include "verse/LineSound.h"
#include "verse/Pronouncer.h"
#include "verse/VerseAnalysis.h"

#include <QHash>

// Turns a poem's plain text into its VerseAnalysis. Lines are remembered as spoken, so after
// an edit only the changed line is pronounced again; rhyme letters and the metre are
// recomputed from the remembered lines, which costs next to nothing. Not thread-safe: one
// analyzer per thread.
class VerseAnalyzer {
public:
    VerseAnalysis analyse(const QString &text, const QString &language);
    // Lines pronounced since the analyzer was made; lets a caller see what an edit cost.
    int linesPronounced() const { return m_linesPronounced; }

    // The text's lines: line breaks, paragraph and line separators all end a line.
    static QStringList splitLines(const QString &text);

private:
    const LineSound &soundOf(const QString &line, const QString &language);

    Pronouncer m_pronouncer;
    QHash<QString, LineSound> m_lines;
    int m_linesPronounced = 0;
};
