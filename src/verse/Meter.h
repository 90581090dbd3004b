#pragma once

#include "verse/MetricalFoot.h"

// The metre of a poem: its foot and the number of stresses in a line.
struct Meter {
    MetricalFoot foot = MetricalFoot::jambus;
    int feet = 0;

    bool operator==(const Meter &other) const = default;
};
