#pragma once

#include "archive/PoemField.h"

// Joins a poem's unsaved change with the version another process stored meanwhile,
// attribute by attribute, against the version both started from:
// - an attribute only one side changed takes that side's value;
// - both sides setting the same value is no conflict;
// - updatedAt changed on both sides takes the later moment;
// - any other attribute changed on both sides to different values is a conflict. The
//   merge keeps the local value (it is the one on screen), but the caller must not write
//   it without telling the user, since that would drop the other change unseen.
class PoemMerge {
public:
    struct Outcome {
        PoemValues merged;
        PoemFieldSet toWrite; // where merged differs from the stored version
        PoemFieldSet conflicts;
    };

    static Outcome merge(const PoemValues &base, const PoemValues &local, const PoemValues &stored);
};
