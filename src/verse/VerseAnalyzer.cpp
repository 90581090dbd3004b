#include "verse/VerseAnalyzer.h"

#include "verse/ImpureRhyme.h"
#include "verse/MeterFit.h"

#include <QRegularExpression>

namespace {

// Enough for every line of a long poem and its recent edits.
constexpr qsizetype rememberedLines = 4000;

QString letterAt(int index)
{
    const QString alphabet = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZ");
    QString letters;
    do {
        letters.prepend(alphabet.at(index % 26));
        index = index / 26 - 1;
    } while (index >= 0);
    return letters;
}

// espeak-ng now and then stresses a foreign word on the wrong syllable ("Pupille" as
// "PU-pille"); its ending then still sounds like the other line's whole rhyme.
bool endsInRhyme(const QStringList &tail, const QStringList &rhyme)
{
    return rhyme.size() >= 3 && tail.size() > rhyme.size() && Pronouncer::isVowelPhoneme(rhyme.first()) &&
           tail.mid(tail.size() - rhyme.size()) == rhyme;
}

void assignRhymes(VerseStanza &stanza, const QList<const LineSound *> &sounds)
{
    QList<QStringList> tails;
    QList<QString> letters;
    QHash<QString, int> linesOfLetter;
    for (qsizetype i = 0; i < stanza.lines.size(); ++i) {
        if (!sounds.at(i)->hasWords())
            continue;
        const QStringList &tail = sounds.at(i)->rhymeTail;
        qsizetype known = tails.indexOf(tail);
        for (qsizetype t = 0; known < 0 && t < tails.size(); ++t) {
            if (endsInRhyme(tail, tails.at(t)) || endsInRhyme(tails.at(t), tail))
                known = t;
        }
        if (known < 0) {
            known = tails.size();
            tails.append(tail);
            letters.append(letterAt(int(known)));
        }
        stanza.lines[i].rhyme = letters.at(known);
        ++linesOfLetter[letters.at(known)];
    }
    for (qsizetype i = 0; i < stanza.lines.size(); ++i) {
        const LineSound &sound = *sounds.at(i);
        if (!sound.hasWords() || linesOfLetter.value(stanza.lines.at(i).rhyme) > 1)
            continue;
        for (qsizetype j = 0; j < stanza.lines.size(); ++j) {
            if (j != i && sounds.at(j)->hasWords() && ImpureRhyme::matches(sound.rhymeTail, sounds.at(j)->rhymeTail)) {
                stanza.lines[i].impureWith = stanza.lines.at(j).rhyme;
                break;
            }
        }
    }
}

} // namespace

QStringList VerseAnalyzer::splitLines(const QString &text)
{
    static const QRegularExpression breaks(QStringLiteral("\r\n|[\n\r\u2028\u2029]"));
    return text.split(breaks);
}

const LineSound &VerseAnalyzer::soundOf(const QString &line, const QString &language)
{
    const QString key = language + QLatin1Char('\n') + line;
    const auto known = m_lines.constFind(key);
    if (known != m_lines.constEnd())
        return *known;
    if (m_lines.size() >= rememberedLines)
        m_lines.clear();
    ++m_linesPronounced;
    return *m_lines.insert(key, LineSound::of(line, language, m_pronouncer));
}

VerseAnalysis VerseAnalyzer::analyse(const QString &text, const QString &language)
{
    VerseAnalysis analysis;
    analysis.language = language;
    const QStringList textLines = splitLines(text);

    // Copies: the cache may be cleared while later lines are pronounced.
    QList<LineSound> sounds;
    QList<QList<int>> stanzaLines;
    bool inStanza = false;
    for (qsizetype n = 0; n < textLines.size(); ++n) {
        const QString &line = textLines.at(n);
        if (line.trimmed().isEmpty()) {
            inStanza = false;
            continue;
        }
        if (!inStanza) {
            stanzaLines.append(QList<int>());
            inStanza = true;
        }
        stanzaLines.last().append(int(n));
        sounds.append(soundOf(line, language));
    }

    QList<const LineSound *> all;
    for (const LineSound &sound : sounds)
        all.append(&sound);
    analysis.meter = MeterFit::detect(all);

    qsizetype next = 0;
    for (const QList<int> &numbers : stanzaLines) {
        VerseStanza stanza;
        QList<const LineSound *> stanzaSounds;
        for (const int n : numbers) {
            const LineSound &sound = sounds.at(next++);
            const MetricalFoot foot = analysis.meter ? analysis.meter->foot : MeterFit::bestFoot(sound);
            VerseLine line;
            line.text = textLines.at(n);
            line.lineNumber = n;
            line.syllables = int(sound.syllables.size());
            line.stress = MeterFit::stressPattern(sound, foot);
            line.rhymeKey = sound.rhymeKey();
            line.breaksMeter = analysis.meter && MeterFit::violations(sound, foot) > 0;
            for (const LineSound::Word &word : sound.words)
                line.words.append({word.start, word.end});
            for (const LineSound::Syllable &syllable : sound.syllables)
                line.syllableWords.append(syllable.word);
            stanza.lines.append(line);
            stanzaSounds.append(&sound);
        }
        assignRhymes(stanza, stanzaSounds);
        analysis.stanzas.append(stanza);
    }
    return analysis;
}
