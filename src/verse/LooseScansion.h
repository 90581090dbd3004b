#pragma once

#include "verse/LineSound.h"
#include "verse/MetricalFoot.h"

#include <QString>

// Scans a line the way a reader of loose verse does: beats wherever the words want them, as
// close to the foot as they allow, an extra or missing unstressed syllable between beats
// costing less than a word stressed against its nature ("Wer REItet so SPÄT durch NACHT und
// WIND" in a four-beat iambic ballad).
class LooseScansion {
public:
    // The cheapest 'x'/'X' pattern for the line in the foot.
    static QString of(const LineSound &line, MetricalFoot foot);
    // What reading the line with that pattern costs.
    static double cost(const LineSound &line, MetricalFoot foot, const QString &pattern);
};
