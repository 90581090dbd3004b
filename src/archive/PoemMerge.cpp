#include "archive/PoemMerge.h"

PoemMerge::Outcome PoemMerge::merge(const PoemValues &base, const PoemValues &local, const PoemValues &stored)
{
    Outcome outcome{stored, {}, {}};
    for (int i = 0; i < poemFieldCount; ++i) {
        const auto field = PoemField(i);
        const bool localChanged = !fieldEquals(field, local, base);
        if (!localChanged || fieldEquals(field, local, stored))
            continue;
        const bool storedChanged = !fieldEquals(field, stored, base);
        if (storedChanged && field == PoemField::updatedAt) {
            if (local.updatedAt && (!stored.updatedAt || *local.updatedAt > *stored.updatedAt)) {
                outcome.merged.updatedAt = local.updatedAt;
                outcome.toWrite.set(size_t(i));
            }
            continue;
        }
        copyField(field, outcome.merged, local);
        outcome.toWrite.set(size_t(i));
        if (storedChanged)
            outcome.conflicts.set(size_t(i));
    }
    return outcome;
}
