#include "verse/VerseAnalysis.h"

#include <QJsonArray>

#include <algorithm>

QList<const VerseLine *> VerseAnalysis::lines() const
{
    QList<const VerseLine *> all;
    for (const VerseStanza &stanza : stanzas) {
        for (const VerseLine &line : stanza.lines)
            all.append(&line);
    }
    return all;
}

QList<int> VerseAnalysis::breakingLineNumbers() const
{
    QList<int> numbers;
    for (const VerseLine *line : lines()) {
        if (line->breaksMeter)
            numbers.append(line->lineNumber);
    }
    return numbers;
}

QString VerseAnalysis::meterText(const std::optional<Meter> &meter)
{
    if (!meter)
        return tr("freie Rhythmen");
    const int n = meter->feet;
    switch (meter->foot) {
    case MetricalFoot::jambus:
        return tr("%n-hebiger Jambus", nullptr, n);
    case MetricalFoot::trochaeus:
        return tr("%n-hebiger Trochäus", nullptr, n);
    case MetricalFoot::daktylus:
        return tr("%n-hebiger Daktylus", nullptr, n);
    case MetricalFoot::anapaest:
        return tr("%n-hebiger Anapäst", nullptr, n);
    case MetricalFoot::amphibrachys:
        return tr("%n-hebiger Amphibrachys", nullptr, n);
    }
    return {};
}

QString VerseAnalysis::meterText() const
{
    return meterText(meter);
}

QString VerseAnalysis::breakingText() const
{
    const auto count = int(breakingLineNumbers().size());
    if (count == 0)
        return {};
    return count == 1 ? tr("1 Vers weicht ab") : tr("%n Verse weichen ab", nullptr, count);
}

QJsonObject VerseAnalysis::toJson() const
{
    QJsonArray stanzaArray;
    for (const VerseStanza &stanza : stanzas) {
        QJsonArray lineArray;
        for (const VerseLine &line : stanza.lines) {
            QJsonObject object{{QStringLiteral("text"), line.text},
                               {QStringLiteral("syllables"), line.syllables},
                               {QStringLiteral("stress"), line.stress},
                               {QStringLiteral("rhymeKey"), line.rhymeKey}};
            if (!line.rhyme.isEmpty())
                object.insert(QStringLiteral("rhyme"), line.rhyme);
            if (!line.impureWith.isEmpty())
                object.insert(QStringLiteral("impureWith"), line.impureWith);
            lineArray.append(object);
        }
        stanzaArray.append(
            QJsonObject{{QStringLiteral("scheme"), stanza.scheme()}, {QStringLiteral("lines"), lineArray}});
    }
    QJsonObject root{{QStringLiteral("language"), language}, {QStringLiteral("stanzas"), stanzaArray}};
    if (meter)
        root.insert(QStringLiteral("meter"), QJsonObject{{QStringLiteral("name"), footName(meter->foot)},
                                                         {QStringLiteral("feet"), meter->feet}});
    return root;
}

QStringList VerseAnalysis::textLines() const
{
    QStringList out;
    for (qsizetype s = 0; s < stanzas.size(); ++s) {
        if (s > 0)
            out.append(QString());
        for (const VerseLine &line : stanzas.at(s).lines)
            out.append(QStringLiteral("%1\t%2\t%3\t%4").arg(line.syllables).arg(line.rhyme, line.stress, line.text));
    }
    // A poem without words has no metre, not even a free one.
    const QList<const VerseLine *> all = lines();
    if (std::any_of(all.cbegin(), all.cend(), [](const VerseLine *line) { return line->hasWords(); }))
        out.append(meterText());
    return out;
}
