#pragma once

#include "matching/PoemSnapshotEntry.h"

#include <QList>

class ArchiveContext;

// The live poems as (id, title) values, taken on the main thread so the matcher can work
// on another one without touching the context.
QList<PoemSnapshotEntry> livePoemSnapshot(const ArchiveContext &context);
