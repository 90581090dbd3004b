#pragma once

#include <QSet>
#include <QString>

// The archive's one title key (stored as Poem::titleNormalized) and its significant words.
// Pure functions, safe on any thread.
QString normalize(const QString &title);
QSet<QString> tokenize(const QString &key);
