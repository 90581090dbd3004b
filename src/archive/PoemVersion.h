#pragma once

#include "archive/PoemValues.h"

#include <QDateTime>
#include <QString>

// One kept state of a poem. Listings leave `values` empty; a version read in full carries the
// poem's user-visible attributes, rich text with its pictures included.
struct PoemVersion {
    qint64 number = 0; // counts up per poem, never reused
    QDateTime createdAt;
    QString reason;
    QString name;
    int wordsAdded = 0; // since the version before it
    int wordsRemoved = 0;
    PoemValues values;

    // The name when the poet gave one, else why it was kept.
    QString label() const { return name.isEmpty() ? reason : name; }
};
