#pragma once

#include <QStringList>

// Two rhyme tails that do not sound the same but near enough for a poet's ear ("Himmel" and
// "Schimmer", "bedeuten" and "Zeiten", "Höh" and "Schnee"): the stressed vowels agree once
// rounding and length are set aside, and the endings agree once voicing is, or differ in one
// sound when they are long enough to carry that.
class ImpureRhyme {
public:
    static bool matches(const QStringList &tail, const QStringList &other);
    // The tail with rounding, length and voicing set aside.
    static QStringList relaxed(const QStringList &tail);
};
