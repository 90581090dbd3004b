#include "verse/LooseScansion.h"

#include <QList>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// A word stressed against its nature outweighs any irregular filling of the feet.
constexpr double againstTheWord = 10;
constexpr double irregularDip = 1.2;
// A line keeps its upbeat rather than its even dips: "mir IST, als OB ich die HÄNde".
constexpr double irregularOnset = 1.6;
constexpr double clashingBeats = 3;
constexpr double weakWordOnBeat = 1;
constexpr double strongWordOffBeat = 0.5;
// The rhyme word carries the line's last beat: "am FENster ich EINsam STAND".
constexpr double strongWordOffLastBeat = 2;
constexpr int longestDip = 4;

int idealDip(MetricalFoot foot)
{
    return footPattern(foot).size() - 1;
}

int idealOnset(MetricalFoot foot)
{
    return int(footPattern(foot).indexOf(QLatin1Char('X')));
}

bool primaryInWordBeside(const LineSound &line, qsizetype i)
{
    const auto primary = [&](qsizetype j) {
        return j >= 0 && j < line.syllables.size() && line.syllables.at(j).word == line.syllables.at(i).word &&
               line.syllables.at(j).stress == LexicalStress::primary;
    };
    return primary(i - 1) || primary(i + 1);
}

double syllableCost(const LineSound &line, qsizetype i, bool beat)
{
    const LineSound::Syllable &syllable = line.syllables.at(i);
    if (syllable.free && beat)
        return syllable.leansWeak ? weakWordOnBeat : 0;
    if (syllable.free)
        return syllable.leansWeak ? 0 : (i + 1 == line.syllables.size() ? strongWordOffLastBeat : strongWordOffBeat);
    if (syllable.stress == LexicalStress::primary)
        return beat ? 0 : againstTheWord;
    if (syllable.stress == LexicalStress::unstressed && beat && primaryInWordBeside(line, i))
        return againstTheWord;
    return 0;
}

double dipCost(int dip, int ideal)
{
    return dip == 0 ? clashingBeats : irregularDip * std::abs(dip - ideal);
}

} // namespace

double LooseScansion::cost(const LineSound &line, MetricalFoot foot, const QString &pattern)
{
    double total = 0;
    int previousBeat = -1;
    for (qsizetype i = 0; i < line.syllables.size(); ++i) {
        const bool beat = pattern.at(i) == QLatin1Char('X');
        total += syllableCost(line, i, beat);
        if (!beat)
            continue;
        total += previousBeat < 0 ? irregularOnset * std::abs(int(i) - idealOnset(foot))
                                  : dipCost(int(i) - previousBeat - 1, idealDip(foot));
        previousBeat = int(i);
    }
    if (previousBeat < 0)
        return line.syllables.isEmpty() ? 0 : std::numeric_limits<double>::max();
    const int ending = int(line.syllables.size()) - previousBeat - 1;
    return total + irregularDip * std::max(0, ending - idealDip(foot));
}

QString LooseScansion::of(const LineSound &line, MetricalFoot foot)
{
    const auto n = line.syllables.size();
    // State: unstressed syllables since the last beat (capped), or before the first one.
    constexpr int states = 2 * (longestDip + 1);
    const auto stateOf = [](bool started, int dip) {
        return (started ? longestDip + 1 : 0) + std::min(dip, longestDip);
    };
    constexpr double unreachable = std::numeric_limits<double>::max();
    QList<QList<double>> best(n + 1, QList<double>(states, unreachable));
    QList<QList<int>> from(n + 1, QList<int>(states, -1));
    best[0][stateOf(false, 0)] = 0;
    for (qsizetype i = 0; i < n; ++i) {
        for (int state = 0; state < states; ++state) {
            const double sofar = best.at(i).at(state);
            if (sofar == unreachable)
                continue;
            const bool started = state > longestDip;
            const int dip = state % (longestDip + 1);
            const auto relax = [&](int next, double cost) {
                if (sofar + cost < best.at(i + 1).at(next)) {
                    best[i + 1][next] = sofar + cost;
                    from[i + 1][next] = state;
                }
            };
            relax(stateOf(started, dip + 1), syllableCost(line, i, false));
            const double dipPrice =
                started ? dipCost(dip, idealDip(foot)) : irregularOnset * std::abs(dip - idealOnset(foot));
            relax(stateOf(true, 0), syllableCost(line, i, true) + dipPrice);
        }
    }
    int end = -1;
    double endCost = unreachable;
    for (int state = longestDip + 1; state < states; ++state) {
        if (best.at(n).at(state) == unreachable)
            continue;
        const double total = best.at(n).at(state) + irregularDip * std::max(0, state - longestDip - 1 - idealDip(foot));
        if (total < endCost) {
            end = state;
            endCost = total;
        }
    }
    QString pattern(n, QLatin1Char('x'));
    for (qsizetype i = n; i > 0 && end >= 0; --i) {
        if (end == longestDip + 1)
            pattern[i - 1] = QLatin1Char('X');
        end = from.at(i).at(end);
    }
    return pattern;
}
