#pragma once

#include "verse/Meter.h"
#include "verse/VerseStanza.h"

#include <QCoreApplication>
#include <QJsonObject>
#include <QList>

#include <optional>

// What the verse tools make of a poem: its stanzas and lines with syllables, stresses and
// rhyme letters, and the metre that fits most lines.
struct VerseAnalysis {
    Q_DECLARE_TR_FUNCTIONS(VerseAnalysis)

public:
    QString language;
    QList<VerseStanza> stanzas;
    std::optional<Meter> meter;

    QList<const VerseLine *> lines() const;
    // Line numbers in the text of the lines that go against the metre.
    QList<int> breakingLineNumbers() const;
    // "3-hebiger Jambus" or "freie Rhythmen".
    QString meterText() const;
    static QString meterText(const std::optional<Meter> &meter);
    // "1 Vers weicht ab", "3 Verse weichen ab"; empty when none does.
    QString breakingText() const;

    QJsonObject toJson() const;
    // A line per verse line: syllables, rhyme letter, stresses and the text, by tabs; a blank
    // line between stanzas; the metre last.
    QStringList textLines() const;
};
