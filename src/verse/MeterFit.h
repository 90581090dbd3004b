#pragma once

#include "verse/LineSound.h"
#include "verse/Meter.h"

#include <QList>

#include <optional>

// How well lines keep a foot. Monosyllables take whichever stress the foot asks of them; only
// the stresses of longer words can go against it.
class MeterFit {
public:
    // Where the foot puts its stresses in this line: the foot repeated and cut off, or closing
    // on a stress where an amphibrachic line reads better so.
    static QString beats(const LineSound &line, MetricalFoot foot);
    // Syllables against the foot: a longer word's stressed syllable where the foot has no
    // stress, or its unstressed neighbour where the foot has one.
    static int violations(const LineSound &line, MetricalFoot foot);
    // 'x' and 'X' per syllable as the foot reads the line, the word's own stress where it
    // goes against the foot; the loose scansion where that reads the line better.
    static QString stressPattern(const LineSound &line, MetricalFoot foot);
    // Article-like monosyllables on a stress, other monosyllables off it; only decides between
    // feet that fit equally well.
    static int leanings(const LineSound &line, MetricalFoot foot);
    // The foot that reads this line alone best.
    static MetricalFoot bestFoot(const LineSound &line);
    // The foot that fits most lines, with its most common number of stresses; none for free
    // verse.
    static std::optional<Meter> detect(const QList<const LineSound *> &lines);
};
