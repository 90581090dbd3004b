#include "verse/MeterFit.h"

#include "verse/LooseScansion.h"

#include <QMap>

#include <tuple>

namespace {

bool isPrimary(const LineSound &line, qsizetype i)
{
    return i >= 0 && i < line.syllables.size() && line.syllables.at(i).stress == LexicalStress::primary;
}

bool goesAgainst(const LineSound &line, const QString &beats, qsizetype i)
{
    const LineSound::Syllable &syllable = line.syllables.at(i);
    if (syllable.free || syllable.stress == LexicalStress::secondary)
        return false;
    const bool beat = beats.at(i) == QLatin1Char('X');
    if (syllable.stress == LexicalStress::primary)
        return !beat;
    if (!beat)
        return false;
    const auto sameWordPrimary = [&](qsizetype j) {
        return isPrimary(line, j) && line.syllables.at(j).word == syllable.word;
    };
    return sameWordPrimary(i - 1) || sameWordPrimary(i + 1);
}

int countAgainst(const LineSound &line, const QString &beats)
{
    int count = 0;
    for (qsizetype i = 0; i < line.syllables.size(); ++i)
        count += goesAgainst(line, beats, i) ? 1 : 0;
    return count;
}

int countLeanings(const LineSound &line, const QString &beats)
{
    int count = 0;
    for (qsizetype i = 0; i < line.syllables.size(); ++i) {
        const LineSound::Syllable &syllable = line.syllables.at(i);
        if (syllable.free && syllable.leansWeak == (beats.at(i) == QLatin1Char('X')))
            ++count;
    }
    return count;
}

} // namespace

QString MeterFit::beats(const LineSound &line, MetricalFoot foot)
{
    const int n = int(line.syllables.size());
    const QString cut = footTemplate(foot, n);
    // An amphibrachic line may close on a stress ("Am Fenster ich einsam stand").
    if (foot != MetricalFoot::amphibrachys || n % 3 != 1 || n < 4)
        return cut;
    QString closed = cut;
    closed[n - 1] = QLatin1Char('X');
    const std::tuple<int, int> cutScore{countAgainst(line, cut), countLeanings(line, cut)};
    const std::tuple<int, int> closedScore{countAgainst(line, closed), countLeanings(line, closed)};
    return closedScore < cutScore ? closed : cut;
}

int MeterFit::violations(const LineSound &line, MetricalFoot foot)
{
    return countAgainst(line, beats(line, foot));
}

QString MeterFit::stressPattern(const LineSound &line, MetricalFoot foot)
{
    QString pattern = beats(line, foot);
    for (qsizetype i = 0; i < line.syllables.size(); ++i) {
        if (goesAgainst(line, pattern, i))
            pattern[i] = isPrimary(line, i) ? QLatin1Char('X') : QLatin1Char('x');
    }
    // A line the strict foot reads badly is scanned as loose verse, as a reader would.
    const QString loose = LooseScansion::of(line, foot);
    return LooseScansion::cost(line, foot, loose) < LooseScansion::cost(line, foot, pattern) ? loose : pattern;
}

int MeterFit::leanings(const LineSound &line, MetricalFoot foot)
{
    return countLeanings(line, beats(line, foot));
}

MetricalFoot MeterFit::bestFoot(const LineSound &line)
{
    MetricalFoot best = allMetricalFeet.first();
    std::tuple<int, int> bestScore{violations(line, best), leanings(line, best)};
    for (const MetricalFoot foot : allMetricalFeet) {
        const std::tuple<int, int> score{violations(line, foot), leanings(line, foot)};
        if (score < bestScore) {
            best = foot;
            bestScore = score;
        }
    }
    return best;
}

std::optional<Meter> MeterFit::detect(const QList<const LineSound *> &lines)
{
    QList<const LineSound *> verses;
    for (const LineSound *line : lines) {
        if (!line->syllables.isEmpty())
            verses.append(line);
    }
    if (verses.isEmpty())
        return std::nullopt;

    MetricalFoot best = allMetricalFeet.first();
    // Lines that keep the foot (negated, so that smaller is better), violations, leanings.
    std::tuple<int, int, int> bestScore{1, 0, 0};
    QMap<int, int> bestFittingPerStresses;
    for (const MetricalFoot foot : allMetricalFeet) {
        int fitting = 0;
        int against = 0;
        int leaning = 0;
        QMap<int, int> fittingPerStresses;
        for (const LineSound *line : verses) {
            const int v = violations(*line, foot);
            against += v;
            leaning += leanings(*line, foot);
            if (v > 0)
                continue;
            ++fitting;
            ++fittingPerStresses[int(beats(*line, foot).count(QLatin1Char('X')))];
        }
        const std::tuple<int, int, int> score{-fitting, against, leaning};
        if (score < bestScore) {
            best = foot;
            bestScore = score;
            bestFittingPerStresses = fittingPerStresses;
        }
    }

    // Of alternating long and short lines, the long ones name the metre.
    int feet = 0;
    int sameStresses = 0;
    for (auto it = bestFittingPerStresses.cbegin(); it != bestFittingPerStresses.cend(); ++it) {
        if (it.value() >= sameStresses) {
            feet = it.key();
            sameStresses = it.value();
        }
    }
    // Free verse unless foot and stresses keep to half of the lines, or the foot alone to
    // three quarters (a song whose lines shorten towards its end).
    const int fitting = -std::get<0>(bestScore);
    const auto total = int(verses.size());
    if (sameStresses * 2 < total && fitting * 4 < total * 3)
        return std::nullopt;
    return Meter{best, feet};
}
