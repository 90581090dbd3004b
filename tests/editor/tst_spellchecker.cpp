#include "archive/ApplicationSupport.h"
#include "editor/PoemRichText.h"
#include "editor/PoemTextHighlighter.h"
#include "editor/SpellChecker.h"

#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>

namespace {

QList<QTextLayout::FormatRange> marksOf(const QTextBlock &block)
{
    return block.layout()->formats();
}

} // namespace

class SpellCheckerTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;

private Q_SLOTS:
    void initTestCase()
    {
        ApplicationSupport::setDirectory(m_dir.path());
        if (!SpellChecker(QStringLiteral("de")).isAvailable())
            QSKIP("the German Hunspell dictionary is not installed");
    }

    void germanWordsAndSuggestions()
    {
        SpellChecker checker(QStringLiteral("de"));
        QVERIFY(checker.isCorrect(QStringLiteral("Straße")));
        QVERIFY(checker.isCorrect(QStringLiteral("Mondlicht")));
        QVERIFY(checker.isCorrect(QStringLiteral("Und")));
        QVERIFY(!checker.isCorrect(QStringLiteral("Strasze")));
        QVERIFY(checker.suggestions(QStringLiteral("Sehnsuht")).contains(QStringLiteral("Sehnsucht")));
        // Numbers and single letters are not words to check.
        QVERIFY(checker.isCorrect(QStringLiteral("2026")));
        QVERIFY(checker.isCorrect(QStringLiteral("x")));
        checker.ignore(QStringLiteral("Strasze"));
        QVERIFY(checker.isCorrect(QStringLiteral("Strasze")));
    }

    void anEnglishPoemIsCheckedInEnglish()
    {
        SpellChecker checker(QStringLiteral("en"));
        QVERIFY(checker.isAvailable());
        QVERIFY(checker.isCorrect(QStringLiteral("moonlight")));
        QVERIFY(!checker.isCorrect(QStringLiteral("Mondlicht")));
    }

    void eachParagraphIsCheckedInItsOwnLanguage()
    {
        SpellChecker checker;
        QCOMPARE(checker.language(), QStringLiteral("de"));
        const QString english = QStringLiteral("The leaves are fallling in the quiet night");
        QCOMPARE(checker.paragraphLanguage(english), QStringLiteral("en"));
        const QList<TextRange> englishMistakes = checker.misspellings(english);
        QCOMPARE(englishMistakes.size(), 1);
        QCOMPARE(english.mid(englishMistakes.first().start, englishMistakes.first().length()),
                 QStringLiteral("fallling"));
        QVERIFY(!checker.isCorrect(QStringLiteral("fallling"), english));
        QVERIFY(checker.suggestions(QStringLiteral("fallling"), 8, english).contains(QStringLiteral("falling")));

        const QString german = QStringLiteral("Die Blätter fallen leize in der stillen Nacht");
        QCOMPARE(checker.paragraphLanguage(german), QStringLiteral("de"));
        const QList<TextRange> germanMistakes = checker.misspellings(german);
        QCOMPARE(germanMistakes.size(), 1);
        QCOMPARE(german.mid(germanMistakes.first().start, germanMistakes.first().length()), QStringLiteral("leize"));

        // Where the words give no sign, the poem's own language holds.
        QCOMPARE(checker.paragraphLanguage(QStringLiteral("Hand")), QStringLiteral("de"));
        QCOMPARE(checker.paragraphLanguage(QString()), QStringLiteral("de"));
    }

    void misspellingsAreFoundInOrderAndWrapRound()
    {
        SpellChecker checker(QStringLiteral("de"));
        const QString text = QStringLiteral("Fehlr im Gedicht und noch ein Fehlerr.");
        const QList<TextRange> wrong = checker.misspellings(text);
        QCOMPARE(wrong.size(), 2);
        QCOMPARE(text.mid(wrong.at(0).start, wrong.at(0).length()), QStringLiteral("Fehlr"));
        QCOMPARE(text.mid(wrong.at(1).start, wrong.at(1).length()), QStringLiteral("Fehlerr"));
        QCOMPARE(checker.nextMisspelling(text, 6)->start, wrong.at(1).start);
        QCOMPARE(checker.nextMisspelling(text, wrong.at(1).end)->start, 0);
        QVERIFY(!checker.nextMisspelling(QStringLiteral("Alles richtig"), 0));
    }

    void highlighterUnderlinesInTheLayoutOnly()
    {
        SpellChecker checker(QStringLiteral("de"));
        auto document = PoemRichText::fromPlainText(QStringLiteral("Ein Fehlr hier\nder Mond"));
        PoemTextHighlighter highlighter(document.get(), &checker);
        highlighter.rehighlight();
        const auto marks = marksOf(document->begin());
        QCOMPARE(marks.size(), 1);
        QCOMPARE(marks.first().start, 4);
        QCOMPARE(marks.first().length, 5);
        QCOMPARE(marks.first().format.underlineStyle(), QTextCharFormat::SpellCheckUnderline);

        highlighter.setSearchHighlight(QStringLiteral("mond"));
        const auto second = marksOf(document->begin().next());
        QVERIFY(!second.isEmpty());
        QCOMPARE(second.first().start, 4);
        QCOMPARE(second.first().format.background().color(), QColor(255, 204, 0));

        // Nothing of it is in the text itself.
        const auto encoded = PoemRichText::encode(*document);
        QVERIFY(!encoded->contains("\\ul"));
        highlighter.setSpellCheckingEnabled(false);
        QVERIFY(marksOf(document->begin()).isEmpty());
    }
};

QTEST_MAIN(SpellCheckerTest)
#include "tst_spellchecker.moc"
