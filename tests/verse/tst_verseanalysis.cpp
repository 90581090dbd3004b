#include "verse/ImpureRhyme.h"
#include "verse/MeterFit.h"
#include "verse/Pronouncer.h"
#include "verse/VerseAnalyzer.h"

#include <QFile>
#include <QTest>

namespace {

// A poem as a literature teacher marks it: syllables per line ("|" between stanzas), the
// rhyme scheme of each stanza in which every rhyme is pure ("-" for a stanza whose rhymes
// are impure, slant or eye rhymes), the impure pairs as "line:partner letter" counted over
// the whole poem, and the metre ("" where teachers would not agree on one).
struct MarkedPoem {
    const char *file;
    const char *language;
    const char *syllables;
    const char *schemes;
    const char *impure;
    const char *meter;
};

const MarkedPoem markedPoems[] = {
    {"goethe-wandrers-nachtlied", "de", "6 2 5 3 4 9 5 4", "ABABCDDC", "", "freie Rhythmen"},
    {"goethe-gefunden", "de", "5 4 5 4 | 5 4 5 4", "ABCB -", "5:D 7:B", "2-hebiger Jambus"},
    {"goethe-erlkoenig", "de", "9 9 9 9", "AABB", "", "4-hebiger Jambus"},
    {"eichendorff-mondnacht", "de", "7 6 7 6 | 7 6 7 6 | 7 6 7 6", "- ABAB -", "0:C 2:A 8:C 10:A", "3-hebiger Jambus"},
    {"eichendorff-wuenschelrute", "de", "8 7 8 7", "ABAB", "", "4-hebiger Trochäus"},
    {"schiller-glocke", "de", "8 7 8 7", "ABAB", "", "4-hebiger Trochäus"},
    {"schiller-freude", "de", "8 7 8 7 8 7 8 7", "-", "1:C 3:B 4:F 6:D", "4-hebiger Trochäus"},
    {"heine-loreley", "de", "9 6 8 7", "-", "0:C 2:A", ""},
    {"heine-blume", "de", "7 6 7 6 | 8 6 8 6", "ABCB ABCB", "", "3-hebiger Jambus"},
    {"moerike-er-ists", "de", "7 8 8 7 5 6 9 5 6", "ABBACDCED", "", "4-hebiger Trochäus"},
    {"rilke-panther", "de", "11 10 11 10 | 11 10 11 10 | 11 10 11 8", "ABAB ABAB ABAB", "", "5-hebiger Jambus"},
    {"shakespeare-sonnet-18", "en", "10 10 10 10 10 10 10 10 10 10 10 10 10 10", "-", "", "5-hebiger Jambus"},
    {"dickinson-death", "en", "8 6 8 6 | 8 6 8 6", "- -", "", "4-hebiger Jambus"},
    {"frost-stopping-by-woods", "en", "8 8 8 8 | 8 8 8 8 | 8 8 8 8 | 8 8 8 8", "AABA AABA AABA AAAA", "",
     "4-hebiger Jambus"},
    {"frost-fire-and-ice", "en", "8 4 8 8 8 8 8 4 4", "ABAABCBCB", "", "4-hebiger Jambus"},
};

QString poemText(const char *file)
{
    QFile poem(QStringLiteral(ODELEAF_TEST_DATA "/verse/%1.txt").arg(QLatin1String(file)));
    return poem.open(QIODevice::ReadOnly) ? QString::fromUtf8(poem.readAll()) : QString();
}

// A line spelled as its words' stresses: "xX" a two-syllable word stressed on the second,
// "X" a monosyllable (free), "xXx" and so on; words separated by spaces.
LineSound lineOf(const QString &words)
{
    LineSound line;
    int w = 0;
    for (const QString &word : words.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        line.words.append({w, w + 1});
        for (const QChar c : word) {
            const LexicalStress stress = c == QLatin1Char('X')   ? LexicalStress::primary
                                         : c == QLatin1Char('S') ? LexicalStress::secondary
                                                                 : LexicalStress::unstressed;
            line.syllables.append({stress, word.size() == 1, false, w});
        }
        ++w;
    }
    return line;
}

} // namespace

class VerseAnalysisTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!Pronouncer::hasSpeechData())
            QSKIP("espeak-ng data is not installed");
    }

    // The whole marked set at once: the share of lines with the right syllable count, every
    // pure-rhyme stanza's scheme, the impure pairs and the metres.
    void classicPoemsAsATeacherMarksThem()
    {
        VerseAnalyzer analyzer;
        int lines = 0;
        int rightLines = 0;
        QStringList wrong;
        for (const MarkedPoem &marked : markedPoems) {
            const QString text = poemText(marked.file);
            QVERIFY2(!text.isEmpty(), marked.file);
            const VerseAnalysis analysis = analyzer.analyse(text, QLatin1String(marked.language));

            const QStringList stanzaCounts = QString::fromUtf8(marked.syllables).split(QStringLiteral(" | "));
            QCOMPARE(analysis.stanzas.size(), stanzaCounts.size());
            const QList<const VerseLine *> found = analysis.lines();
            QStringList expected;
            for (const QString &stanza : stanzaCounts)
                expected += stanza.split(QLatin1Char(' '));
            QCOMPARE(found.size(), expected.size());
            for (qsizetype i = 0; i < found.size(); ++i) {
                ++lines;
                if (found.at(i)->syllables == expected.at(i).toInt())
                    ++rightLines;
                else
                    wrong << QStringLiteral("%1 (%2 for %3)")
                                 .arg(found.at(i)->text)
                                 .arg(found.at(i)->syllables)
                                 .arg(expected.at(i));
            }

            const QStringList schemes = QString::fromUtf8(marked.schemes).split(QLatin1Char(' '));
            for (qsizetype s = 0; s < schemes.size(); ++s) {
                if (schemes.at(s) != QLatin1String("-"))
                    QVERIFY2(analysis.stanzas.at(s).scheme() == schemes.at(s),
                             qPrintable(QStringLiteral("%1 stanza %2: %3")
                                            .arg(QLatin1String(marked.file))
                                            .arg(s + 1)
                                            .arg(analysis.stanzas.at(s).scheme())));
            }

            QStringList impure;
            for (qsizetype i = 0; i < found.size(); ++i) {
                if (!found.at(i)->impureWith.isEmpty())
                    impure << QStringLiteral("%1:%2").arg(i).arg(found.at(i)->impureWith);
            }
            QCOMPARE(impure.join(QLatin1Char(' ')), QString::fromUtf8(marked.impure));

            if (*marked.meter)
                QCOMPARE(analysis.meterText(), QString::fromUtf8(marked.meter));
        }
        qInfo("%d of %d lines with the right syllable count; off: %s", rightLines, lines,
              qPrintable(wrong.join(QStringLiteral("; "))));
        QVERIFY2(rightLines * 100 >= lines * 97, qPrintable(wrong.join(QStringLiteral("; "))));
    }
};

QTEST_GUILESS_MAIN(VerseAnalysisTest)
#include "tst_verseanalysis.moc"
