#include "backup/BackupTestSupport.h"

#include "archive/PoemEdit.h"
#include "backup/BackupReader.h"
#include "import/CSVDateParser.h"
#include "import/CSVDelimiter.h"
#include "import/CSVDocument.h"
#include "import/CSVFileReader.h"
#include "import/CSVFlagParser.h"
#include "import/CSVHeader.h"
#include "import/CSVImporter.h"
#include "import/CSVParser.h"
#include "import/CSVTextDecoder.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

#include <sys/stat.h>

using namespace BackupTestSupport;

namespace {

const QDateTime importTime = utc(2026, 11, 22, 15, 0, 0);

QByteArray utf16(const QString &text, bool littleEndian)
{
    QByteArray bytes;
    for (const QChar c : text) {
        const char low = char(c.unicode() & 0xFF);
        const char high = char(c.unicode() >> 8);
        bytes.append(littleEndian ? low : high);
        bytes.append(littleEndian ? high : low);
    }
    return bytes;
}

QDateTime localDay(int year, int month, int day)
{
    return QDate(year, month, day).startOfDay();
}

QDateTime utcDay(int year, int month, int day)
{
    return QDateTime(QDate(year, month, day), QTime(0, 0), Qt::UTC);
}

QString safetyBackupFolder()
{
    return ApplicationSupport::directory() + QStringLiteral("/Safety Backups");
}

} // namespace

class CsvImportTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<TestArchive> m_archive;

    ArchiveContext &context() { return m_archive->context(); }

    QString csvFile(const QByteArray &bytes, const QString &name = QStringLiteral("liste.csv"))
    {
        return writeFileIn(m_archive->folder(), name, bytes);
    }

    CSVImportResult import(const QByteArray &bytes)
    {
        return CSVImporter::importGedichte(csvFile(bytes), context(), importTime);
    }

    PoemPtr poemTitled(const QString &title)
    {
        return context().fetch([&](const Poem &p) { return p.title() == title; }).value(0);
    }

    PoemPtr addPoem(const QString &title)
    {
        PoemPtr poem = BackupTestSupport::addPoem(context(), title, utc(2025, 5, 1, 10, 0, 0));
        PoemEdit::setTitle(*poem, title);
        return poem;
    }

