#include "editor/PoemTextDocument.h"
#include "export/DOCXExporter.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTest>
#include <QTextCursor>
#include <QTextImageFormat>
#include <QTimeZone>
#include <QXmlStreamReader>

namespace {

const QString goldenFolder = QStringLiteral(ODELEAF_TEST_DATA "/export/docx");
const QByteArray fakeLogo = QByteArrayLiteral("\x89PNG logo stand-in");

QTextCharFormat run(std::initializer_list<std::function<void(QTextCharFormat &)>> changes)
{
    QTextCharFormat format;
    format.setFontFamilies({QStringLiteral("Roboto")});
    format.setFontPointSize(17);
    for (const auto &change : changes)
        change(format);
    return format;
}

QTextBlockFormat paragraph(Qt::Alignment alignment, double lineSpacing, double spacingAfter)
{
    QTextBlockFormat format;
    format.setAlignment(alignment);
    if (lineSpacing > 0)
        format.setLineHeight(lineSpacing, QTextBlockFormat::LineDistanceHeight);
    format.setBottomMargin(spacingAfter);
    return format;
}

void insertImage(PoemTextDocument &document, QTextCursor &cursor, QSize pixels, QSizeF points)
{
    QImage image(pixels, QImage::Format_RGB32);
    image.fill(QColor(40, 90, 60));
    QTextImageFormat format;
    format.setName(document.addPicture(image));
    format.setWidth(points.width());
    format.setHeight(points.height());
    cursor.insertImage(format);
}

// Title, two meta lines, centred bold and italic lines, colours, underline and strikeout,
// a small and a wide picture.
std::shared_ptr<PoemTextDocument> richPoem()
{
    auto document = std::make_shared<PoemTextDocument>();
    QTextCursor cursor(document.get());
    cursor.setBlockFormat(paragraph(Qt::AlignHCenter, 5, 0));
    cursor.insertText(QStringLiteral("Der Mond "), run({}));
    cursor.insertText(QStringLiteral("geht"), run({[](auto &f) { f.setFontWeight(QFont::Bold); }}));
    cursor.insertText(QStringLiteral(" auf"), run({[](auto &f) { f.setFontItalic(true); }}));
    cursor.insertBlock(paragraph(Qt::AlignLeft, 0, 4), run({}));
    cursor.insertText(QStringLiteral("rot & <kalt>"), run({[](auto &f) { f.setForeground(QColor(255, 0, 0)); }}));
    cursor.insertText(QStringLiteral("gold"), run({[](auto &f) {
                          f.setForeground(QColor(179, 144, 67));
                          f.setBackground(QColor(255, 204, 0));
                      }}));
    cursor.insertBlock(paragraph(Qt::AlignJustify, 9, 4), run({}));
    cursor.insertText(QStringLiteral("klein"), run({[](auto &f) {
                          f.setFontPointSize(9);
                          f.setFontUnderline(true);
                          f.setFontStrikeOut(true);
                      }}));
    cursor.insertText(QStringLiteral("\u2028zweite Zeile"), run({[](auto &f) { f.setFontPointSize(34); }}));
    cursor.insertBlock(paragraph(Qt::AlignRight, 1, 14), run({}));
    insertImage(*document, cursor, QSize(40, 30), QSizeF(200, 150));
    cursor.insertBlock(paragraph(Qt::AlignHCenter, 5, 14), run({}));
    insertImage(*document, cursor, QSize(100, 50), QSizeF(1000, 500));
    return document;
}

ExportDocument richDocument()
{
    ExportDocument document;
    document.title = QStringLiteral("Mond & <Sterne>");
    document.metaLines = {QStringLiteral("Datum: 01.03.2024"), QStringLiteral("Kategorie: Lyrik")};
    document.plainText = QStringLiteral("Der Mond geht auf");
    document.richText = richPoem();
    return document;
}

DOCXExporter::Options options(bool withLogo = true)
{
    DOCXExporter::Options options;
    options.fontName = QStringLiteral("Roboto");
    options.moment = QDateTime(QDate(2024, 3, 1), QTime(12, 30, 5), Qt::UTC);
    if (withLogo)
        options.logo = fakeLogo;
    return options;
}

QStringList pathsOf(const std::vector<ZipArchive::Entry> &parts)
{
    QStringList paths;
    for (const auto &part : parts)
        paths << part.path;
    return paths;
}

QByteArray partData(const std::vector<ZipArchive::Entry> &parts, const QString &path)
{
    for (const auto &part : parts) {
        if (part.path == path)
            return part.data;
    }
    return {};
}

QString partText(const std::vector<ZipArchive::Entry> &parts, const QString &path)
{
    return QString::fromUtf8(partData(parts, path));
}

} // namespace

class DocxExportTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyXmlPartMatchesItsGoldenFile()
    {
        const auto parts = DOCXExporter::parts(richDocument(), options());
        // Set ODELEAF_WRITE_GOLDEN=1 to rewrite the files after a deliberate change.
        const bool rewrite = qEnvironmentVariableIsSet("ODELEAF_WRITE_GOLDEN");
        int compared = 0;
        for (const auto &part : parts) {
            if (!part.path.endsWith(QLatin1String(".xml")) && !part.path.endsWith(QLatin1String(".rels")))
                continue;
            const QString goldenPath =
                QDir(goldenFolder).filePath(QString(part.path).replace(QLatin1Char('/'), QLatin1Char('_')));
            QFile golden(goldenPath);
            if (rewrite) {
                QVERIFY(golden.open(QIODevice::WriteOnly));
                golden.write(part.data);
                golden.close();
            }
            QVERIFY2(golden.open(QIODevice::ReadOnly), qPrintable(goldenPath));
            QCOMPARE(QString::fromUtf8(part.data), QString::fromUtf8(golden.readAll()));
            ++compared;
        }
        QCOMPARE(compared, 9);
    }

    void partsComeInPackageOrderWithTheLogoAndTwoPictures()
    {
        const auto parts = DOCXExporter::parts(richDocument(), options());
        QCOMPARE(pathsOf(parts),
                 QStringList({"[Content_Types].xml", "_rels/.rels", "docProps/app.xml", "docProps/core.xml",
                              "word/styles.xml", "word/document.xml", "word/_rels/document.xml.rels",
                              "word/footer1.xml", "word/_rels/footer1.xml.rels", "word/media/odeleaf-logo.png",
                              "word/media/image-1.png", "word/media/image-2.png"}));
        QCOMPARE(partData(parts, "word/media/odeleaf-logo.png"), fakeLogo);
        const QImage picture = QImage::fromData(partData(parts, "word/media/image-2.png"), "PNG");
        QCOMPARE(picture.size(), QSize(100, 50));
        for (const auto &part : parts) {
            if (part.path.endsWith(QLatin1String(".xml")) || part.path.endsWith(QLatin1String(".rels")))
                QVERIFY(part.data.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"));
        }
    }

    void widePictureIsNarrowedTo440Points()
    {
        const QString body = partText(DOCXExporter::parts(richDocument(), options()), "word/document.xml");
        QVERIFY(body.contains(QLatin1String("<wp:extent cx=\"5588000\" cy=\"2794000\"/>")));
        QVERIFY(body.contains(QLatin1String("<a:ext cx=\"5588000\" cy=\"2794000\"/>")));
        QVERIFY(body.contains(QLatin1String("<wp:extent cx=\"2540000\" cy=\"1905000\"/>")));
        QCOMPARE(DOCXExporter::emuSize(QSizeF(440, 10)), QSize(5588000, 127000));
        QCOMPARE(DOCXExporter::emuSize(QSizeF(880, 100)), QSize(5588000, 635000));
    }

    void sizesFollowThePrintScaleWithAFloor()
    {
        QCOMPARE(DOCXExporter::halfPoints(17), 25);
        QCOMPARE(DOCXExporter::halfPoints(34), 50);
        QCOMPARE(DOCXExporter::halfPoints(9), 16); // 6.6 pt is raised to 8 pt
        QCOMPARE(DOCXExporter::halfPoints(14), 21);
    }

    void withoutTheLogoSevenPartsAndNoFooterReference()
    {
        ExportDocument document = richDocument();
        document.richText.reset();
        const auto parts = DOCXExporter::parts(document, options(false));
        QCOMPARE(parts.size(), size_t(7));
        QVERIFY(!pathsOf(parts).contains(QStringLiteral("word/footer1.xml")));
        QVERIFY(partText(parts, "[Content_Types].xml").contains(QLatin1String("PartName=\"/word/footer1.xml\"")));
        QVERIFY(!partText(parts, "word/document.xml").contains(QLatin1String("footerReference")));
        QVERIFY(!partText(parts, "word/_rels/document.xml.rels").contains(QLatin1String("rIdFooter")));
    }

    void emptyPoemSaysThereIsNoText()
    {
        ExportDocument document;
        document.title = QStringLiteral("Leer");
        document.metaLines = {QStringLiteral("Kategorie: Lyrik")};
        document.plainText = QStringLiteral(" \n ");
        document.richText = std::make_shared<PoemTextDocument>();
        const QString body = partText(DOCXExporter::parts(document, options()), "word/document.xml");
        QCOMPARE(body.count(QLatin1String("<w:p>")), 4); // title, meta, the empty one, the placeholder
        QVERIFY(body.contains(QStringLiteral("<w:t xml:space=\"preserve\">— kein Text —</w:t>")));
        QVERIFY(body.contains(QLatin1String("<w:t xml:space=\"preserve\"></w:t>")));
    }

    void plainTextBecomesOneParagraphPerLine()
    {
        ExportDocument document;
        document.title = QStringLiteral("Zwei");
        document.plainText = QStringLiteral("erste\r\nzweite\n\ndritte");
        const QString body = partText(DOCXExporter::parts(document, options()), "word/document.xml");
        QCOMPARE(body.count(QLatin1String("<w:p>")), 1 + 1 + 4);
        QVERIFY(body.indexOf(QLatin1String(">erste<")) < body.indexOf(QLatin1String(">zweite<")));
        QVERIFY(body.indexOf(QLatin1String(">zweite<")) < body.indexOf(QLatin1String(">dritte<")));
        QVERIFY(!body.contains(QLatin1Char('\r')));
    }

    void allFiveSpecialCharactersAreEscapedEverywhere()
    {
        const QString nasty = QStringLiteral("A&B<C>D\"E'F");
        const QString escaped = QStringLiteral("A&amp;B&lt;C&gt;D&quot;E&apos;F");
        QCOMPARE(DOCXExporter::escape(nasty), escaped);
        QCOMPARE(DOCXExporter::escape(QStringLiteral("&amp;")), QStringLiteral("&amp;amp;")); // one pass only

        ExportDocument document;
        document.title = nasty;
        document.metaLines = {nasty};
        document.plainText = nasty;
        DOCXExporter::Options fonts = options();
        fonts.fontName = nasty;
        const auto parts = DOCXExporter::parts(document, fonts);
        const QString body = partText(parts, "word/document.xml");
        QCOMPARE(body.count(escaped), 3 + 2 * 3); // title, meta, text; fonts of title and meta runs
        QVERIFY(!body.contains(nasty));
        QVERIFY(partText(parts, "docProps/core.xml").contains(QLatin1String("<dc:title>") + escaped + "</dc:title>"));
        QCOMPARE(partText(parts, "word/styles.xml").count(escaped), 3 * 3);

        auto rich = std::make_shared<PoemTextDocument>();
        QTextCursor cursor(rich.get());
        QTextCharFormat format;
        format.setFontFamilies({nasty});
        cursor.insertText(nasty, format);
        document.richText = rich;
        const QString richBody = partText(DOCXExporter::parts(document, fonts), "word/document.xml");
        QVERIFY(richBody.contains(QLatin1String("w:ascii=\"") + escaped + "\" w:hAnsi=\"" + escaped + "\" w:cs=\"" +
                                  escaped + "\""));
        QVERIFY(!richBody.contains(nasty));
    }

    void charactersXmlForbidsAreDroppedFromEveryPart_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("kept");
        QTest::newRow("NUL") << QStringLiteral("A") + QChar(0) + QStringLiteral("B") << QStringLiteral("AB");
        QTest::newRow("C0 controls") << QStringLiteral("A\u0001\u0008\u000B\u000C\u001BB\u001F")
                                     << QStringLiteral("AB");
        QTest::newRow("unpaired surrogates")
            << QStringLiteral("A") + QChar(0xD800) + QStringLiteral("B") + QChar(0xDC00) + QChar(0xDBFF)
            << QStringLiteral("AB");
        QTest::newRow("U+FFFE and U+FFFF") << QStringLiteral("A\uFFFEB\uFFFF") << QStringLiteral("AB");
        QTest::newRow("pair, tab and umlaut kept")
            << QStringLiteral("Ä\t\U0001F319B") << QStringLiteral("Ä\t\U0001F319B");
    }

    void charactersXmlForbidsAreDroppedFromEveryPart()
    {
        QFETCH(QString, text);
        QFETCH(QString, kept);
        QCOMPARE(DOCXExporter::escape(text), kept);
        auto rich = std::make_shared<PoemTextDocument>();
        QTextCursor cursor(rich.get());
        QTextCharFormat format;
        format.setFontFamilies({text});
        cursor.insertText(text, format);
        for (const bool withRichText : {false, true}) {
            ExportDocument document;
            document.title = text;
            document.metaLines = {text};
            document.plainText = text;
            if (withRichText)
                document.richText = rich;
            DOCXExporter::Options fonts = options();
            fonts.fontName = text;
            const auto parts = DOCXExporter::parts(document, fonts);
            QVERIFY(partText(parts, "docProps/core.xml").contains(QStringLiteral("<dc:title>") + kept));
            QVERIFY(
                partText(parts, "word/document.xml").contains(QStringLiteral("\">") + kept + QStringLiteral("</w:t>")));
            for (const ZipArchive::Entry &part : parts) {
                if (!part.path.endsWith(QLatin1String(".xml")) && !part.path.endsWith(QLatin1String(".rels")))
                    continue;
                QXmlStreamReader xml(part.data);
                while (!xml.atEnd())
                    xml.readNext();
                QVERIFY2(!xml.hasError(), qPrintable(part.path + QStringLiteral(": ") + xml.errorString()));
            }
        }
    }

    void twoExportsDifferOnlyInTheirDates()
    {
        DOCXExporter::Options later = options();
        later.moment = later.moment.addDays(400);
        const auto first = DOCXExporter::parts(richDocument(), options());
        const auto second = DOCXExporter::parts(richDocument(), later);
        QCOMPARE(first.size(), second.size());
        for (size_t i = 0; i < first.size(); ++i) {
            QCOMPARE(first[i].path, second[i].path);
            if (first[i].path != QLatin1String("docProps/core.xml"))
                QCOMPARE(first[i].data, second[i].data);
        }
        QString core = QString::fromUtf8(second[3].data);
        core.replace(QLatin1String("2025-04-05T12:30:05Z"), QLatin1String("2024-03-01T12:30:05Z"));
        QCOMPARE(core, QString::fromUtf8(first[3].data));
    }

    void packageIsAZipOfThePartsInOrder()
    {
        const auto parts = DOCXExporter::parts(richDocument(), options());
        const auto bytes = DOCXExporter::data(richDocument(), options());
        QVERIFY(bytes.ok());
        const auto expected = ZipArchive(parts).data();
        QCOMPARE(*bytes, *expected);
    }
};

QTEST_MAIN(DocxExportTest)
#include "tst_docxexport.moc"
