#pragma once

#include "verse/VerseLine.h"

#include <QList>

// Lines between blank lines; rhyme letters start again in every stanza.
struct VerseStanza {
    QList<VerseLine> lines;

    // The rhyme letters of the lines with words, e.g. "ABAB".
    QString scheme() const;
};