private Q_SLOTS:
    void init() { m_archive = std::make_unique<TestArchive>(); }
    void cleanup() { m_archive.reset(); }

    void decodesEveryUsualEncoding_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("encoding");
        const QString text = QStringLiteral("Gedicht;Datum\r\nÜber Äpfel – „Nacht“;03.09.2021\r\n");
        QTest::newRow("UTF-8") << text.toUtf8() << QStringLiteral("UTF-8");
        QTest::newRow("UTF-8 BOM") << QByteArray("\xEF\xBB\xBF") + text.toUtf8() << QStringLiteral("UTF-8 (BOM)");
        QTest::newRow("UTF-16LE BOM") << QByteArray("\xFF\xFE") + utf16(text, true) << QStringLiteral("UTF-16LE (BOM)");
        QTest::newRow("UTF-16BE BOM") << QByteArray("\xFE\xFF") + utf16(text, false)
                                      << QStringLiteral("UTF-16BE (BOM)");
        QTest::newRow("UTF-16LE") << utf16(text, true) << QStringLiteral("UTF-16LE");
        QTest::newRow("UTF-16BE") << utf16(text, false) << QStringLiteral("UTF-16BE");
    }

    void decodesEveryUsualEncoding()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, encoding);
        const auto decoded = CSVTextDecoder::decodeText(bytes);
        QVERIFY2(decoded.ok(), qPrintable(decoded.errorMessage()));
        QCOMPARE(decoded->encoding, encoding);
        QCOMPARE(decoded->text, QStringLiteral("Gedicht;Datum\r\nÜber Äpfel – „Nacht“;03.09.2021\r\n"));
    }

    void refusesWhatIsNoTextOfAKnownEncoding_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("finding");
        // "Märchen" as Windows-1252 writes it: the ä is a lone 0xE4.
        QTest::newRow("Windows-1252") << QByteArray("Gedicht\nM\xE4rchen\n")
                                      << QStringLiteral("UTF-8 ungültig ab Byte 9 (0xE4)");
        QTest::newRow("overlong UTF-8") << QByteArray("ab\xC0\xAF") << QStringLiteral("ab Byte 2 (0xC0)");
        QTest::newRow("UTF-8 surrogate") << QByteArray("a\xED\xA0\x80") << QStringLiteral("ab Byte 1 (0xED)");
        QTest::newRow("cut UTF-8") << QByteArray("Gedicht\xC3") << QStringLiteral("ab Byte 7 (0xC3)");
        QTest::newRow("odd UTF-16") << QByteArray("\xFF\xFE"
                                                  "a\0b",
                                                  5)
                                    << QStringLiteral("BOM UTF-16LE");
        QTest::newRow("lone surrogate") << QByteArray("\xFE\xFF\xD8\x00\x00\x41", 6) << QStringLiteral("BOM UTF-16BE");
    }

    void refusesWhatIsNoTextOfAKnownEncoding()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, finding);
        const auto decoded = CSVTextDecoder::decodeText(bytes);
        QVERIFY(!decoded.ok());
        QVERIFY(decoded.errorMessage().startsWith(QStringLiteral("CSV Encoding nicht lesbar: ")));
        QVERIFY2(decoded.errorMessage().contains(finding), qPrintable(decoded.errorMessage()));
    }

    void textWithoutZeroBytesIsNeverTakenForUtf16()
    {
        // Even length, plain ASCII: pairs of letters must not turn into CJK characters.
        const auto decoded = CSVTextDecoder::decodeText("Titel;Datum\nAbendlied;2021-01-01\n");
        QCOMPARE(decoded->encoding, QStringLiteral("UTF-8"));
    }

    void detectsTheSeparatorOnTheHeaderLine_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("delimiter");
        QTest::newRow("semicolons, commas quoted below")
            << QStringLiteral("Gedicht;Kategorie;Datum\n\"Ach, du\";Familie;1.1.2020\n") << QStringLiteral(";");
        QTest::newRow("commas") << QStringLiteral("Titel,Datum,Podcast\n") << QStringLiteral(",");
        QTest::newRow("tabs") << QStringLiteral("Titel\tDatum, Ort\tPodcast") << QStringLiteral("\t");
        QTest::newRow("tie goes to the earlier") << QStringLiteral("a;b,c") << QStringLiteral(";");
        QTest::newRow("comma beats tab on a tie") << QStringLiteral("a,b\tc") << QStringLiteral(",");
        QTest::newRow("none") << QStringLiteral("Titel") << QStringLiteral(";");
        QTest::newRow("only the first line") << QStringLiteral("a;b\rc,d,e,f") << QStringLiteral(";");
    }

    void detectsTheSeparatorOnTheHeaderLine()
    {
        QFETCH(QString, text);
        QFETCH(QString, delimiter);
        QCOMPARE(QString(CSVDelimiter::detectDelimiter(text)), delimiter);
    }

    void parsesQuotedCells_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QList<QStringList>>("rows");
        QTest::newRow("separator and line breaks in quotes")
            << QStringLiteral("Titel;Notiz\n\"Ach; du\";\"eins\r\nzwei\rdrei\"\n")
            << QList<QStringList>{{"Titel", "Notiz"}, {"Ach; du", "eins\r\nzwei\rdrei"}};
        QTest::newRow("doubled quotes") << QStringLiteral("\"Das \"\"Lied\"\"\";x")
                                        << QList<QStringList>{{"Das \"Lied\"", "x"}};
        QTest::newRow("quote inside a cell is literal")
            << QStringLiteral("Das \"Lied\";x") << QList<QStringList>{{"Das \"Lied\"", "x"}};
        QTest::newRow("text after the closing quote")
            << QStringLiteral("\"Lied\" Nr. 2;x") << QList<QStringList>{{"Lied Nr. 2", "x"}};
        QTest::newRow("CR, LF and CRLF") << QStringLiteral("a\rb\nc\r\nd")
                                         << QList<QStringList>{{"a"}, {"b"}, {"c"}, {"d"}};
        QTest::newRow("empty lines and trailing break")
            << QStringLiteral("a;b\n\n\r\nc;d\r\n") << QList<QStringList>{{"a", "b"}, {"c", "d"}};
        QTest::newRow("empty cells kept") << QStringLiteral(";;\n\"\"") << QList<QStringList>{{"", "", ""}, {""}};
        QTest::newRow("unclosed quote runs to the end")
            << QStringLiteral("a\n\"b;c\nd") << QList<QStringList>{{"a"}, {"b;c\nd"}};
    }

    void parsesQuotedCells()
    {
        QFETCH(QString, text);
        QFETCH(QList<QStringList>, rows);
        QCOMPARE(CSVParser::parseCSV(text, QLatin1Char(';')).toList(), rows);
    }

    void fallsBackToPlainSplittingWhenQuotesSwallowTheFile()
    {
        const auto document = CSVDocument::read("\"Gedicht;Datum\nAbendlied;1.1.2020\nMorgen;\"2.2.2020\n");
        QCOMPARE(document->header, (QStringList{"\"Gedicht", "Datum"}));
        QCOMPARE(document->dataRows.toList(),
                 (QList<QStringList>{{"Abendlied", "1.1.2020"}, {"Morgen", "\"2.2.2020"}}));
        // The plain splitter keeps the stray quote: the title column is not found.
        QVERIFY(!document->column(u"gedicht"));
        QCOMPARE(*document->column(u"datum"), 1);
    }

    void normalisesHeaderNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("normalised");
        QTest::newRow("BOM and blanks") << QStringLiteral(" \uFEFFGedicht \n") << QStringLiteral("gedicht");
        QTest::newRow("umlauts") << QStringLiteral("Veröffentlicht") << QStringLiteral("veroeffentlicht");
        QTest::newRow("all replacements") << QStringLiteral("ÄÖÜ Maß") << QStringLiteral("aeoeue mass");
        QTest::newRow("no-break spaces") << QStringLiteral("Alanya\u00A0\u00A0 Anthologie")
                                         << QStringLiteral("alanya anthologie");
        QTest::newRow("runs of blanks") << QStringLiteral("a     b") << QStringLiteral("a b");
        QTest::newRow("punctuation kept") << QStringLiteral("Zeitkr./Pol.") << QStringLiteral("zeitkr./pol.");
    }

    void normalisesHeaderNames()
    {
        QFETCH(QString, name);
        QFETCH(QString, normalised);
        QCOMPARE(CSVHeader::normalizeHeaderName(name), normalised);
    }

    void findsColumnsByTheirFirstKey()
    {
        const QStringList header = {"Title", "Titel", "Datum", "Datum"};
        CSVDocument document;
        document.header = header;
        document.headerIndex = CSVHeader::makeHeaderIndexMap(header);
        const CSVTable rows = CSVParser::parseCSV(u" Englisch ; Deutsch ;d1\nnur eins", QLatin1Char(';'));
        // "titel" comes before "title" among the keys, whatever the column order.
        QCOMPARE(document.value(rows.row(0), {u"gedicht", u"titel", u"title"}), QStringLiteral("Deutsch"));
        QCOMPARE(*document.column(u"datum"), 2);
        QCOMPARE(document.value(rows.row(0), {u"podcast"}), QString());
        QCOMPARE(document.value(rows.row(1), {u"datum"}), QString());
    }

    void readsEveryDateForm_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QDateTime>("date");
        QTest::newRow("dd.MM.yyyy") << QStringLiteral("03.09.2021") << localDay(2021, 9, 3);
        QTest::newRow("dd.MM.yy") << QStringLiteral("03.09.21") << localDay(2021, 9, 3);
        QTest::newRow("d.MM.yyyy") << QStringLiteral("3.09.1999") << localDay(1999, 9, 3);
        QTest::newRow("d.MM.yy") << QStringLiteral("3.09.99") << localDay(1999, 9, 3);
        QTest::newRow("dd. MMM yy") << QStringLiteral("03. Sep 21") << localDay(2021, 9, 3);
        QTest::newRow("dd. MMM yyyy") << QStringLiteral("03. Oct 2021") << localDay(2021, 10, 3);
        QTest::newRow("d. MMM yy") << QStringLiteral("3. Dec 69") << localDay(2069, 12, 3);
        QTest::newRow("d. MMM yyyy") << QStringLiteral("3. may 2021") << localDay(2021, 5, 3);
        QTest::newRow("dd. MMM. yy") << QStringLiteral("12. Jan. 70") << localDay(1970, 1, 12);
        QTest::newRow("dd. MMM. yyyy") << QStringLiteral("12. FEB. 2020") << localDay(2020, 2, 12);
        QTest::newRow("d. MMM. yy") << QStringLiteral("3. Sep. 70") << localDay(1970, 9, 3);
        QTest::newRow("d. MMM. yyyy") << QStringLiteral("3. Sep. 2021") << localDay(2021, 9, 3);
        QTest::newRow("dd MMM yy") << QStringLiteral("29 Feb 24") << localDay(2024, 2, 29);
        QTest::newRow("dd MMM yyyy") << QStringLiteral("01 Aug 1985") << localDay(1985, 8, 1);
        QTest::newRow("yyyy-MM-dd") << QStringLiteral("2021-09-03") << localDay(2021, 9, 3);
        QTest::newRow("German month, year 70") << QStringLiteral("3. Sept. 70") << utcDay(1970, 9, 3);
        QTest::newRow("German month, year 21") << QStringLiteral("3. Sept. 21") << utcDay(2021, 9, 3);
        QTest::newRow("German month, no point") << QStringLiteral("24.Dezember 2020") << utcDay(2020, 12, 24);
        QTest::newRow("German month, März") << QStringLiteral("1. März 2022") << utcDay(2022, 3, 1);
        QTest::newRow("German month, Mrz") << QStringLiteral("1. mrz. 22") << utcDay(2022, 3, 1);
        QTest::newRow("German month, Okt") << QStringLiteral("31. Okt 1999") << utcDay(1999, 10, 31);
        QTest::newRow("trimmed") << QStringLiteral("  2021-09-03 \n") << localDay(2021, 9, 3);
    }

    void readsEveryDateForm()
    {
        QFETCH(QString, text);
        QFETCH(QDateTime, date);
        const auto parsed = CSVDateParser::parseDate(text);
        QVERIFY2(parsed, qPrintable(text));
        QCOMPARE(*parsed, date);
    }

    void leavesOtherDatesEmpty_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("blank") << QString();
        QTest::newRow("no such day") << QStringLiteral("31.02.2021");
        QTest::newRow("one-digit month") << QStringLiteral("3.9.2021");
        QTest::newRow("three-digit year") << QStringLiteral("03.09.202");
        QTest::newRow("German month unknown") << QStringLiteral("3. Foo 21");
        QTest::newRow("German month, day 32") << QStringLiteral("32. Mai 21");
        QTest::newRow("words") << QStringLiteral("Sommer 2020");
        QTest::newRow("trailing text") << QStringLiteral("2021-09-03 abends");
        QTest::newRow("other digits") << QStringLiteral("٣. Mai 21");
    }

    void leavesOtherDatesEmpty()
    {
        QFETCH(QString, text);
        QVERIFY(!CSVDateParser::parseDate(text));
    }

    void readsEveryFlagValue_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("flag"); // -1 unset
        QTest::addColumn<int>("published");
        for (const char *yes : {"1", "true", "yes", "ja", "j", "x", " X ", "Ja", "TRUE"})
            QTest::newRow(yes) << QString::fromUtf8(yes) << 1 << 1;
        for (const char *no : {"0", "false", "no", "nein", "n", "Nein "})
            QTest::newRow(no) << QString::fromUtf8(no) << 0 << 0;
        for (const char *marker : {"n. veröf.", "n. veröf", "N. Veroeff", "nicht veroeffentlicht"})
            QTest::newRow(marker) << QString::fromUtf8(marker) << -1 << 0;
        for (const char *unknown : {"", "vielleicht", "2", "nicht veröffentlicht"})
            QTest::newRow(unknown) << QString::fromUtf8(unknown) << -1 << -1;
    }

    void readsEveryFlagValue()
    {
        QFETCH(QString, text);
        QFETCH(int, flag);
        QFETCH(int, published);
        const auto asInt = [](std::optional<bool> value) { return value ? int(*value) : -1; };
        QCOMPARE(asInt(CSVFlagParser::parseBool(text)), flag);
        QCOMPARE(asInt(CSVFlagParser::parsePublished(text)), published);
    }

    void insertsAndUpdatesBehindASafetyBackup()
    {
        const PoemPtr mond = addPoem(QStringLiteral("Der Mond"));
        mond->setPublished(true);
        mond->setInPodcast(true);
        const PoemPtr trashed = addPoem(QStringLiteral("Abendlied"));
        trashed->setDeletedAt(utc(2026, 1, 1, 0, 0, 0));
        QVERIFY(context().save().ok());

        const CSVImportResult result = import("\xEF\xBB\xBFGedicht;Kategorie;Datum;Veröffentlicht;Podcast\n"
                                              "der MOND!;;;;\n"
                                              "Abendlied;Natur,,;1.01.2020;n. veröf.;x\n"
                                              ";Familie;;;\n"
                                              "Herbst;;irgendwann;ja;nein\n");
        QVERIFY2(!result.error, qPrintable(result.error.value_or(QString())));
        QCOMPARE(result.inserted, 2);
        QCOMPARE(result.updated, 1);
        QCOMPARE(result.skipped, 1);
        QCOMPARE(result.rows, 4);
        QCOMPARE(result.maxColumns, 5);
        QCOMPARE(result.delimiter, QStringLiteral(";"));
        QCOMPARE(result.categories, QStringList{"Natur"});
        const QString backupName = QStringLiteral("pre-csv-import-2026-11-22-160000.json");
        QCOMPARE(CSVImporter::statusLine(result),
                 QStringLiteral("CSV Import: 2 neu, 1 aktualisiert, 1 übersprungen. Zeilen: 4, Spalten: 5, "
                                "Trennzeichen: ;. Sicherheitsbackup: %1. Encoding: UTF-8 (BOM)")
                     .arg(backupName));

        // The backup holds the archive as it was, trash included.
        const auto backup = BackupReader::read(safetyBackupFolder() + QLatin1Char('/') + backupName);
        QVERIFY2(backup.ok(), qPrintable(backup.errorMessage()));
        QCOMPARE(backup->poems.size(), 2);

        // Blank cells kept what the poem had; the title is the row's spelling.
        QCOMPARE(mond->title(), QStringLiteral("der MOND!"));
        QCOMPARE(mond->titleNormalized(), QStringLiteral("der mond"));
        QCOMPARE(mond->category(), QStringLiteral("Lyrik"));
        QCOMPARE(mond->date(), utc(2025, 4, 28, 10, 0, 0));
        QVERIFY(mond->isPublished());
        QVERIFY(mond->inPodcast());
        QCOMPARE(mond->updatedAt(), importTime);

        // The poem in the trash stays as it was; the row made a new one.
        QCOMPARE(trashed->category(), QStringLiteral("Lyrik"));
        const QList<PoemPtr> abendlieder =
            context().fetch([](const Poem &p) { return p.title() == QStringLiteral("Abendlied") && !p.isInTrash(); });
        QCOMPARE(abendlieder.size(), 1);
        const PoemPtr abendlied = abendlieder.first();
        QVERIFY(abendlied->id());
        QCOMPARE(abendlied->category(), QStringLiteral("Natur"));
        QCOMPARE(abendlied->date(), localDay(2020, 1, 1));
        QVERIFY(!abendlied->isPublished());
        QVERIFY(abendlied->inPodcast());
        QCOMPARE(abendlied->createdAt(), importTime);
        QVERIFY(!abendlied->text());

        const PoemPtr herbst = poemTitled(QStringLiteral("Herbst"));
        QVERIFY(!herbst->date());
        QVERIFY(!herbst->category());
        QVERIFY(herbst->isPublished());
        QVERIFY(!herbst->inPodcast());

        // Saved: a fresh look at the store sees the same.
        QVERIFY(!context().hasChanges());
    }

    void readableFlagsAndDatesOverwriteTheStoredOnes()
    {
        const PoemPtr mond = addPoem(QStringLiteral("Der Mond"));
        mond->setPublished(true);
        QVERIFY(context().save().ok());
        const CSVImportResult result = import("Titel,Published,Podcast,Date,Kategorie\n"
                                              "Der Mond,nein,1,2021-09-03,Natur\n");
        QVERIFY(!result.error);
        QVERIFY(!mond->isPublished());
        QVERIFY(mond->inPodcast());
        QCOMPARE(mond->date(), localDay(2021, 9, 3));
        QCOMPARE(mond->category(), QStringLiteral("Natur"));
    }

    void laterRowsOfTheSameTitleUpdateTheNewPoem()
    {
        const CSVImportResult result = import("Gedicht;Kategorie;Podcast\nSturm;Natur;x\nsturm.;;0\n");
        QCOMPARE(result.inserted, 1);
        QCOMPARE(result.updated, 1);
        const QList<PoemPtr> poems = context().fetch();
        QCOMPARE(poems.size(), 1);
        QCOMPARE(poems.first()->title(), QStringLiteral("sturm."));
        QCOMPARE(poems.first()->category(), QStringLiteral("Natur"));
        QVERIFY(!poems.first()->inPodcast());
    }

    void takesTheCategoryFromItsColumns_data()
    {
        QTest::addColumn<QByteArray>("csv");
        QTest::addColumn<QString>("category");
        const QByteArray header = "Gedicht;Kategorie;Familie;Gefühle;Alanya\u00A0Anthologie\n";
        QTest::newRow("stated category wins") << header + "A;Natur;x;x;\n" << QStringLiteral("Natur");
        QTest::newRow("mark writes the column name") << header + "A;;;x;x\n" << QStringLiteral("Gefühle");
        QTest::newRow("first filled in list order") << header + "A;;;ja;x\n" << QStringLiteral("Gefühle");
        QTest::newRow("cell text written, commas dropped") << header + "A;, ;  Kinder,, ;;\n"
                                                           << QStringLiteral("Kinder");
        QTest::newRow("name with a no-break space") << header + "A;;;;1\n" << QStringLiteral("Alanya\u00A0Anthologie");
        QTest::newRow("none") << header + "A;;;;\n" << QString();
    }

    void takesTheCategoryFromItsColumns()
    {
        QFETCH(QByteArray, csv);
        QFETCH(QString, category);
        QVERIFY(!import(csv).error);
        QCOMPARE(poemTitled(QStringLiteral("A"))->category().value_or(QString()), category);
    }

    void importsUtf16AndOddHeaders_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QString text = QStringLiteral("Titel\u00A0\tVer\u00F6ffentlicht\u00A0\u00A0\tDatum\r\n"
                                            "Über Wasser\tx\t3. Sept. 70\r\n"
                                            "\"Ach\tdu\"\t0\t\r\n");
        QTest::newRow("UTF-16LE without BOM") << utf16(text, true);
        QTest::newRow("UTF-16BE without BOM") << utf16(text, false);
        // Saved twice with a mark: the second one is part of the first header cell.
        QTest::newRow("UTF-8, BOM in the header") << QByteArray("\xEF\xBB\xBF\xEF\xBB\xBF") + text.toUtf8();
    }

    void importsUtf16AndOddHeaders()
    {
        QFETCH(QByteArray, bytes);
        const CSVImportResult result = import(bytes);
        QVERIFY2(!result.error, qPrintable(result.error.value_or(QString())));
        QCOMPARE(result.inserted, 2);
        QCOMPARE(result.delimiter, QStringLiteral("\t"));
        QVERIFY(CSVImporter::statusLine(result).contains(QStringLiteral("Trennzeichen: \t.")));
        const PoemPtr wasser = poemTitled(QStringLiteral("Über Wasser"));
        QVERIFY(wasser->isPublished());
        QCOMPARE(wasser->date(), utcDay(1970, 9, 3));
        QVERIFY(!poemTitled(QStringLiteral("Ach\tdu"))->isPublished());
    }

    void semicolonHeaderWithCommasInQuotedTitles()
    {
        const CSVImportResult result = import("Gedicht;Kategorie;Datum\n"
                                              "\"Ach, du, mein Lied\";Familie;03.09.21\n"
                                              "\"Regen; Wind\nund Nacht\";;\n");
        QCOMPARE(result.delimiter, QStringLiteral(";"));
        QCOMPARE(result.inserted, 2);
        QCOMPARE(result.maxColumns, 3);
        QVERIFY(poemTitled(QStringLiteral("Ach, du, mein Lied")));
        QVERIFY(poemTitled(QStringLiteral("Regen; Wind\nund Nacht")));
    }

    void skipsRowsWithoutAUsableTitle()
    {
        const PoemPtr untitled = addPoem(QString());
        QVERIFY(context().save().ok());
        const CSVImportResult result = import("Titel;Kategorie\n;Natur\n  ;Natur\n---;Natur\nkurz\n");
        QCOMPARE(result.skipped, 3);
        QCOMPARE(result.inserted, 1);
        QCOMPARE(untitled->category(), QStringLiteral("Lyrik"));
        QVERIFY(!poemTitled(QStringLiteral("kurz"))->category());
    }

    void stopsBeforeWritingWhenThereIsNothingToImport_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("status");
        QTest::newRow("empty") << QByteArray() << QStringLiteral("CSV Fehler: Leere Datei | bytes=0");
        QTest::newRow("header only")
            << QByteArray("Gedicht;Datum\r\n")
            << QStringLiteral("CSV Fehler: Keine Datenzeilen. Diagnose: bytes=15 Header: Gedicht, Datum | "
                              "Encoding: UTF-8");
        QTest::newRow("line breaks only")
            << QByteArray("\n\r\n")
            << QStringLiteral("CSV Fehler: Keine Datenzeilen. Diagnose: bytes=3 (kein Header geparst) | "
                              "Encoding: UTF-8");
        // The status line names the header, cut to a readable length.
        const QString wideHeader = QStringLiteral("Keine Datenzeilen. Diagnose: bytes=1400000 Header: Spalte") +
                                   QStringLiteral(", Spalte").repeated(60);
        QTest::newRow("a header of 200,000 columns") << QByteArray("Spalte;").repeated(200000)
                                                     << QStringLiteral("CSV Fehler: ") + wideHeader.left(299) +
                                                            QChar(0x2026) + QStringLiteral(" | Encoding: UTF-8");
        // Windows-1252 is refused rather than guessed at: a wrong guess garbles titles.
        QTest::newRow("Windows-1252")
            << QByteArray("Gedicht\nM\xE4rchen\n")
            << QStringLiteral("CSV Fehler: CSV Encoding nicht lesbar: kein UTF-16, UTF-8 ungültig ab Byte 9 "
                              "(0xE4) | bytes=16");
    }

    void stopsBeforeWritingWhenThereIsNothingToImport()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, status);
        addPoem(QStringLiteral("Der Mond"));
        QVERIFY(context().save().ok());
        const CSVImportResult result = import(bytes);
        QVERIFY(result.error);
        QCOMPARE(CSVImporter::statusLine(result), status);
        QCOMPARE(context().fetch().size(), 1);
        QVERIFY(!QFileInfo::exists(safetyBackupFolder()));
    }

    void importsNothingWhenTheSafetyBackupFails()
    {
        const PoemPtr mond = addPoem(QStringLiteral("Der Mond"));
        QVERIFY(context().save().ok());
        const QString csv = csvFile("Gedicht;Kategorie\nDer Mond;Natur\nNeu;Natur\n");
        // A file where the folder has to go stops even root.
        QVERIFY(writeFile(safetyBackupFolder(), "kein Ordner"));
        const CSVImportResult result = CSVImporter::importGedichte(csv, context(), importTime);
        QVERIFY(result.error);
        QVERIFY2(CSVImporter::statusLine(result).startsWith(
                     QStringLiteral("CSV-Import abgebrochen: Sicherheitsbackup fehlgeschlagen (")),
                 qPrintable(CSVImporter::statusLine(result)));
        QCOMPARE(context().fetch().size(), 1);
        QCOMPARE(mond->category(), QStringLiteral("Lyrik"));
        QVERIFY(!context().hasChanges());
    }

    void reportsFilesItCannotRead()
    {
        const CSVImportResult missing =
            CSVImporter::importGedichte(m_archive->path(QStringLiteral("fehlt.csv")), context(), importTime);
        QCOMPARE(CSVImporter::statusLine(missing),
                 QStringLiteral("Datei konnte nicht gelesen werden: Datei nicht gefunden: fehlt.csv | "
                                "Security-Scope=nein"));
        const CSVImportResult folder = CSVImporter::importGedichte(m_archive->folder(), context(), importTime);
        QVERIFY(CSVImporter::statusLine(folder).startsWith(
            QStringLiteral("Datei konnte nicht gelesen werden: Keine gewöhnliche Datei: ")));
        const QString fifo = m_archive->path(QStringLiteral("pipe.csv"));
        QCOMPARE(mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
        const CSVImportResult pipe = CSVImporter::importGedichte(fifo, context(), importTime);
        QVERIFY(CSVImporter::statusLine(pipe).contains(QStringLiteral("Keine gewöhnliche Datei: pipe.csv")));
        QVERIFY(context().fetch().isEmpty());
    }

    void refusesFilesAboveTheLimitWhileReading()
    {
        const QString path = csvFile(QByteArray(3 * 1024 * 1024 + 1, 'a'));
        const auto tooLarge = CSVFileReader::read(path, 3 * 1024 * 1024);
        QVERIFY(!tooLarge.ok());
        QCOMPARE(tooLarge.errorMessage(), QStringLiteral("Die Datei ist größer als 3 MB und wird nicht gelesen."));
        QCOMPARE(CSVFileReader::read(path, 4 * 1024 * 1024)->size(), 3 * 1024 * 1024 + 1);
    }
};

QTEST_GUILESS_MAIN(CsvImportTest)
#include "tst_csvimport.moc"
