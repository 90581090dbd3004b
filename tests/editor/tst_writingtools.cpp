#include "EditorTestSupport.h"

#include "archive/AppPreferences.h"
#include "archive/ApplicationSupport.h"
#include "archive/PersistenceController.h"
#include "archive/PoemFactory.h"
#include "editor/AppTheme.h"
#include "editor/DisplayedPoemText.h"
#include "editor/PoemFooter.h"
#include "editor/PoemRichText.h"
#include "editor/PoemTextSync.h"
#include "editor/PoemTextWriter.h"
#include "editor/RhymeProvider.h"
#include "editor/TextFinder.h"
#include "editor/WritingStats.h"

#include <QTemporaryDir>
#include <QTest>
#include <QTextCursor>

using namespace EditorTestSupport;

class WritingToolsTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;

private Q_SLOTS:
    void initTestCase() { ApplicationSupport::setDirectory(m_dir.path()); }

    void statistics_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("words");
        QTest::addColumn<int>("characters");
        QTest::addColumn<int>("lines");
        QTest::addColumn<int>("stanzas");
        QTest::newRow("empty") << QString() << 0 << 0 << 0 << 0;
        QTest::newRow("one empty line between") << QStringLiteral("Mond\n\nStern\n\nNacht") << 3 << 14 << 3 << 3;
        QTest::newRow("three empty lines between") << QStringLiteral("eins\n\nzwei\n\n\n\ndrei") << 3 << 12 << 3 << 3;
        QTest::newRow("a line holding a space does not split") << QStringLiteral("oben\n \nunten") << 2 << 9 << 2 << 1;
        QTest::newRow("carriage returns split lines, not stanzas") << QStringLiteral("a\r\n\r\nb") << 2 << 2 << 2 << 1;
        QTest::newRow("words split at every non-letter")
            << QStringLiteral("geht's, Zug-Fahrt 2026!") << 5 << 21 << 1 << 1;
        QTest::newRow("tabs and other separators are not characters")
            << QStringLiteral("Über\tdem\u2028Fluss\u00A0ß") << 4 << 13 << 2 << 1;
        QTest::newRow("combining marks stay inside the word") << QStringLiteral("Cafe\u0301 🌙") << 1 << 6 << 1 << 1;
        QTest::newRow("only blanks") << QStringLiteral("  \n\t\n\n ") << 0 << 0 << 0 << 0;
    }

    void statistics()
    {
        QFETCH(QString, text);
        QFETCH(int, words);
        QFETCH(int, characters);
        QFETCH(int, lines);
        QFETCH(int, stanzas);
        const WritingStats stats = WritingStats::of(text);
        QCOMPARE(stats.words, words);
        QCOMPARE(stats.characters, characters);
        QCOMPARE(stats.lines, lines);
        QCOMPARE(stats.stanzas, stanzas);
    }

    void findIgnoresCaseAndDiacriticsAndWrapsRound()
    {
        auto document = PoemRichText::fromPlainText(QStringLiteral("Müller am Fluss\nMUELLER, muller und Muller"));
        QTextCursor cursor(document.get());
        QVERIFY(TextFinder::find(cursor, QStringLiteral("muller"), false).found);
        QCOMPARE(cursor.selectionStart(), 0);
        QCOMPARE(cursor.selectedText(), QStringLiteral("Müller"));
        QVERIFY(TextFinder::find(cursor, QStringLiteral("muller"), false).found);
        QCOMPARE(cursor.selectedText(), QStringLiteral("muller"));
        QVERIFY(TextFinder::find(cursor, QStringLiteral("muller"), false).found);
        QCOMPARE(cursor.selectedText(), QStringLiteral("Muller"));
        // After the last match, the next one is the first.
        QVERIFY(TextFinder::find(cursor, QStringLiteral("muller"), false).found);
        QCOMPARE(cursor.selectionStart(), 0);
        // Backwards from the first wraps to the last.
        QVERIFY(TextFinder::find(cursor, QStringLiteral("MÜLLER"), true).found);
        QCOMPARE(cursor.selectedText(), QStringLiteral("Muller"));
        QVERIFY(TextFinder::find(cursor, QStringLiteral("MÜLLER"), true).found);
        QCOMPARE(cursor.selectedText(), QStringLiteral("muller"));
    }

    void findStatuses()
    {
        auto document = PoemRichText::fromPlainText(QStringLiteral("Stille"));
        QTextCursor cursor(document.get());
        QCOMPARE(TextFinder::find(cursor, QString(), false).status, QStringLiteral("Kein Suchbegriff"));
        QCOMPARE(TextFinder::find(cursor, QStringLiteral("Lärm"), false).status, QStringLiteral("Nicht gefunden"));
        QVERIFY(!cursor.hasSelection());
        QCOMPARE(TextFinder::replaceAll(cursor, QStringLiteral("Lärm"), QStringLiteral("x")).status,
                 QStringLiteral("0 Treffer ersetzt"));
        QCOMPARE(TextFinder::replaceCurrent(cursor, QString(), QStringLiteral("x")).status,
                 QStringLiteral("Kein Suchbegriff"));
    }

    void replaceCurrentOnlyReplacesAMatchingSelection()
    {
        auto document = PoemRichText::fromPlainText(QStringLiteral("Rose und rose"));
        QTextCursor cursor(document.get());
        // Nothing selected: the first call selects the next match.
        FindOutcome outcome = TextFinder::replaceCurrent(cursor, QStringLiteral("rosé"), QStringLiteral("Tulpe"));
        QVERIFY(outcome.found);
        QCOMPARE(outcome.replaced, 0);
        QCOMPARE(cursor.selectedText(), QStringLiteral("Rose"));
        outcome = TextFinder::replaceCurrent(cursor, QStringLiteral("rosé"), QStringLiteral("Tulpe"));
        QCOMPARE(outcome.status, QStringLiteral("Ersetzt"));
        QCOMPARE(PoemRichText::plainText(*document), QStringLiteral("Tulpe und rose"));
    }

    void replaceAllKeepsTheAttributesOfEachMatchInOneUndoStep()
    {
        auto document = PoemRichText::fromPlainText(QStringLiteral("Nacht, nacht und NACHT"));
        QTextCursor bold(document.get());
        bold.setPosition(7);
        bold.setPosition(12, QTextCursor::KeepAnchor);
        QTextCharFormat format;
        format.setFontWeight(QFont::Bold);
        bold.mergeCharFormat(format);

        QTextCursor cursor(document.get());
        const FindOutcome outcome = TextFinder::replaceAll(cursor, QStringLiteral("nächt"), QStringLiteral("Tag"));
        QCOMPARE(outcome.replaced, 3);
        QCOMPARE(outcome.status, QStringLiteral("3 Treffer ersetzt"));
        QCOMPARE(PoemRichText::plainText(*document), QStringLiteral("Tag, Tag und Tag"));
        QCOMPARE(formatOf(*document, QStringLiteral("Tag,")).fontWeight(), int(QFont::Normal));
        QTextCursor probe(document.get());
        probe.setPosition(6);
        QCOMPARE(probe.charFormat().fontWeight(), int(QFont::Bold));
        QCOMPARE(familyOf(probe.charFormat()), QStringLiteral("Roboto"));

        QTextCursor single(document.get());
        QCOMPARE(TextFinder::replaceAll(single, QStringLiteral("und"), QStringLiteral("&")).status,
                 QStringLiteral("1 Treffer ersetzt"));
        document->undo();
        document->undo();
        QCOMPARE(PoemRichText::plainText(*document), QStringLiteral("Nacht, nacht und NACHT"));
    }

    void foldingMapsBackToTheOriginalText()
    {
        const FoldedText text(QStringLiteral("Straße, STRASSE und strasse"));
        const QList<TextRange> matches = text.matches(QStringLiteral("strasse"));
        QCOMPARE(matches.size(), 2);
        QCOMPARE(matches.at(0), (TextRange{8, 15}));
        QCOMPARE(matches.at(1), (TextRange{20, 27}));
        QCOMPARE(FoldedText(QStringLiteral("Ünïcödé")).matches(QStringLiteral("unicode")).value(0), (TextRange{0, 7}));
        QVERIFY(FoldedText(QStringLiteral("abc")).matches(QString()).isEmpty());
    }

    void footer_data()
    {
        QTest::addColumn<QString>("author");
        QTest::addColumn<QString>("place");
        QTest::addColumn<QString>("footer");
        QTest::newRow("author and place") << QStringLiteral(" Anna Berg \n") << QStringLiteral(" Weimar ")
                                          << QStringLiteral("© Anna Berg\nWeimar, 03.04.2026");
        QTest::newRow("author only") << QStringLiteral("Anna Berg") << QString()
                                     << QStringLiteral("© Anna Berg\n03.04.2026");
        QTest::newRow("place only") << QStringLiteral("  ") << QStringLiteral("Weimar")
                                    << QStringLiteral("Weimar, 03.04.2026");
        QTest::newRow("neither") << QString() << QStringLiteral("\n") << QStringLiteral("03.04.2026");
    }

    void footer()
    {
        QFETCH(QString, author);
        QFETCH(QString, place);
        QFETCH(QString, footer);
        QCOMPARE(PoemFooter::standardPoemFooter(author, place, QDate(2026, 4, 3)), footer);
    }

    void footerReadsThePreferences()
    {
        QVERIFY(AppPreferences::setPoemFooterAuthor(QStringLiteral("Ida")).ok());
        QVERIFY(AppPreferences::setPoemFooterPlace(QStringLiteral("Jena")).ok());
        const QString today = QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy"));
        QCOMPARE(PoemFooter::standardPoemFooter(), QStringLiteral("© Ida\nJena, ") + today);
    }

    void rhymeWord_data()
    {
        QTest::addColumn<QString>("selection");
        QTest::addColumn<QString>("word");
        QTest::newRow("comma after the word") << QStringLiteral("Herz,") << QStringLiteral("Herz");
        QTest::newRow("blanks around") << QStringLiteral("  \n Schmerz \t") << QStringLiteral("Schmerz");
        QTest::newRow("first run of letters") << QStringLiteral("„März“ und Scherz") << QStringLiteral("März");
        QTest::newRow("apostrophe ends the word") << QStringLiteral("geht's") << QStringLiteral("geht");
        QTest::newRow("no letters") << QStringLiteral(" 2026 — ") << QString();
        QTest::newRow("decomposed umlaut") << QStringLiteral("u\u0308ber,") << QStringLiteral("\u00FCber");
        QTest::newRow("mark without a composed form") << QStringLiteral("q\u0308e!") << QStringLiteral("q\u0308e");
    }

    void rhymeWord()
    {
        QFETCH(QString, selection);
        QFETCH(QString, word);
        QCOMPARE(RhymeLookup::normalizedRhymeWord(selection), word);
    }

    void rhymeAddresses_data()
    {
        QTest::addColumn<int>("provider");
        QTest::addColumn<QString>("word");
        QTest::addColumn<QByteArray>("url");
        QTest::newRow("umlaut in a path") << int(RhymeProvider::reimsuche) << QStringLiteral("Größe")
                                          << QByteArray("https://www.reimsuche.de/reime/Gr%C3%B6%C3%9Fe");
        QTest::newRow("page name") << int(RhymeProvider::wasReimtSichAuf) << QStringLiteral("Liebe")
                                   << QByteArray("https://www.was-reimt-sich-auf.de/Liebe.html");
        QTest::newRow("query value") << int(RhymeProvider::reimOMat) << QStringLiteral("Süß")
                                     << QByteArray("https://www.reim-o-mat.de/reimApp.php?reimwort=S%C3%BC%C3%9F");
        QTest::newRow("path breakers") << int(RhymeProvider::reimsuche) << QStringLiteral("a/../b?c#d[e]@f")
                                       << QByteArray("https://www.reimsuche.de/reime/a%2F..%2Fb%3Fc%23d%5Be%5D%40f");
        QTest::newRow("query breakers") << int(RhymeProvider::reimOMat) << QStringLiteral("x&y=z+1,2;3!$'()* %")
                                        << QByteArray("https://www.reim-o-mat.de/reimApp.php?reimwort="
                                                      "x%26y%3Dz%2B1%2C2%3B3%21%24%27%28%29%2A%20%25");
    }

    void rhymeAddresses()
    {
        QFETCH(int, provider);
        QFETCH(QString, word);
        QFETCH(QByteArray, url);
        const auto address = RhymeLookup::url(RhymeProvider(provider), word);
        QVERIFY(address);
        QCOMPARE(address->toEncoded(), url);
        QVERIFY(!RhymeLookup::url(RhymeProvider(provider), QString()));
    }

    void rhymeProviderNames()
    {
        QCOMPARE(rhymeProviderFromIdentifier(QString()), RhymeProvider::reimsuche);
        QCOMPARE(rhymeProviderFromIdentifier(QStringLiteral("unbekannt")), RhymeProvider::reimsuche);
        QCOMPARE(rhymeProviderFromIdentifier(rawValue(RhymeProvider::reimOMat)), RhymeProvider::reimOMat);
        QCOMPARE(rhymeProviderFromName(QStringLiteral("WASREIMTSICHAUF")), RhymeProvider::wasReimtSichAuf);
        QVERIFY(!rhymeProviderFromName(QStringLiteral("reimlexikon")));
        QVERIFY(AppPreferences::setDefaultRhymeProvider(rawValue(RhymeProvider::wasReimtSichAuf)).ok());
        QCOMPARE(defaultRhymeProvider(), RhymeProvider::wasReimtSichAuf);
    }

    void reloadRule()
    {
        PoemTextSync sync;
        const std::optional<QByteArray> data = QByteArray("{\\rtf1 a}");
        const std::optional<QString> text = QStringLiteral("a");
        QVERIFY(sync.needsReload(data, text, QString()));
        sync.noteLoaded(data, text, QString());
        QVERIFY(!sync.needsReload(data, text, QString()));
        QVERIFY(sync.needsReload(data, QStringLiteral("b"), QString()));
        QVERIFY(sync.needsReload(QByteArray("{\\rtf1 b}"), text, QString()));
        QVERIFY(sync.needsReload(data, text, QStringLiteral("Mond")));
        // Nil and empty are the same to the editor.
        sync.noteLoaded(std::nullopt, std::nullopt, QString());
        QVERIFY(!sync.needsReload(QByteArray(), QString(), QString()));
        sync.setUpdating(true);
        QVERIFY(!sync.needsReload(data, text, QStringLiteral("Mond")));
        sync.setUpdating(false);
        sync.noteWritten(*data, *text);
        QVERIFY(!sync.needsReload(data, text, QString()));
    }

    void displayedText_data()
    {
        QTest::addColumn<bool>("hasRich");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("editable");
        QTest::addColumn<int>("source");
        QTest::addColumn<QString>("shown");
        QTest::newRow("rich text with empty plain text")
            << true << QString() << false << int(DisplayedPoemText::Source::richText) << QStringLiteral("Reich");
        QTest::newRow("plain text") << false << QStringLiteral("Schlicht") << false
                                    << int(DisplayedPoemText::Source::plainText) << QStringLiteral("Schlicht");
        QTest::newRow("nothing, read-only")
            << false << QString() << false << int(DisplayedPoemText::Source::placeholder)
            << QStringLiteral("— kein Text —");
        QTest::newRow("nothing, editable")
            << false << QString() << true << int(DisplayedPoemText::Source::plainText) << QString();
    }

    void displayedText()
    {
        QFETCH(bool, hasRich);
        QFETCH(QString, text);
        QFETCH(bool, editable);
        QFETCH(int, source);
        QFETCH(QString, shown);
        DisplayedPoemText::Input input;
        if (hasRich)
            input.richTextData = *PoemRichText::encodePlainText(QStringLiteral("Reich"));
        input.text = text;
        input.isEditable = editable;
        const auto output = DisplayedPoemText::build(input);
        QCOMPARE(int(output.source), source);
        QCOMPARE(PoemRichText::plainText(*output.document), shown);
        if (output.source == DisplayedPoemText::Source::placeholder)
            QCOMPARE(formatOf(*output.document, shown).foreground().color(), AppTheme::secondaryLabel());
    }

    void readOnlyViewOverlaysTheAppearanceColourAndMarksTheSearch()
    {
        auto stored = PoemRichText::fromPlainText(QStringLiteral("Ein Mönch und ein Mönchlein"));
        QTextCursor cursor(stored.get());
        cursor.setPosition(4);
        cursor.setPosition(9, QTextCursor::KeepAnchor);
        QTextCharFormat red;
        red.setForeground(QColor(255, 0, 0));
        red.setFontWeight(QFont::Bold);
        cursor.mergeCharFormat(red);
        DisplayedPoemText::Input input;
        input.richTextData = *PoemRichText::encode(*stored);
        input.isEditable = false;
        input.appearance = EditorAppearance::paper;
        input.highlight = QStringLiteral(" monch ");

        const auto output = DisplayedPoemText::build(input);
        QTextCursor probe(output.document.get());
        probe.setPosition(2);
        QCOMPARE(probe.charFormat().foreground().color(), textColor(EditorAppearance::paper));
        QVERIFY(!probe.charFormat().hasProperty(QTextFormat::BackgroundBrush));
        probe.setPosition(6);
        QCOMPARE(probe.charFormat().background().color(), DisplayedPoemText::highlightBackground());
        QCOMPARE(probe.charFormat().foreground().color(), DisplayedPoemText::highlightForeground());
        QCOMPARE(probe.charFormat().fontWeight(), int(QFont::Bold));
        probe.setPosition(20);
        QCOMPARE(probe.charFormat().background().color(), DisplayedPoemText::highlightBackground());

        input.isEditable = true;
        const auto editable = DisplayedPoemText::build(input);
        QTextCursor stays(editable.document.get());
        stays.setPosition(6);
        QCOMPARE(stays.charFormat().foreground().color(), QColor(255, 0, 0));
        QVERIFY(!stays.charFormat().hasProperty(QTextFormat::BackgroundBrush));
    }

    void writerStoresRichTextAndTouchesPlainTextOnlyWhenItDiffers()
    {
        auto controller = PersistenceController::inMemory();
        ArchiveContext &context = controller->viewContext();
        const QDateTime created(QDate(2026, 1, 1), QTime(8, 0), Qt::UTC);
        PoemPtr poem = PoemFactory::makeNewPoem(context, created);
        QVERIFY(context.save().ok());

        const QDateTime first(QDate(2026, 1, 1), QTime(9, 0), Qt::UTC);
        QVERIFY(PoemTextWriter::write(context, *poem, "{\\rtf1 eins}", QStringLiteral("eins"), first).ok());
        QCOMPARE(poem->richTextData(), std::optional<QByteArray>("{\\rtf1 eins}"));
        QCOMPARE(poem->text(), std::optional<QString>(QStringLiteral("eins")));
        QCOMPARE(poem->updatedAt(), std::optional<QDateTime>(first));
        QVERIFY(!context.hasChanges());

        const QDateTime second = first.addSecs(60);
        QVERIFY(PoemTextWriter::write(context, *poem, "{\\rtf1\\b eins}", QStringLiteral("eins"), second).ok());
        QCOMPARE(poem->richTextData(), std::optional<QByteArray>("{\\rtf1\\b eins}"));
        QCOMPARE(poem->updatedAt(), std::optional<QDateTime>(second));
    }
};

QTEST_MAIN(WritingToolsTest)
#include "tst_writingtools.moc"
