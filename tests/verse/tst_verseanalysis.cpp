#include "verse/ImpureRhyme.h"
#include "verse/MeterFit.h"
#include "verse/Pronouncer.h"
#include "verse/SpellingSyllables.h"
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
    {"rilke-herbsttag", "de", "10 11 10 | 10 11 11 10", "ABA ABBA", "", "5-hebiger Jambus"},
    {"goethe-zauberlehrling", "de", "8 8 8 8 6 5 6 5", "ABABCDCD", "", "4-hebiger Trochäus"},
    {"eichendorff-sehnsucht", "de", "9 7 8 7", "ABAB", "", "3-hebiger Amphibrachys"},
    {"shakespeare-sonnet-130", "en", "10 10 10 10", "ABAB", "", "5-hebiger Jambus"},
    {"dickinson-hope", "en", "7 6 8 6", "-", "", ""},
    {"frost-road-not-taken", "en", "9 9 9 9 9", "ABAAB", "", ""},
    {"blake-tyger", "en", "7 7 7 8", "-", "", "4-hebiger Trochäus"},
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

    // Stresses of single lines as a reader scans them in their poem, loose lines included.
    void handScannedLines_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("language");
        QTest::addColumn<int>("line");
        QTest::addColumn<QString>("stress");
        QTest::newRow("Erlkönig, a double dip") << "goethe-erlkoenig"
                                                << "de" << 0 << "xXxxXxXxX";
        QTest::newRow("Erlkönig, the rhyme word on the beat") << "goethe-erlkoenig"
                                                              << "de" << 3 << "xXxXxxXxX";
        QTest::newRow("Loreley") << "heine-loreley"
                                 << "de" << 0 << "xXxxXxxXx";
        QTest::newRow("Loreley, closing on a stress") << "heine-loreley"
                                                      << "de" << 3 << "xXxXxxX";
        QTest::newRow("Mondnacht") << "eichendorff-mondnacht"
                                   << "de" << 0 << "xXxXxXx";
        QTest::newRow("Sehnsucht") << "eichendorff-sehnsucht"
                                   << "de" << 1 << "xXxxXxX";
        QTest::newRow("Wandrers Nachtlied") << "goethe-wandrers-nachtlied"
                                            << "de" << 5 << "xXxxXxxXx";
        QTest::newRow("Glocke") << "schiller-glocke"
                                << "de" << 0 << "XxXxXxXx";
        QTest::newRow("Frost") << "frost-stopping-by-woods"
                               << "en" << 1 << "xXxXxXxX";
    }

    void handScannedLines()
    {
        QFETCH(QString, file);
        QFETCH(QString, language);
        QFETCH(int, line);
        QFETCH(QString, stress);
        VerseAnalyzer analyzer;
        const VerseAnalysis analysis = analyzer.analyse(poemText(file.toUtf8().constData()), language);
        QCOMPARE(analysis.lines().at(line)->stress, stress);
    }

    void phonemeOutputToSyllables_data()
    {
        QTest::addColumn<QString>("phonemes");
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("stresses");
        QTest::addColumn<QString>("rhymeTail");
        // '2' primary, '1' secondary, '0' unstressed per syllable.
        QTest::newRow("schwa syllable") << "g|'I|p|f|@|l|n"
                                        << "de"
                                        << "20"
                                        << "I p f @ l n";
        QTest::newRow("pause marks and secondary stress") << "_!|'a|l|3|k|l|,aI|n|s|t|@|n"
                                                          << "de"
                                                          << "2010"
                                                          << "aI n s t @ n";
        QTest::newRow("German -er after a diphthong is a syllable") << "m|'aU|3"
                                                                    << "de"
                                                                    << "20"
                                                                    << "aU 3";
        QTest::newRow("English our is one") << "aU|3|s|'E|l|v|z"
                                            << "en"
                                            << "02"
                                            << "E l v z";
        QTest::newRow("stress mark before a consonant") << "'p|r|aI|z|@"
                                                        << "de"
                                                        << "20"
                                                        << "aI z @";
        QTest::newRow("syllabic l") << "l|'I|t|@L"
                                    << "en"
                                    << "20"
                                    << "I t @L";
        QTest::newRow("unstressed word rhymes from its last vowel") << "D|@"
                                                                    << "en"
                                                                    << "0"
                                                                    << "@";
    }

    void phonemeOutputToSyllables()
    {
        QFETCH(QString, phonemes);
        QFETCH(QString, language);
        QFETCH(QString, stresses);
        QFETCH(QString, rhymeTail);
        const WordSound sound = Pronouncer::parse(phonemes, language);
        QString found;
        for (const LexicalStress stress : sound.stresses)
            found += QString::number(int(stress));
        QCOMPARE(found, stresses);
        QCOMPARE(sound.rhymeTail().join(QLatin1Char(' ')), rhymeTail);
    }

    // Without speech data the spelling stands in: vowel groups, German stress after an
    // unstressed prefix, a silent English final e.
    void syllablesFromTheSpelling_data()
    {
        QTest::addColumn<QString>("word");
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("stresses");
        QTest::addColumn<QString>("rhymeTail");
        QTest::newRow("Himmel") << "Himmel"
                                << "de"
                                << "20"
                                << "i m m e l";
        QTest::newRow("diphthongs are one vowel") << "Vögelein"
                                                  << "de"
                                                  << "200"
                                                  << "ö g e l e i n";
        QTest::newRow("unstressed prefix") << "Gesellen"
                                           << "de"
                                           << "020"
                                           << "e l l e n";
        QTest::newRow("silent e") << "stone"
                                  << "en"
                                  << "2"
                                  << "o n e";
        QTest::newRow("syllabic le") << "little"
                                     << "en"
                                     << "20"
                                     << "i t t l e";
        QTest::newRow("no vowel") << "hm"
                                  << "de"
                                  << ""
                                  << "";
    }

    void syllablesFromTheSpelling()
    {
        QFETCH(QString, word);
        QFETCH(QString, language);
        QFETCH(QString, stresses);
        QFETCH(QString, rhymeTail);
        const WordSound sound = SpellingSyllables::of(word, language);
        QString found;
        for (const LexicalStress stress : sound.stresses)
            found += QString::number(int(stress));
        QCOMPARE(found, stresses);
        QCOMPARE(sound.rhymeTail().join(QLatin1Char(' ')), rhymeTail);
    }

    void impureRhymes_data()
    {
        QTest::addColumn<QString>("tail");
        QTest::addColumn<QString>("other");
        QTest::addColumn<bool>("impure");
        QTest::newRow("Himmel, Schimmer") << "I m @ l"
                                          << "I m 3" << true;
        QTest::newRow("bedeuten, Zeiten") << "OY t @ n"
                                          << "aI t @ n" << true;
        QTest::newRow("Höh, Schnee") << "Y: "
                                     << "e:" << true;
        QTest::newRow("Lande, spannte") << "a n d @"
                                        << "a n t @" << true;
        QTest::newRow("a pure rhyme is not impure") << "aU s"
                                                    << "aU s" << false;
        QTest::newRow("Haus, Hauch: short endings must agree") << "aU s"
                                                               << "aU x" << false;
        QTest::newRow("date, fade: voicing at the end") << "eI t"
                                                        << "eI d" << false;
        QTest::newRow("other vowel") << "I m @ l"
                                     << "a m @ l" << false;
    }

    void impureRhymes()
    {
        QFETCH(QString, tail);
        QFETCH(QString, other);
        QFETCH(bool, impure);
        const QStringList a = tail.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        const QStringList b = other.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        QCOMPARE(ImpureRhyme::matches(a, b), impure);
        QCOMPARE(ImpureRhyme::matches(b, a), impure);
    }

    void metreOfSpelledLines_data()
    {
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<QString>("meter");
        QTest::addColumn<QString>("lastStress");
        QTest::newRow("monosyllables follow the longer words")
            << QStringList{"X X xX", "xX X X", "X X X X"} << "2-hebiger Jambus"
            << "xXxX";
        QTest::newRow("a trochaic word fixes the foot")
            << QStringList{"X X X X", "Xx X X", "X X Xx"} << "2-hebiger Trochäus"
            << "XxXx";
        QTest::newRow("dactyls") << QStringList{"X X X X X X", "Xxx Xxx", "X X X Xxx"} << "2-hebiger Daktylus"
                                 << "XxxXxx";
        QTest::newRow("alternating lines are named by the long ones")
            << QStringList{"xX xX xX xX", "xX xX xX", "xX xX xX xX", "xX xX xX"} << "4-hebiger Jambus"
            << "xXxXxX";
        QTest::newRow("each line in another foot is free verse")
            << QStringList{"xX xX", "Xx Xx", "Xxx Xxx", "xxX xxX"} << "freie Rhythmen"
            << "xxXxxX";
        QTest::newRow("a stress against the foot shows as spoken")
            << QStringList{"xX xX", "xX xX", "Xx xX"} << "2-hebiger Jambus"
            << "XxxX";
        QTest::newRow("the rhyme word takes the last beat of a loose line")
            << QStringList{"xXx X xX", "xXx X xX", "xX X X Xx X"} << "3-hebiger Jambus"
            << "xXxxXxX";
        QTest::newRow("secondary stress is free") << QStringList{"xX xX", "X XS X"} << "2-hebiger Jambus"
                                                  << "xXxX";
    }

    void metreOfSpelledLines()
    {
        QFETCH(QStringList, lines);
        QFETCH(QString, meter);
        QFETCH(QString, lastStress);
        QList<LineSound> sounds;
        for (const QString &line : lines)
            sounds.append(lineOf(line));
        QList<const LineSound *> pointers;
        for (const LineSound &sound : sounds)
            pointers.append(&sound);
        const std::optional<Meter> found = MeterFit::detect(pointers);
        QCOMPARE(VerseAnalysis::meterText(found), meter);
        const MetricalFoot foot = found ? found->foot : MeterFit::bestFoot(sounds.last());
        QCOMPARE(MeterFit::stressPattern(sounds.last(), foot), lastStress);
    }

    // Stanzas, line numbers and letters from a text as the editor hands it over.
    void stanzasLinesAndLetters()
    {
        VerseAnalyzer analyzer;
        const QString text =
            QStringLiteral("\r\nDer Tag ist hin,\r\nich bin\n\n\n* * *\nder Wind\u2028das Kind\n  \nund hin");
        const VerseAnalysis analysis = analyzer.analyse(text, QStringLiteral("de"));
        QCOMPARE(analysis.stanzas.size(), 3);
        QCOMPARE(analysis.stanzas.at(0).scheme(), QStringLiteral("AA"));
        QCOMPARE(analysis.stanzas.at(1).scheme(), QStringLiteral("AA"));
        QCOMPARE(analysis.stanzas.at(2).scheme(), QStringLiteral("A"));
        const VerseLine &mark = analysis.stanzas.at(1).lines.at(0);
        QCOMPARE(mark.text, QStringLiteral("* * *"));
        QVERIFY(mark.rhyme.isEmpty());
        QCOMPARE(mark.syllables, 0);
        QList<int> numbers;
        for (const VerseLine *line : analysis.lines())
            numbers.append(line->lineNumber);
        QCOMPARE(numbers, (QList<int>{1, 2, 5, 6, 7, 9}));
        QCOMPARE(analysis.textLines().first(), QStringLiteral("4\tA\txXxX\tDer Tag ist hin,"));
        QCOMPARE(analyzer.analyse(QStringLiteral("\n  \n* * *\n"), QStringLiteral("de")).textLines(),
                 QStringList{QStringLiteral("0\t\t\t* * *")});
    }

    // Apostrophes: an elided vowel takes its syllable with it, a clitic consonant adds none.
    void elisions_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("language");
        QTest::addColumn<int>("syllables");
        QTest::newRow("'s at the start") << "'s war einmal ein Mann"
                                         << "de" << 5;
        QTest::newRow("hab's") << "Ich hab's gesehn"
                               << "de" << 4;
        QTest::newRow("hätt' before a consonant") << "Es war, als hätt' der Himmel"
                                                  << "de" << 7;
        QTest::newRow("Th' before a vowel") << "Th' expense of spirit"
                                            << "en" << 5;
        QTest::newRow("o'er") << "O'er the hills"
                              << "en" << 3;
        QTest::newRow("heav'n") << "Heav'n and earth"
                                << "en" << 3;
        QTest::newRow("typographic apostrophe") << QString::fromUtf8("Wie geht\u2019s dir") << "de" << 3;
    }

    void elisions()
    {
        QFETCH(QString, line);
        QFETCH(QString, language);
        QFETCH(int, syllables);
        VerseAnalyzer analyzer;
        QCOMPARE(analyzer.analyse(line, language).lines().first()->syllables, syllables);
    }

    // After an edit only the changed line is pronounced again.
    void anEditPronouncesOnlyTheChangedLine()
    {
        VerseAnalyzer analyzer;
        const QString poem = poemText("rilke-panther");
        const VerseAnalysis before = analyzer.analyse(poem, QStringLiteral("de"));
        const int pronounced = analyzer.linesPronounced();
        QCOMPARE(pronounced, 12);
        QString edited = poem;
        edited.replace(QStringLiteral("keine Welt"), QStringLiteral("keine Zeit"));
        const VerseAnalysis after = analyzer.analyse(edited, QStringLiteral("de"));
        QCOMPARE(analyzer.linesPronounced(), pronounced + 1);
        QCOMPARE(before.stanzas.at(0).scheme(), QStringLiteral("ABAB"));
        QCOMPARE(after.stanzas.at(0).scheme(), QStringLiteral("ABAC"));
        QCOMPARE(after.stanzas.at(1).scheme(), QStringLiteral("ABAB"));
    }
};

QTEST_GUILESS_MAIN(VerseAnalysisTest)
#include "tst_verseanalysis.moc"
