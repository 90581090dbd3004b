#include "matching/FuzzyMatcher.h"
#include "matching/TitleKey.h"

#include <QTest>

class TitleKeyTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void normalizeGivesTheTitleKey_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("key");
        QTest::newRow("punctuation and doubled spaces")
            << QStringLiteral("  Der Mond,  der Mond!  ") << QStringLiteral("der mond der mond");
        QTest::newRow("umlaut and hyphen") << QStringLiteral("Über-Fluss") << QStringLiteral("ueber fluss");
        QTest::newRow("sharp s and underscore") << QStringLiteral("Straße_2") << QStringLiteral("strasse 2");
        QTest::newRow("other accents stay") << QStringLiteral("Café") << QStringLiteral("café");
        QTest::newRow("upper-case umlauts") << QStringLiteral("ÄRGER") << QStringLiteral("aerger");
        QTest::newRow("capital sharp s") << QStringLiteral("FUẞ") << QStringLiteral("fuss");
        QTest::newRow("Fuss") << QStringLiteral("Fuss") << QStringLiteral("fuss");
        QTest::newRow("decomposed umlaut") << QStringLiteral("Mu\u0308ller") << QStringLiteral("mueller");
        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("only punctuation") << QStringLiteral("— … !?") << QString();
        QTest::newRow("line break") << QStringLiteral("Nacht\nLied") << QStringLiteral("nacht lied");
        QTest::newRow("tab stays") << QStringLiteral("Nacht\tLied") << QStringLiteral("nacht\tlied");
        QTest::newRow("no-break space stays") << QStringLiteral("a\u00A0 b") << QStringLiteral("a\u00A0 b");
        QTest::newRow("emoji and apostrophe") << QStringLiteral("Mond🌙 ist’s") << QStringLiteral("mond ist s");
        QTest::newRow("other scripts") << QStringLiteral("Ἔρως 愛") << QStringLiteral("ἔρως 愛");
        QTest::newRow("digits and prefix kept") << QStringLiteral("01 - Lied.docx") << QStringLiteral("01 lied docx");
    }

    void normalizeGivesTheTitleKey()
    {
        QFETCH(QString, title);
        QFETCH(QString, key);
        QCOMPARE(normalize(title), key);
    }

    void tokenizeKeepsSignificantWords()
    {
        QCOMPARE(tokenize(normalize(QStringLiteral("Ein Tag"))), QSet<QString>{QStringLiteral("tag")});
        QVERIFY(tokenize(normalize(QStringLiteral("A und O"))).isEmpty());
        QVERIFY(tokenize(normalize(QStringLiteral("—"))).isEmpty());
        QCOMPARE(tokenize(normalize(QStringLiteral("Nacht\nLied"))),
                 (QSet<QString>{QStringLiteral("nacht"), QStringLiteral("lied")}));
        QCOMPARE(tokenize(normalize(QStringLiteral("Nacht\tLied"))).size(), 1);
        QCOMPARE(tokenize(QStringLiteral(" der  mond 7 mond keine ")), QSet<QString>{QStringLiteral("mond")});
        // A letter with a combining accent is one character and is dropped like "a".
        QVERIFY(tokenize(QStringLiteral("e\u0301 o")).isEmpty());
        QCOMPARE(tokenize(QStringLiteral("e\u0301e")), QSet<QString>{QStringLiteral("e\u0301e")});
    }

    void fuzzyKeyRemovesNoiseBeforePunctuation_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("key");
        QTest::newRow("noise words") << QStringLiteral("Herbst final v2") << QStringLiteral("herbst");
        QTest::newRow("underscore hides noise")
            << QStringLiteral("Herbst_final_v2") << QStringLiteral("herbst final v2");
        QTest::newRow("umlaut becomes space") << QStringLiteral("Über") << QStringLiteral("ber");
        QTest::newRow("mädchen") << QStringLiteral("Mädchen") << QStringLiteral("m dchen");
        QTest::newRow("hyphen is a boundary") << QStringLiteral("Lied-Kopie (Scan)") << QStringLiteral("lied");
        QTest::newRow("noise inside a word stays")
            << QStringLiteral("Neuland Finale") << QStringLiteral("neuland finale");
        QTest::newRow("neu does not cut neue") << QStringLiteral("Die neue Zeit") << QStringLiteral("die zeit");
        QTest::newRow("whitespace runs") << QStringLiteral(" a\t\n b ") << QStringLiteral("a b");
        QTest::newRow("emoji") << QStringLiteral("Mond🌙Licht") << QStringLiteral("mond licht");
    }

    void fuzzyKeyRemovesNoiseBeforePunctuation()
    {
        QFETCH(QString, text);
        QFETCH(QString, key);
        QCOMPARE(FuzzyMatcher::normalize(text), key);
    }

    void fuzzyTokensKeepEveryWord()
    {
        QCOMPARE(FuzzyMatcher::tokens(FuzzyMatcher::normalize(QStringLiteral("Mädchen und der Mond"))),
                 (QSet<QString>{QStringLiteral("m"), QStringLiteral("dchen"), QStringLiteral("und"),
                                QStringLiteral("der"), QStringLiteral("mond")}));
        QVERIFY(FuzzyMatcher::tokens(QString()).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TitleKeyTest)
#include "tst_titlekey.moc"
