#include "editor/PoemRichText.h"
#include "editor/PoemTextDocument.h"
#include "editor/WriterTypingAttributes.h"
#include "import/DocumentTextExtractor.h"
#include "import/DocxTextReader.h"
#include "import/ImportedRichText.h"
#include "import/IsolatedDocumentExtractor.h"
#include "import/TextCleanup.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>

#include <sys/stat.h>

namespace {

QString dataPath(const QString &name)
{
    return QStringLiteral(ODELEAF_TEST_DATA "/import/") + name;
}

QString expectedText(const QString &name)
{
    QFile file(dataPath(name));
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("missing ") + name;
    return QString::fromUtf8(file.readAll()).chopped(1); // the file ends with a line feed
}

QString errorOf(const Result<ExtractedDocument> &result)
{
    return result ? QStringLiteral("(no error)") : result.errorMessage();
}

QList<PDFLine> linesAt(const QList<double> &midLines)
{
    QList<PDFLine> lines;
    for (const double mid : midLines)
        lines.append({QStringLiteral("Zeile %1").arg(lines.size() + 1), QRectF(72, mid - 5, 200, 10)});
    return lines;
}

TextAttributes boldAttributes()
{
    TextAttributes attributes;
    attributes.bold = true;
    return attributes;
}

const QByteArray wordNamespace = "xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\"";

QByteArray documentXml(const QByteArray &body)
{
    return "<?xml version=\"1.0\"?><w:document " + wordNamespace + "><w:body>" + body + "</w:body></w:document>";
}

} // namespace

class ExtractionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void libreOfficeDocumentsGiveTheirText_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("expected");
        QTest::newRow("docx with stanzas") << "Herbstlied.docx"
                                           << "Herbstlied.expected.txt";
        QTest::newRow("pdf with stanzas") << "Herbstlied.pdf"
                                          << "Herbstlied.expected.txt";
        QTest::newRow("docx uniform") << "Abendstille.docx"
                                      << "Abendstille.expected.txt";
        QTest::newRow("pdf uniform") << "Abendstille.pdf"
                                     << "Abendstille.expected.txt";
        QTest::newRow("docx long") << "Langes Gedicht.docx"
                                   << "Langes Gedicht.expected.txt";
        QTest::newRow("pdf two pages") << "Langes Gedicht.pdf"
                                       << "Langes Gedicht.pdf.expected.txt";
        QTest::newRow("docx formatted") << "Mondnacht.docx"
                                        << "Mondnacht.expected.txt";
    }

    void libreOfficeDocumentsGiveTheirText()
    {
        QFETCH(QString, file);
        QFETCH(QString, expected);
        const auto result = DocumentTextExtractor::extract(dataPath(file));
        QVERIFY2(result, qPrintable(errorOf(result)));
        QCOMPARE(result->text, expectedText(expected));
        QCOMPARE(result->richText.has_value(), file.endsWith(QLatin1String(".docx")));
        if (result->richText)
            QCOMPARE(result->richText->plainText(), result->text);
    }

    void docxKeepsTheFormattingForTheEditor()
    {
        const auto result = DocumentTextExtractor::extract(dataPath(QStringLiteral("Mondnacht.docx")));
        QVERIFY(result && result->richText);
        const auto runWith = [&](const QString &text) {
            for (const TextRun &run : result->richText->runs()) {
                if (run.text.contains(text))
                    return run.attributes;
            }
            TextAttributes none;
            none.fontFamily = QStringLiteral("not found");
            return none;
        };
        const TextAttributes title = runWith(QStringLiteral("Mondnacht"));
        QVERIFY(title.bold && !title.italic);
        QCOMPARE(title.alignment, Qt::AlignHCenter);
        QVERIFY(runWith(QStringLiteral("als hätt")).italic);
        QVERIFY(runWith(QStringLiteral("still geküsst")).underline);
        QCOMPARE(runWith(QStringLiteral("dass sie")).color, QColor(0xC0, 0, 0));
        const TextAttributes large = runWith(QStringLiteral("träumen"));
        QCOMPARE(large.fontFamily, QStringLiteral("DejaVu Sans"));
        QCOMPARE(large.pointSize, 16.0);
        QCOMPARE(runWith(QStringLiteral("Eichendorff")).alignment, Qt::AlignRight);
        // The styles' font and size reach every run without its own.
        QCOMPARE(runWith(QStringLiteral("Eichendorff")).fontFamily, QStringLiteral("DejaVu Serif"));
        QCOMPARE(runWith(QStringLiteral("Eichendorff")).pointSize, 12.0);

        const std::unique_ptr<QTextDocument> document = result->richText->toTextDocument();
        QCOMPARE(document->toPlainText(), result->text);
        QCOMPARE(document->firstBlock().blockFormat().alignment(), Qt::AlignHCenter);
        QCOMPARE(document->lastBlock().blockFormat().alignment(), Qt::AlignRight);
        QVERIFY(document->firstBlock().begin().fragment().charFormat().fontWeight() >= QFont::Bold);

        // In the poem the text takes the editor's font and size, not the document's 16 and 12 pt;
        // weight, slant, underline and alignment stay.
        const ImportedRichText::EditorFont editor = ImportedRichText::EditorFont::current();
        const auto stored = ImportedRichText::encode(*result->richText, editor);
        QVERIFY(stored);
        const auto poem = PoemRichText::decode(*stored);
        QVERIFY(poem);
        QStringList styled;
        for (QTextBlock block = poem->begin(); block.isValid(); block = block.next()) {
            for (auto fragment = block.begin(); !fragment.atEnd(); ++fragment) {
                const QTextCharFormat format = fragment.fragment().charFormat();
                QCOMPARE(format.fontPointSize(), editor.pointSize);
                QCOMPARE(format.fontFamilies(), QStringList{editor.family});
                if (format.fontWeight() >= QFont::Bold || format.fontItalic() || format.fontUnderline())
                    styled.append(fragment.fragment().text());
            }
        }
        QVERIFY(styled.join(QString()).contains(QStringLiteral("Mondnacht")));
        QVERIFY(styled.join(QString()).contains(QStringLiteral("still geküsst")));
        QCOMPARE(poem->firstBlock().blockFormat().alignment() & Qt::AlignHorizontal_Mask, Qt::AlignHCenter);
        QCOMPARE(poem->lastBlock().blockFormat().alignment() & Qt::AlignHorizontal_Mask, Qt::AlignRight);
    }

    void failuresHaveTheirMessages_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("message");
        QTest::newRow("scan without text") << "Nur-Bild.pdf"
                                           << "Kein Text extrahiert (leer).";
        QTest::newRow("unsupported") << "Bild.png"
                                     << "Nicht unterstütztes Dateiformat: png";
        QTest::newRow("entity expansion") << "Entitaeten.docx"
                                          << "Extraktion fehlgeschlagen: Das Dokument-XML ist fehlerhaft (Zeile 13): "
                                             "Dokumenttypdefinitionen werden nicht gelesen.";
        QTest::newRow("bomb")
            << "Bombe.docx"
            << "Extraktion fehlgeschlagen: Der Teil word/document.xml ist zu groß (über 32 MB entpackt).";
        QTest::newRow("bomb with a false size")
            << "Bombe-verschleiert.docx"
            << "Extraktion fehlgeschlagen: Der Teil word/document.xml ist zu groß (über 32 MB entpackt).";
        QTest::newRow("missing docx") << "Gibt es nicht.docx"
                                      << "Extraktion fehlgeschlagen: Die Datei wurde nicht gefunden.";
        QTest::newRow("missing pdf") << "Gibt es nicht.pdf"
                                     << "Extraktion fehlgeschlagen: PDF konnte nicht geöffnet werden.";
    }

    void failuresHaveTheirMessages()
    {
        QFETCH(QString, file);
        QFETCH(QString, message);
        QCOMPARE(errorOf(DocumentTextExtractor::extract(dataPath(file))), message);
    }

    // Opening a FIFO waits for a writer that never comes; a folder is no document either.
    void filesThatAreNoFilesAreRefusedAtOnce()
    {
        QTemporaryDir dir;
        const QString fifo = dir.filePath(QStringLiteral("Herbst.docx"));
        QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
        const QString folder = dir.filePath(QStringLiteral("Winter.pdf"));
        QVERIFY(QDir().mkdir(folder));
        for (const QString &path : {fifo, folder})
            QCOMPARE(errorOf(DocumentTextExtractor::extract(path)),
                     QStringLiteral("Extraktion fehlgeschlagen: Keine normale Datei: %1").arg(path));
    }

    void brokenFilesFailCleanly()
    {
        QTemporaryDir dir;
        const auto write = [&](const QString &name, const QByteArray &bytes) {
            QFile file(dir.filePath(name));
            if (file.open(QIODevice::WriteOnly))
                file.write(bytes);
            return file.fileName();
        };
        const auto original = [](const QString &name) {
            QFile file(dataPath(name));
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        };
        QCOMPARE(errorOf(DocumentTextExtractor::extract(write(QStringLiteral("leer.docx"), {}))),
                 QStringLiteral("Extraktion fehlgeschlagen: Die Datei ist leer."));
        QCOMPARE(errorOf(DocumentTextExtractor::extract(write(QStringLiteral("leer.pdf"), {}))),
                 QStringLiteral("Extraktion fehlgeschlagen: PDF konnte nicht geöffnet werden."));
        const QByteArray docx = original(QStringLiteral("Herbstlied.docx"));
        QCOMPARE(
            errorOf(DocumentTextExtractor::extract(write(QStringLiteral("halb.docx"), docx.left(docx.size() / 2)))),
            QStringLiteral("Extraktion fehlgeschlagen: Die Datei ist kein DOCX-Dokument."));
        QCOMPARE(errorOf(DocumentTextExtractor::extract(write(QStringLiteral("text.docx"), "nur Text"))),
                 QStringLiteral("Extraktion fehlgeschlagen: Die Datei ist kein DOCX-Dokument."));
        const QByteArray pdf = original(QStringLiteral("Herbstlied.pdf"));
        QCOMPARE(errorOf(DocumentTextExtractor::extract(write(QStringLiteral("halb.pdf"), pdf.left(pdf.size() / 3)))),
                 QStringLiteral("Extraktion fehlgeschlagen: PDF konnte nicht geöffnet werden."));
        // Damaged compressed data inside an intact package.
        QByteArray damaged = docx;
        const qsizetype part = damaged.indexOf("word/document.xml");
        for (qsizetype i = part + 60; i < part + 400 && i < damaged.size(); i += 7)
            damaged[i] = char(damaged[i] ^ 0x5A);
        QVERIFY(errorOf(DocumentTextExtractor::extract(write(QStringLiteral("beschaedigt.docx"), damaged)))
                    .startsWith(QStringLiteral("Extraktion fehlgeschlagen: ")));
    }

    void imageOnlyDocxHasNoText()
    {
        const auto result = DocumentTextExtractor::extract(dataPath(QStringLiteral("Nur-Bild.docx")));
        QVERIFY(result);
        QVERIFY(result->text.isEmpty());
    }

    void wordXmlRunsAndStyles()
    {
        const QByteArray styles = "<w:styles " + wordNamespace +
                                  ">"
                                  "<w:docDefaults><w:rPrDefault><w:rPr><w:rFonts w:ascii=\"Garamond\"/><w:sz "
                                  "w:val=\"22\"/></w:rPr></w:rPrDefault>"
                                  "<w:pPrDefault><w:pPr><w:jc w:val=\"both\"/></w:pPr></w:pPrDefault></w:docDefaults>"
                                  "<w:style w:type=\"paragraph\" w:default=\"1\" w:styleId=\"Standard\"><w:rPr><w:sz "
                                  "w:val=\"24\"/></w:rPr></w:style>"
                                  "<w:style w:type=\"paragraph\" w:styleId=\"Titel\"><w:basedOn "
                                  "w:val=\"Standard\"/><w:pPr><w:jc w:val=\"center\"/></w:pPr>"
                                  "<w:rPr><w:b/><w:color w:val=\"336699\"/></w:rPr></w:style>"
                                  "<w:style w:type=\"character\" w:styleId=\"Betont\"><w:rPr><w:i/></w:rPr></w:style>"
                                  "<w:style w:type=\"paragraph\" w:styleId=\"A\"><w:basedOn w:val=\"B\"/></w:style>"
                                  "<w:style w:type=\"paragraph\" w:styleId=\"B\"><w:basedOn w:val=\"A\"/></w:style>"
                                  "</w:styles>";
        const QByteArray body =
            "<w:p><w:pPr><w:pStyle w:val=\"Titel\"/></w:pPr><w:r><w:t>Titel</w:t></w:r>"
            "<w:r><w:rPr><w:b w:val=\"0\"/></w:rPr><w:t xml:space=\"preserve\"> mager</w:t></w:r></w:p>"
            "<w:p><w:r><w:rPr><w:rStyle w:val=\"Betont\"/><w:u w:val=\"none\"/></w:rPr><w:t>schräg</w:t><w:tab/>"
            "<w:t>weiter</w:t><w:br/><w:t>Umbruch</w:t></w:r>"
            "<w:del><w:r><w:delText>gelöscht</w:delText></w:r></w:del>"
            "<w:r><w:instrText>PAGE</w:instrText></w:r>"
            "<w:r><mc:AlternateContent xmlns:mc=\"http://schemas.openxmlformats.org/markup-compatibility/2006\">"
            "<mc:Choice><w:p><w:r><w:t>Textfeld</w:t></w:r></w:p></mc:Choice></mc:AlternateContent></w:r>"
            "<w:hyperlink><w:r><w:t>Link</w:t></w:r></w:hyperlink></w:p>"
            "<w:tbl><w:tr><w:tc><w:p><w:r><w:t>Zelle</w:t></w:r></w:p></w:tc></w:tr></w:tbl>"
            "<w:p><w:pPr><w:pStyle w:val=\"A\"/></w:pPr><w:r><w:t>Kreis</w:t></w:r></w:p>";
        const auto parsed = DocxTextReader::parse(documentXml(body), styles);
        QVERIFY2(parsed, qPrintable(parsed.errorMessage()));
        QCOMPARE(parsed->plainText(), QStringLiteral("Titel mager\nschräg\tweiter\nUmbruchLink\nZelle\nKreis"));

        const QList<TextRun> &runs = parsed->runs();
        QCOMPARE(runs[0].text, QStringLiteral("Titel"));
        QVERIFY(runs[0].attributes.bold);
        QCOMPARE(runs[0].attributes.color, QColor(0x33, 0x66, 0x99));
        QCOMPARE(runs[0].attributes.alignment, Qt::AlignHCenter);
        QCOMPARE(runs[0].attributes.pointSize, 12.0);
        QCOMPARE(runs[0].attributes.fontFamily, QStringLiteral("Garamond"));
        QCOMPARE(runs[1].text, QStringLiteral(" mager\n"));
        QVERIFY(!runs[1].attributes.bold);
        QCOMPARE(runs[2].text, QStringLiteral("schräg\tweiter\nUmbruch"));
        QVERIFY(runs[2].attributes.italic && !runs[2].attributes.underline && !runs[2].attributes.bold);
        QCOMPARE(runs[2].attributes.alignment, Qt::AlignJustify);
        QVERIFY(!runs[3].attributes.italic); // "Link" has no character style
    }

    void hostileWordXmlEndsInAnError()
    {
        QVERIFY(!DocxTextReader::parse(documentXml("<w:p><w:r><w:t>&unbekannt;</w:t></w:r></w:p>"), {}));
        QVERIFY(!DocxTextReader::parse("<w:document", {}));
        QVERIFY(!DocxTextReader::parse(QByteArray(), {}));
        // Deep nesting is walked, not recursed.
        const QByteArray deep = QByteArray("<w:sdt>").repeated(200000) + "<w:p><w:r><w:t>tief</w:t></w:r></w:p>" +
                                QByteArray("</w:sdt>").repeated(200000);
        const auto parsed = DocxTextReader::parse(documentXml(deep), {});
        QVERIFY(parsed);
        QCOMPARE(parsed->plainText(), QStringLiteral("tief"));
        // Broken styles cost the formatting, not the text.
        const auto unstyled = DocxTextReader::parse(documentXml("<w:p><w:r><w:t>Text</w:t></w:r></w:p>"), "<w:styles");
        QVERIFY(unstyled);
        QCOMPARE(unstyled->plainText(), QStringLiteral("Text"));
    }

    void cleanupTidiesLines_data()
    {
        QTest::addColumn<QString>("raw");
        QTest::addColumn<QString>("clean");
        QTest::newRow("line ends") << "a\r\nb\rc\nd"
                                   << "a\nb\nc\nd";
        QTest::newRow("blank runs shrink") << "a\n\n\n \t \nb\n\nc"
                                           << "a\n\nb\n\nc";
        QTest::newRow("lines trimmed") << "  a  \n\tb\u00A0"
                                       << "a\nb";
        QTest::newRow("nothing blank at the ends") << "\r\n\r\n a \r\n\r\n"
                                                   << "a";
        QTest::newRow("CR CR LF") << "a\r\r\nb"
                                  << "a\n\nb";
        QTest::newRow("empty") << ""
                               << "";
        QTest::newRow("only blanks") << " \n \r\n\t"
                                     << "";
    }

    void cleanupTidiesLines()
    {
        QFETCH(QString, raw);
        QFETCH(QString, clean);
        QCOMPARE(TextCleanup::cleanup(raw), clean);
        // The formatted form follows the same rules, whatever the runs look like.
        AttributedText text;
        TextAttributes attributes;
        for (qsizetype i = 0; i < raw.size(); i += 2) {
            attributes.bold = !attributes.bold;
            text.append(raw.mid(i, 2), attributes);
        }
        QCOMPARE(TextCleanup::cleanupAttributed(text).plainText(), clean);
    }

    void cleanupAttributedKeepsEachLinesAttributes()
    {
        const TextAttributes bold = boldAttributes();
        TextAttributes centred;
        centred.alignment = Qt::AlignHCenter;
        AttributedText text;
        text.append(QStringLiteral("  Titel \r"), bold);
        text.append(QStringLiteral("\n\n\n  Zeile"), centred);
        text.append(QStringLiteral(" zwei  \n\n"), bold);
        const AttributedText clean = TextCleanup::cleanupAttributed(text);
        QCOMPARE(clean.plainText(), QStringLiteral("Titel\n\nZeile zwei"));
        QCOMPARE(clean.runs().at(0), (TextRun{QStringLiteral("Titel\n\n"), bold}));
        QCOMPARE(clean.runs().at(1), (TextRun{QStringLiteral("Zeile"), centred}));
        QCOMPARE(clean.runs().at(2), (TextRun{QStringLiteral(" zwei"), bold}));
    }

    void pdfLinesBecomeStanzas()
    {
        // Uniform distance 14: no empty line.
        QCOMPARE(DocumentTextExtractor::extractPDFByLines({linesAt({10, 24, 38, 52})}),
                 QStringLiteral("Zeile 1\nZeile 2\nZeile 3\nZeile 4"));
        // Median 14, gap max(18.9, 17): 28 opens a stanza.
        QCOMPARE(DocumentTextExtractor::extractPDFByLines({linesAt({10, 24, 38, 66, 80})}),
                 QStringLiteral("Zeile 1\nZeile 2\nZeile 3\n\nZeile 4\nZeile 5"));
        // Median 10, gap max(13.5, 13): a gap of exactly 13.5 is no stanza break, 13.6 is.
        QCOMPARE(DocumentTextExtractor::extractPDFByLines({linesAt({0, 10, 20, 33.5})}),
                 QStringLiteral("Zeile 1\nZeile 2\nZeile 3\nZeile 4"));
        QCOMPARE(DocumentTextExtractor::extractPDFByLines({linesAt({0, 10, 20, 33.6})}),
                 QStringLiteral("Zeile 1\nZeile 2\nZeile 3\n\nZeile 4"));
        // Median 40 (from 12/40/40/100), gap 54: the added 3 points win only for small distances.
        QCOMPARE(DocumentTextExtractor::medianLineDistance(linesAt({0, 12, 52, 92, 192})), 40.0);
        // Pages are joined by one empty line; an empty page adds nothing but its separator.
        QCOMPARE(DocumentTextExtractor::extractPDFByLines({linesAt({10, 24}), linesAt({10})}),
                 QStringLiteral("Zeile 1\nZeile 2\n\nZeile 1"));
    }

    void pdfLinesAreReadTopDown()
    {
        QList<PDFLine> lines = linesAt({50, 10, 30});
        QCOMPARE(DocumentTextExtractor::extractPDFByLines({lines}), QStringLiteral("Zeile 2\nZeile 3\nZeile 1"));
        // Lines on the same height keep their order; their distance of 0 does not count.
        lines = {{QStringLiteral("links"), QRectF(0, 0, 10, 10)},
                 {QStringLiteral("rechts"), QRectF(100, 0, 10, 10)},
                 {QStringLiteral("unten"), QRectF(0, 100, 10, 10)}};
        QCOMPARE(DocumentTextExtractor::medianLineDistance(lines), 100.0);
        QCOMPARE(DocumentTextExtractor::extractPDFByLines({lines}), QStringLiteral("links\nrechts\nunten"));
        // Without any distance the line distance is 12.
        QCOMPARE(DocumentTextExtractor::medianLineDistance(linesAt({10})), 12.0);
        QCOMPARE(DocumentTextExtractor::medianLineDistance({}), 12.0);
    }

    void helperGivesTheSameResult()
    {
        IsolatedDocumentExtractor extractor;
        for (const char *name : {"Mondnacht.docx", "Herbstlied.pdf", "Mondnacht.docx"}) {
            const QString path = dataPath(QString::fromUtf8(name));
            const IsolatedExtraction isolated = extractor.extract(path, 10000);
            QVERIFY2(isolated.result, qPrintable(isolated.result.errorMessage()));
            QVERIFY(!isolated.timedOut);
            QCOMPARE(*isolated.result, *DocumentTextExtractor::extract(path));
        }
        const IsolatedExtraction bomb = extractor.extract(dataPath(QStringLiteral("Bombe.docx")), 10000);
        QCOMPARE(bomb.result.errorMessage(),
                 errorOf(DocumentTextExtractor::extract(dataPath(QStringLiteral("Bombe.docx")))));
        QCOMPARE(extractor.extract(dataPath(QStringLiteral("Nur-Bild.pdf")), 10000).result.errorMessage(),
                 QStringLiteral("Kein Text extrahiert (leer)."));
    }

    void helperThatHangsIsKilledInTime()
    {
        IsolatedDocumentExtractor extractor(QStringLiteral("/bin/sh"),
                                            {QStringLiteral("-c"), QStringLiteral("sleep 30")});
        QElapsedTimer timer;
        timer.start();
        const IsolatedExtraction outcome = extractor.extract(dataPath(QStringLiteral("Herbstlied.docx")), 500);
        QVERIFY(timer.elapsed() < 5000);
        QVERIFY(outcome.timedOut);
        QCOMPARE(outcome.result.errorMessage(),
                 QStringLiteral("Extraktion fehlgeschlagen: Zeitüberschreitung nach 1 s"));
    }

    void helperThatCrashesOrBabblesIsAFailure()
    {
        IsolatedDocumentExtractor crashing(QStringLiteral("/bin/sh"),
                                           {QStringLiteral("-c"), QStringLiteral("kill -SEGV $$")});
        const IsolatedExtraction crashed = crashing.extract(dataPath(QStringLiteral("Herbstlied.docx")), 5000);
        QVERIFY(!crashed.timedOut);
        QCOMPARE(crashed.result.errorMessage(),
                 QStringLiteral("Extraktion fehlgeschlagen: Das Lesen des Dokuments wurde unerwartet abgebrochen."));
        // It is started afresh for the next file.
        QCOMPARE(crashing.extract(dataPath(QStringLiteral("Herbstlied.docx")), 5000).result.errorMessage(),
                 crashed.result.errorMessage());

        IsolatedDocumentExtractor babbling(
            QStringLiteral("/bin/sh"),
            {QStringLiteral("-c"), QStringLiteral("printf '\\000\\000\\000\\003abc'; sleep 5")});
        QCOMPARE(babbling.extract(dataPath(QStringLiteral("Herbstlied.docx")), 5000).result.errorMessage(),
                 QStringLiteral("Extraktion fehlgeschlagen: Die Antwort des Hilfsprogramms ist unlesbar."));

        IsolatedDocumentExtractor missing(QStringLiteral("/nicht/vorhanden/odeleaf-extract"), {});
        QVERIFY(missing.extract(dataPath(QStringLiteral("Herbstlied.docx")), 1000)
                    .result.errorMessage()
                    .startsWith(QStringLiteral("Extraktion fehlgeschlagen: Das Hilfsprogramm zum Lesen fehlt")));
    }

    void asyncExtractionAnswersOnTheCallersThread()
    {
        QObject context;
        std::optional<IsolatedExtraction> outcome;
        IsolatedDocumentExtractor::extractAsync(
            dataPath(QStringLiteral("Herbstlied.docx")), 10000, &context,
            [&](IsolatedExtraction extraction) { outcome = std::move(extraction); });
        QTRY_VERIFY_WITH_TIMEOUT(outcome.has_value(), 10000);
        QVERIFY(outcome->result);
        QCOMPARE(outcome->result->text, expectedText(QStringLiteral("Herbstlied.expected.txt")));
    }

    void replyRoundTrips()
    {
        ExtractedDocument document{QStringLiteral("Zeile\nZeile"),
                                   AttributedText({{QStringLiteral("Zeile"), boldAttributes()}})};
        const auto decoded = IsolatedDocumentExtractor::decodeReply(IsolatedDocumentExtractor::encodeReply(document));
        QVERIFY(decoded);
        QCOMPARE(*decoded, document);
        const auto failed = IsolatedDocumentExtractor::decodeReply(
            IsolatedDocumentExtractor::encodeReply(Error{QStringLiteral("Kein Text extrahiert (leer).")}));
        QCOMPARE(failed.errorMessage(), QStringLiteral("Kein Text extrahiert (leer)."));
        QVERIFY(!IsolatedDocumentExtractor::decodeReply(IsolatedDocumentExtractor::encodeReply(document).left(20)));
        QVERIFY(!AttributedText::deserialized("OLAT"));
    }
};

QTEST_MAIN(ExtractionTest)
#include "tst_extraction.moc"
