#include "EditorTestSupport.h"

#include "archive/ApplicationSupport.h"
#include "editor/DisplayedPoemText.h"
#include "editor/PoemRichText.h"
#include "editor/RtfReader.h"
#include "editor/RtfdContainer.h"
#include "editor/WriterTypingAttributes.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>
#include <QPainter>
#include <QPdfWriter>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCursor>
#include <QTextImageFormat>

using namespace EditorTestSupport;

namespace {

QByteArray readData(const QString &name)
{
    QFile file(QStringLiteral(ODELEAF_TEST_DATA "/editor/") + name);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

std::unique_ptr<PoemTextDocument> decodeRtf(const QByteArray &rtf)
{
    auto document = PoemRichText::decode(rtf);
    if (!document)
        qWarning("RTF was not accepted");
    return document;
}

std::unique_ptr<PoemTextDocument> roundTrip(const QTextDocument &document)
{
    const auto encoded = PoemRichText::encode(document);
    if (!encoded) {
        qWarning() << encoded.errorMessage();
        return nullptr;
    }
    return PoemRichText::decode(*encoded);
}

void appendUInt32(QByteArray &bytes, quint32 value)
{
    for (int i = 0; i < 4; ++i)
        bytes.append(char((value >> (8 * i)) & 0xFF));
}

// A flat RTFD stream: header, entry count, the names, then the files.
QByteArray flatRtfd(const QList<QPair<QByteArray, QByteArray>> &entries, quint32 extraWordsPerEntry = 0)
{
    QByteArray out = "rtfd";
    appendUInt32(out, 0);
    appendUInt32(out, quint32(entries.size()));
    for (const auto &entry : entries) {
        appendUInt32(out, quint32(entry.first.size()));
        out.append(entry.first);
    }
    for (quint32 i = 0; i < extraWordsPerEntry * quint32(entries.size()); ++i)
        appendUInt32(out, 0x10);
    for (const auto &entry : entries) {
        appendUInt32(out, quint32(entry.second.size()));
        out.append(entry.second);
    }
    return out;
}

QByteArray encoded(const QImage &image, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

// The smallest metafiles: a header and the end record, nothing drawn.
QByteArray emptyEmf()
{
    QByteArray bytes;
    for (const quint32 word : {1u, 88u, 0u, 0u, 59u, 39u,   0u,   0u,   2116u, 1410u, 0x464D4520u, 0x10000u, 108u, 2u,
                               1u, 0u,  0u, 0u, 0u,  1024u, 768u, 320u, 240u,  14u,   20u,         0u,       16u,  20u})
        appendUInt32(bytes, word);
    return bytes;
}

QByteArray emptyWmf()
{
    const QByteArray header("\x01\x00\x09\x00\x00\x03\x0C\x00\x00\x00\x00\x00\x03\x00\x00\x00\x00\x00", 18);
    return header + QByteArray("\x03\x00\x00\x00\x00\x00", 6);
}

QByteArray onePagePdf()
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setPageSize(QPageSize(QSizeF(60, 40), QPageSize::Point));
    writer.setPageMargins(QMarginsF());
    writer.setResolution(72);
    QPainter painter(&writer);
    painter.fillRect(QRect(0, 0, 200, 200), QColor(200, 40, 40));
    painter.end();
    return bytes;
}

QByteArray pictRtf(const QByteArray &keyword, const QByteArray &bytes)
{
    return "{\\rtf1\\ansi a{\\pict\\" + keyword + "\\picw60\\pich40\\picwgoal1200\\pichgoal800 " + bytes.toHex() +
           "}b}";
}

QByteArray attachmentRtfd(const QByteArray &name, const QByteArray &bytes)
{
    const QByteArray rtf = "{\\rtf1\\ansi\\ansicpg1252 a{{\\NeXTGraphic " + name + " \\width1200 \\height800}\\'ac}b}";
    return flatRtfd({{"TXT.rtf", rtf}, {name, bytes}});
}

QByteArray pictureBytesOf(const PoemTextDocument &document)
{
    const auto picture = document.picture(firstImage(document).name());
    return picture ? picture->bytes : QByteArray();
}
} // namespace

class PoemRichTextTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;

private Q_SLOTS:
    void initTestCase() { ApplicationSupport::setDirectory(m_dir.path()); }

    void everyAttributeOfTheTextModelSurvivesARoundTrip()
    {
        auto document = PoemRichText::newDocument();
        QTextCursor cursor(document.get());
        QTextCharFormat serif;
        serif.setFontFamilies({QStringLiteral("DejaVu Serif")});
        serif.setFontPointSize(20);
        serif.setFontWeight(QFont::Bold);
        cursor.insertText(QStringLiteral("Über die Brücke"), serif);
        QTextBlockFormat centred;
        centred.setAlignment(Qt::AlignHCenter);
        centred.setBottomMargin(4);
        centred.setLineHeight(9, QTextBlockFormat::LineDistanceHeight);
        cursor.setBlockFormat(centred);

        QTextBlockFormat right;
        right.setAlignment(Qt::AlignRight);
        cursor.insertBlock(right);
        QTextCharFormat italicRed;
        italicRed.setFontFamilies({QStringLiteral("Roboto")});
        italicRed.setFontPointSize(17);
        italicRed.setFontItalic(true);
        italicRed.setForeground(QColor(255, 59, 48));
        cursor.insertText(QStringLiteral("kursiv rot"), italicRed);
        QTextCharFormat marked;
        marked.setFontFamilies({QStringLiteral("Roboto")});
        marked.setFontPointSize(12.5);
        marked.setFontUnderline(true);
        marked.setFontStrikeOut(true);
        cursor.insertText(QStringLiteral(" strich"), marked);

        QTextBlockFormat justified;
        justified.setAlignment(Qt::AlignJustify);
        cursor.insertBlock(justified);
        const QString special = QStringLiteral("{Klammern} \\ Tab\tZeile") + QChar(QChar::LineSeparator) +
                                QStringLiteral("nbsp") + QChar(QChar::Nbsp) + QStringLiteral("€ Привет 🌙 ß");
        cursor.insertText(special, WriterTypingAttributes::defaults());
        cursor.insertBlock(QTextBlockFormat());

        const auto decoded = roundTrip(*document);
        QVERIFY(decoded);
        QCOMPARE(decoded->blockCount(), 4);
        QCOMPARE(PoemRichText::plainText(*decoded), PoemRichText::plainText(*document));

        const QTextBlock title = decoded->begin();
        QCOMPARE(title.blockFormat().alignment() & Qt::AlignHorizontal_Mask, Qt::AlignHCenter);
        QCOMPARE(title.blockFormat().bottomMargin(), 4.0);
        QCOMPARE(title.blockFormat().lineHeightType(), int(QTextBlockFormat::LineDistanceHeight));
        QCOMPARE(title.blockFormat().lineHeight(), 9.0);
        const QTextCharFormat titleFormat = runsOf(title).first().format;
        QCOMPARE(familyOf(titleFormat), QStringLiteral("DejaVu Serif"));
        QCOMPARE(titleFormat.fontPointSize(), 20.0);
        QCOMPARE(titleFormat.fontWeight(), int(QFont::Bold));
        QVERIFY(!titleFormat.fontItalic());
        QVERIFY(!titleFormat.hasProperty(QTextFormat::ForegroundBrush));

        const QTextBlock second = title.next();
        QCOMPARE(second.blockFormat().alignment() & Qt::AlignHorizontal_Mask, Qt::AlignRight);
        const QList<Run> runs = runsOf(second);
        QCOMPARE(runs.size(), 2);
        QVERIFY(runs.at(0).format.fontItalic());
        QCOMPARE(runs.at(0).format.foreground().color(), QColor(255, 59, 48));
        QCOMPARE(runs.at(1).format.fontPointSize(), 12.5);
        QVERIFY(runs.at(1).format.fontUnderline());
        QVERIFY(runs.at(1).format.fontStrikeOut());
        QVERIFY(!runs.at(1).format.fontItalic());

        const QTextBlock third = second.next();
        QCOMPARE(third.blockFormat().alignment() & Qt::AlignHorizontal_Mask, Qt::AlignJustify);
        QCOMPARE(third.text(), special);
        QCOMPARE(runsOf(third).first().format.fontPointSize(), 17.0);
    }

    void searchHighlightAndOtherAttributesAreNeverWritten()
    {
        auto document = PoemRichText::fromPlainText(QStringLiteral("Mond über der Stadt"));
        QTextCursor cursor(document.get());
        cursor.setPosition(0);
        cursor.setPosition(4, QTextCursor::KeepAnchor);
        QTextCharFormat extra;
        extra.setBackground(Qt::yellow);
        extra.setFontOverline(true);
        extra.setFontLetterSpacing(150);
        cursor.mergeCharFormat(extra);
        QTextBlockFormat indented;
        indented.setLeftMargin(40);
        indented.setTopMargin(12);
        cursor.mergeBlockFormat(indented);

        const auto encoded = PoemRichText::encode(*document);
        QVERIFY(encoded.ok());
        QVERIFY(!encoded->contains("\\cb"));
        QVERIFY(!encoded->contains("\\highlight"));
        const auto decoded = PoemRichText::decode(*encoded);
        const QTextCharFormat format = runsOf(decoded->begin()).first().format;
        QVERIFY(!format.hasProperty(QTextFormat::BackgroundBrush));
        QVERIFY(!format.fontOverline());
        QCOMPARE(decoded->begin().blockFormat().leftMargin(), 0.0);
        QCOMPARE(decoded->begin().blockFormat().topMargin(), 0.0);
    }

    void imagesKeepTheirBytesAndDisplaySize()
    {
        auto document = PoemRichText::fromPlainText(QStringLiteral("Vor dem Bild\n"));
        const QImage image = patternImage(120, 80);
        const QString name = document->addPicture(image);
        QTextImageFormat format;
        format.setName(name);
        format.setWidth(60);
        format.setHeight(40);
        QTextCursor cursor(document.get());
        cursor.movePosition(QTextCursor::End);
        cursor.insertImage(format);
        cursor.insertImage(format);

        const auto encoded = PoemRichText::encode(*document);
        QVERIFY(encoded.ok());
        QVERIFY(encoded->contains("\\pngblip"));
        QVERIFY(encoded->contains("\\picwgoal1200"));
        QVERIFY(encoded->contains("\\pichgoal800"));
        const auto decoded = PoemRichText::decode(*encoded);
        QVERIFY(decoded);
        QCOMPARE(imageCount(*decoded), 2);
        const QTextImageFormat read = firstImage(*decoded);
        QCOMPARE(read.width(), 60.0);
        QCOMPARE(read.height(), 40.0);
        QCOMPARE(decoded->naturalSize(read.name()), QSizeF(120, 80));
        QCOMPARE(*decoded->pngData(read.name()), *document->pngData(name));
        const QImage shown = decoded->resource(QTextDocument::ImageResource, QUrl(read.name())).value<QImage>();
        QCOMPARE(shown.size(), QSize(120, 80));
        QCOMPARE(shown.pixel(10, 10), image.pixel(10, 10));
        QCOMPARE(PoemRichText::plainText(*decoded), QStringLiteral("Vor dem Bild\n") +
                                                        QChar(QChar::ObjectReplacementCharacter) +
                                                        QChar(QChar::ObjectReplacementCharacter));
    }

    void readsWhatLibreOfficeWrites()
    {
        const auto document = decodeRtf(readData(QStringLiteral("libreoffice-formatting.rtf")));
        QVERIFY(document);
        const QStringList lines = PoemRichText::plainText(*document).split(QLatin1Char('\n'));
        QCOMPARE(lines.at(0), QStringLiteral("Über die Brücke"));
        QCOMPARE(lines.at(1), QStringLiteral("Die Straße ist grün und rot, blau."));
        QCOMPARE(lines.at(2), QStringLiteral("unterstrichen und gestrichen – „Zitat“ € ß"));
        QCOMPARE(lines.at(3), QString());
        QCOMPARE(lines.at(4), QStringLiteral("Rechts bündig, Ærø, Ωμέγα, Привет"));

        const QTextBlock title = document->begin();
        QCOMPARE(title.blockFormat().alignment() & Qt::AlignHorizontal_Mask, Qt::AlignHCenter);
        QCOMPARE(title.blockFormat().bottomMargin(), 18.0);
        const QTextCharFormat titleFormat = formatOf(*document, QStringLiteral("Brücke"));
        QCOMPARE(familyOf(titleFormat), QStringLiteral("Roboto"));
        QCOMPARE(titleFormat.fontPointSize(), 20.0);
        QCOMPARE(titleFormat.fontWeight(), int(QFont::Bold));

        QCOMPARE(formatOf(*document, QStringLiteral("Straße")).fontWeight(), int(QFont::Bold));
        QCOMPARE(formatOf(*document, QStringLiteral(" ist ")).fontWeight(), int(QFont::Normal));
        QVERIFY(formatOf(*document, QStringLiteral("grün")).fontItalic());
        QCOMPARE(formatOf(*document, QStringLiteral("rot")).foreground().color(), QColor(201, 33, 30));
        QCOMPARE(formatOf(*document, QStringLiteral("blau")).foreground().color(), QColor(42, 96, 153));
        QVERIFY(formatOf(*document, QStringLiteral("unterstrichen")).fontUnderline());
        QVERIFY(formatOf(*document, QStringLiteral("gestrichen")).fontStrikeOut());
        QCOMPARE(familyOf(formatOf(*document, QStringLiteral("Straße"))), QStringLiteral("DejaVu Serif"));
        QCOMPARE(formatOf(*document, QStringLiteral("Straße")).fontPointSize(), 12.0);
        QCOMPARE(blockAt(*document, 4).blockFormat().alignment() & Qt::AlignHorizontal_Mask, Qt::AlignRight);
    }

    void readsAPictureLibreOfficePlacedAsAShape()
    {
        const auto document = decodeRtf(readData(QStringLiteral("libreoffice-image.rtf")));
        QVERIFY(document);
        QCOMPARE(imageCount(*document), 1);
        QCOMPARE(PoemRichText::plainText(*document), QStringLiteral("Vor dem Bild\n") +
                                                         QChar(QChar::ObjectReplacementCharacter) +
                                                         QStringLiteral("\nNach dem Bild"));
        const QTextImageFormat image = firstImage(*document);
        QCOMPARE(document->naturalSize(image.name()), QSizeF(40, 30));
        // 3 cm × 2.25 cm in points.
        QVERIFY(qAbs(image.width() - 84.95) < 0.1);
        QVERIFY(qAbs(image.height() - 63.7) < 0.1);
        QCOMPARE(blockAt(*document, 1).blockFormat().alignment() & Qt::AlignHorizontal_Mask, Qt::AlignHCenter);
    }

    void readsCodePagesUnicodeSkipsAndControlSymbols_data()
    {
        QTest::addColumn<QByteArray>("rtf");
        QTest::addColumn<QString>("expected");
        QTest::newRow("windows-1250 document")
            << QByteArray("{\\rtf1\\ansi\\ansicpg1250 \\'8aal\\'e8ek \\'9e}") << QStringLiteral("Šalček ž");
        QTest::newRow("cyrillic font charset")
            << QByteArray(
                   "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}{\\f1\\fcharset204 Arial Cyr;}}\\f1 \\'cc\\'e8\\'f0\\f0  "
                   "\\'e4}")
            << QStringLiteral("Мир ä");
        QTest::newRow("mac roman") << QByteArray("{\\rtf1\\mac \\'8a\\'9a}") << QStringLiteral("äö");
        QTest::newRow("unicode with two fallback bytes")
            << QByteArray("{\\rtf1\\uc2 a\\u8364\\'80\\'80b{\\uc0\\u-10180\\u-8423 }c}") << QStringLiteral("a€b🌙c");
        QTest::newRow("fallback cut short by a group end")
            << QByteArray("{\\rtf1 {\\uc3\\u252 x}y}") << QStringLiteral("üy");
        QTest::newRow("named characters")
            << QByteArray("{\\rtf1 a\\emdash b\\endash c\\~d\\_e\\lquote f\\rquote \\ldblquote g\\rdblquote\\bullet}")
            << QStringLiteral("a—b–c\u00A0d\u2011e‘f’“g”•");
        QTest::newRow("line, tab and escaped symbols")
            << QByteArray("{\\rtf1 eins\\line zwei\\tab drei \\{\\}\\\\}") << QStringLiteral("eins\nzwei\tdrei {}\\");
        QTest::newRow("ignorable and skipped destinations")
            << QByteArray("{\\rtf1{\\info{\\title Titel}}{\\*\\unbekannt geheim}{\\stylesheet{\\s0 Normal;}}"
                          "{\\field{\\*\\fldinst HYPERLINK x}{\\fldrslt sichtbar}}{\\footnote Fu\\'dfnote} Text}")
            << QStringLiteral("sichtbar Text");
        QTest::newRow("hidden text") << QByteArray("{\\rtf1 sicht{\\v versteckt}bar}") << QStringLiteral("sichtbar");
        QTest::newRow("paragraphs") << QByteArray("{\\rtf1 a\\par b\\par\n\\par c\\\nd}")
                                    << QStringLiteral("a\nb\n\nc\nd");
        QTest::newRow("binary data skipped") << QByteArray("{\\rtf1 a{\\*\\blob\\bin3 }}}}b}") << QStringLiteral("ab");
    }

    void readsCodePagesUnicodeSkipsAndControlSymbols()
    {
        QFETCH(QByteArray, rtf);
        QFETCH(QString, expected);
        const auto document = decodeRtf(rtf);
        QVERIFY(document);
        QCOMPARE(PoemRichText::plainText(*document), expected);
    }

    void unreadableDataCountsAsAbsent_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::newRow("garbage") << QByteArray("\x00\x01\x02 not rich text", 19);
        QTest::newRow("plain text") << QByteArray("Mond über der Stadt");
        QTest::newRow("html") << QByteArray("<html><body>Mond</body></html>");
        QTest::newRow("rtfd without rtf") << QByteArray("rtfd\x00\x00\x00\x00\x01\x00\x00\x00", 12);
        QTest::newRow("rtf that decodes to nothing") << QByteArray("{\\rtf1{\\info{\\title leer}}}");
    }

    void unreadableDataCountsAsAbsent()
    {
        QFETCH(QByteArray, data);
        DisplayedPoemText::Input input;
        input.richTextData = data;
        input.text = QStringLiteral("Der Mond ist aufgegangen");
        const auto shown = DisplayedPoemText::build(input);
        QCOMPARE(shown.source, DisplayedPoemText::Source::plainText);
        QCOMPARE(PoemRichText::plainText(*shown.document), *input.text);
        QCOMPARE(input.richTextData, std::optional<QByteArray>(data));
    }

    void readsTheFlatRtfdStreamOfAnotherPlatform_data()
    {
        QTest::addColumn<quint32>("extraWords");
        QTest::addColumn<bool>("scrambledHeader");
        QTest::newRow("names then files") << quint32(0) << false;
        QTest::newRow("one word per entry between") << quint32(1) << false;
        QTest::newRow("unknown header, found by signatures") << quint32(0) << true;
    }

    void readsTheFlatRtfdStreamOfAnotherPlatform()
    {
        QFETCH(quint32, extraWords);
        QFETCH(bool, scrambledHeader);
        const QByteArray png = pngBytes(patternImage(64, 48));
        const QByteArray rtf = "{\\rtf1\\ansi\\ansicpg1252\\cocoartf2761\n"
                               "{\\fonttbl\\f0\\fnil\\fcharset0 Roboto-BoldItalic;\\f1\\fswiss\\fcharset0 Helvetica;}\n"
                               "{\\colortbl;\\red255\\green255\\blue255;\\red179\\green144\\blue67;}\n"
                               "\\pard\\qc\\partightenfactor0\n\\f0\\fs34 \\cf2 Mondlicht\\\n"
                               "{{\\NeXTGraphic Pasted Graphic.png \\width960 \\height720 \\appleattachmentpadding0 "
                               "\\appleembedtype0 \\appleaqc\n}\\'ac}\\\n\\f1\\fs24 \\cf0 Ende}";
        QByteArray stream = flatRtfd({{"TXT.rtf", rtf}, {"Pasted Graphic.png", png}}, extraWords);
        if (scrambledHeader)
            stream[8] = char(0x7F);
        const auto document = PoemRichText::decode(stream);
        QVERIFY(document);
        QCOMPARE(PoemRichText::plainText(*document),
                 QStringLiteral("Mondlicht\n") + QChar(QChar::ObjectReplacementCharacter) + QStringLiteral("\nEnde"));
        const QTextImageFormat image = firstImage(*document);
        QCOMPARE(image.width(), 48.0);
        QCOMPARE(image.height(), 36.0);
        QCOMPARE(document->naturalSize(image.name()), QSizeF(64, 48));
        const QTextCharFormat title = formatOf(*document, QStringLiteral("Mondlicht"));
        QCOMPARE(familyOf(title), QStringLiteral("Roboto"));
        QCOMPARE(title.fontWeight(), int(QFont::Bold));
        QVERIFY(title.fontItalic());
        QCOMPARE(title.foreground().color(), QColor(179, 144, 67));
        QCOMPARE(familyOf(formatOf(*document, QStringLiteral("Ende"))), QStringLiteral("Helvetica"));
    }

    void everyPictureFormIsKeptByteForByte_data()
    {
        QTest::addColumn<QByteArray>("stored");
        QTest::addColumn<QByteArray>("picture");
        QTest::addColumn<bool>("shown");
        QTest::addColumn<QByteArray>("writtenAs");
        const QImage image = patternImage(60, 40);
        const QByteArray png = encoded(image, "PNG");
        const QByteArray jpeg = encoded(image, "JPEG");
        const QByteArray bmp = encoded(image, "BMP");
        const QByteArray dib = bmp.mid(14);
        const QByteArray tiff = encoded(image, "TIFF");
        const QByteArray webp = encoded(image, "WEBP");
        const QByteArray gif = readData(QStringLiteral("corpus/stern.gif"));
        QVERIFY(!tiff.isEmpty() && !webp.isEmpty() && !gif.isEmpty());
        QTest::newRow("png inline") << pictRtf("pngblip", png) << png << true << QByteArray("\\pngblip");
        QTest::newRow("jpeg inline") << pictRtf("jpegblip", jpeg) << jpeg << true << QByteArray("\\jpegblip");
        QTest::newRow("jpeg declared as png") << pictRtf("pngblip", jpeg) << jpeg << true << QByteArray("\\jpegblip");
        QTest::newRow("device-independent bitmap")
            << pictRtf("dibitmap0", dib) << dib << true << QByteArray("\\dibitmap0");
        QTest::newRow("emf") << pictRtf("emfblip", emptyEmf()) << emptyEmf() << false << QByteArray("\\emfblip");
        QTest::newRow("wmf") << pictRtf("wmetafile8", emptyWmf()) << emptyWmf() << false << QByteArray("\\wmetafile8");
        QTest::newRow("mac picture") << pictRtf("macpict", QByteArray(64, 'x')) << QByteArray(64, 'x') << false
                                     << QByteArray("\\macpict");
        QTest::newRow("png attachment") << attachmentRtfd("Mond.png", png) << png << true << QByteArray("rtfd");
        QTest::newRow("gif attachment") << attachmentRtfd("Stern.gif", gif) << gif << true << QByteArray("rtfd");
        QTest::newRow("tiff attachment") << attachmentRtfd("Pasted Graphic.tiff", tiff) << tiff << true
                                         << QByteArray("rtfd");
        QTest::newRow("webp attachment") << attachmentRtfd("Bild.webp", webp) << webp << true << QByteArray("rtfd");
        QTest::newRow("bmp attachment") << attachmentRtfd("Bild.bmp", bmp) << bmp << true << QByteArray("rtfd");
        QTest::newRow("pdf attachment") << attachmentRtfd("Skizze.pdf", onePagePdf()) << onePagePdf() << true
                                        << QByteArray("rtfd");
        QTest::newRow("unknown attachment") << attachmentRtfd("Tabelle.numbers", QByteArray(300, '\x07'))
                                            << QByteArray(300, '\x07') << false << QByteArray("rtfd");
    }

    void everyPictureFormIsKeptByteForByte()
    {
        QFETCH(QByteArray, stored);
        QFETCH(QByteArray, picture);
        QFETCH(bool, shown);
        QFETCH(QByteArray, writtenAs);
        const auto document = PoemRichText::decode(stored);
        QVERIFY(document);
        QCOMPARE(document->toRawText(), QStringLiteral("a") + QChar(QChar::ObjectReplacementCharacter) + u'b');
        const QTextImageFormat image = firstImage(*document);
        QCOMPARE(pictureBytesOf(*document), picture);
        QCOMPARE(QSizeF(image.width(), image.height()), QSizeF(60, 40));
        QCOMPARE(document->canShow(image.name()), shown);
        QCOMPARE(document->pngData(image.name()).has_value(), shown);
        // What cannot be drawn still takes its place on the page, as a framed placeholder.
        const QImage painted = document->resource(QTextDocument::ImageResource, QUrl(image.name())).value<QImage>();
        QVERIFY(!painted.isNull());
        if (shown)
            QVERIFY(painted.pixelColor(painted.width() / 2, painted.height() / 2).red() > 150);

        const auto written = PoemRichText::encode(*document);
        QVERIFY(written.ok());
        QVERIFY2(written->startsWith(writtenAs) || written->contains(writtenAs), written->left(200).constData());
        const auto again = PoemRichText::decode(*written);
        QVERIFY(again);
        QCOMPARE(again->toRawText(), document->toRawText());
        QCOMPARE(pictureBytesOf(*again), picture);
        QCOMPARE(again->picture(firstImage(*again).name())->fileName, document->picture(image.name())->fileName);
        QCOMPARE(firstImage(*again).width(), 60.0);
        QCOMPARE(firstImage(*again).height(), 40.0);
    }

    void resizingMeasuresAgainstTheNaturalSizeOfEveryPicture()
    {
        // A metafile knows no pixels: its natural size is the size it was placed at.
        const auto document = PoemRichText::decode(pictRtf("emfblip", emptyEmf()));
        QCOMPARE(document->naturalSize(firstImage(*document).name()), QSizeF(60, 40));
        const auto photo = PoemRichText::decode(pictRtf("jpegblip", encoded(patternImage(1600, 1200), "JPEG")));
        QCOMPARE(photo->naturalSize(firstImage(*photo).name()), QSizeF(1600, 1200));
    }

    void twoPicturesOfOneNameStayTwoAttachments()
    {
        const QByteArray first = encoded(patternImage(30, 20), "TIFF");
        const QByteArray second = encoded(patternImage(31, 20), "TIFF");
        auto document = PoemRichText::decode(attachmentRtfd("Bild.tiff", first));
        auto other = PoemRichText::decode(attachmentRtfd("Bild.tiff", second));
        document->adoptPictures(*other);
        QTextCursor cursor(document.get());
        cursor.movePosition(QTextCursor::End);
        cursor.insertImage(firstImage(*other));
        cursor.insertImage(firstImage(*document));
        const auto again = PoemRichText::decode(*PoemRichText::encode(*document));
        QList<QByteArray> bytes;
        for (QTextBlock block = again->begin(); block.isValid(); block = block.next()) {
            for (const Run &run : runsOf(block)) {
                if (run.format.isImageFormat())
                    bytes.append(again->picture(run.format.toImageFormat().name())->bytes);
            }
        }
        QCOMPARE(bytes, (QList<QByteArray>{first, second, first}));
    }

    void readerStopsAtTheDocumentsEnd_data()
    {
        QTest::addColumn<QByteArray>("stored");
        QTest::addColumn<QString>("text");
        QTest::newRow("letters after the brace") << QByteArray("{\\rtf1 abc}XYZ") << QStringLiteral("abc");
        QTest::newRow("groups after the brace")
            << QByteArray("{\\rtf1 abc}{\\rtf1 def}\\par ghi") << QStringLiteral("abc");
        // Without length prefixes the container's RTF runs on into the picture's bytes.
        QByteArray rtfd("rtfd\x01\x02\x03");
        rtfd += "{\\rtf1\\ansi Vers{{\\NeXTGraphic a.png \\width200 \\height200}\\'ac}}";
        rtfd += encoded(patternImage(10, 10), "PNG") + "Tail text";
        QTest::newRow("rtfd without prefixes") << rtfd << QStringLiteral("Vers");
    }

    void readerStopsAtTheDocumentsEnd()
    {
        QFETCH(QByteArray, stored);
        QFETCH(QString, text);
        const auto document = PoemRichText::decode(stored);
        QVERIFY(document);
        QCOMPARE(document->toPlainText().remove(QChar::ObjectReplacementCharacter), text);
    }

    void wordShapesFieldsAndUnicodeRunsReadOnce_data()
    {
        QTest::addColumn<QByteArray>("rtf");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("pictures");
        const QByteArray png = encoded(patternImage(8, 8), "PNG").toHex();
        QTest::newRow("shape with its fallback drawing")
            << "{\\rtf1 a{\\shp{\\*\\shpinst\\shpleft0\\shptop0\\shpright400\\shpbottom400{\\sp{\\sn pib}{\\sv "
               "{\\pict\\pngblip " +
                   png + "}}}}{\\shprslt{\\*\\do\\dobxcolumn}{\\pict\\pngblip " + png + "}}}b}"
            << QStringLiteral("a\uFFFCb") << 1;
        QTest::newRow("text box with its fallback")
            << QByteArray("{\\rtf1 a{\\shp{\\*\\shpinst\\shpleft0\\shpright400{\\sp{\\sn shapeType}{\\sv 202}}"
                          "{\\shptxt \\pard Im Kasten\\par}}{\\shprslt{\\*\\do\\dptxbx{\\dptxbxtext Im Kasten}}}}b}")
            << QStringLiteral("aIm Kasten\nb") << 0;
        QTest::newRow("shape we cannot read shows its fallback")
            << "{\\rtf1 a{\\shp{\\*\\shpinst{\\sp{\\sn shapeType}{\\sv 136}}}{\\shprslt{\\pict\\pngblip " + png +
                   "}}}b}"
            << QStringLiteral("a\uFFFCb") << 1;
        QTest::newRow("picture for new and old readers")
            << "{\\rtf1 a{\\*\\shppict{\\pict\\pngblip " + png + "}}{\\nonshppict{\\pict\\wmetafile8 " +
                   emptyWmf().toHex() + "}}b}"
            << QStringLiteral("a\uFFFCb") << 1;
        QTest::newRow("field shows its result")
            << QByteArray("{\\rtf1 {\\field{\\*\\fldinst HYPERLINK \"https://example.org\"}{\\fldrslt Link}}}")
            << QStringLiteral("Link") << 0;
        QTest::newRow("upr reads the unicode text")
            << QByteArray("{\\rtf1 {\\upr{Gr\\'fc\\'df}{\\*\\ud{Gr\\u252?\\u223?}}} e}") << QStringLiteral("Grüß e")
            << 0;
        QTest::newRow("paragraph separator")
            << QByteArray("{\\rtf1 eins\\u8233?zwei}") << QStringLiteral("eins\nzwei") << 0;
        QTest::newRow("symbol font bytes")
            << QByteArray("{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f1\\froman\\fcharset2 Symbol;}}\\f0 x {\\f1 a\\'b3p} y}")
            << QStringLiteral("x α≥π y") << 0;
        QTest::newRow("symbol font in the private use area")
            << QByteArray("{\\rtf1{\\fonttbl{\\f1\\fnil\\fcharset2 Symbol;}}{\\f1\\u-3999\\'61}}")
            << QStringLiteral("α") << 0;
    }

    void wordShapesFieldsAndUnicodeRunsReadOnce()
    {
        QFETCH(QByteArray, rtf);
        QFETCH(QString, text);
        QFETCH(int, pictures);
        const auto document = decodeRtf(rtf);
        QVERIFY(document);
        QCOMPARE(PoemRichText::plainText(*document).replace(QChar::ObjectReplacementCharacter, u'\uFFFC'), text);
        QCOMPARE(imageCount(*document), pictures);
    }

    void unicodeNamesOfFontsAndAttachmentsRoundTrip()
    {
        const QByteArray png = encoded(patternImage(12, 12), "PNG");
        const QByteArray rtf = "{\\rtf1\\ansi\\ansicpg1252{\\fonttbl{\\f0\\fnil\\fcharset0 Sch\\u246?ne "
                               "\\u12501?\\u12457?\\u12531?\\u12488?;}}\\f0 a{{\\NeXTGraphic Gr\\u252?n "
                               "\\u26408?.png \\width240 \\height240}\\'ac}}";
        const QString font = QStringLiteral("Schöne フォント");
        const QString file = QStringLiteral("Grün 木.png");
        const auto document = PoemRichText::decode(flatRtfd({{"TXT.rtf", rtf}, {file.toUtf8(), png}}));
        QVERIFY(document);
        QCOMPARE(familyOf(formatOf(*document, QStringLiteral("a"))), font);
        QCOMPARE(imageCount(*document), 1);
        QCOMPARE(document->picture(firstImage(*document).name())->fileName, file);

        const auto again = PoemRichText::decode(*PoemRichText::encode(*document));
        QCOMPARE(familyOf(formatOf(*again, QStringLiteral("a"))), font);
        QCOMPARE(again->picture(firstImage(*again).name())->fileName, file);
        QCOMPARE(pictureBytesOf(*again), png);
    }

    void readsAndRewritesTheCorpusOfOtherPrograms_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QList<QByteArray>>("pictures");
        const QByteArray moon = readData(QStringLiteral("corpus/mond.png"));
        const QByteArray forest = readData(QStringLiteral("corpus/wald.jpg"));
        const QChar image(QChar::ObjectReplacementCharacter);
        QTest::newRow("pandoc") << QStringLiteral("pandoc-pictures.rtf")
                                << QStringLiteral("Herbsttag\nÜber die Brücke geht der Wind – „leise“.\n%1\n"
                                                  "Zwischen den Bildern\n%1\nEnde")
                                       .arg(image)
                                << QList<QByteArray>{moon, forest};
        QTest::newRow("abiword") << QStringLiteral("abiword-pictures.rtf")
                                 << QStringLiteral(
                                        "Abendlied\nÜber den Hügeln – Ωμέγα € ß\n%1\nZwischen den Bildern\n%1\n"
                                        "Ende\n\n\n")
                                        .arg(image)
                                 << QList<QByteArray>{moon, forest};
        // LibreOffice writes pictures of its own making (the JPEG, too, becomes a PNG).
        QTest::newRow("libreoffice") << QStringLiteral("libreoffice-pictures.rtf")
                                     << QStringLiteral("Nachtstück – Ωμέγα und „Mond“\n%1\nZwischen den Bildern\n%1\n"
                                                       "Im Kasten steht ein Vers\nNach dem Kasten")
                                            .arg(image)
                                     << QList<QByteArray>{QByteArray(), QByteArray()};
        QTest::newRow("word") << QStringLiteral("word-constructs.rtf")
                              << QStringLiteral("Winterreise\nFremd bin ich eingezogen\nGrüß aus Lindenbaum\n"
                                                "Formel: α≥β, η und π\nSiehe Quelle\nErste Zeile\nZweite Zeile\n%1\n"
                                                "%1Nach dem Bild\nIm Kasten steht ein Vers\nEnde")
                                     .arg(image)
                              << QList<QByteArray>{moon, forest};
    }

    void readsAndRewritesTheCorpusOfOtherPrograms()
    {
        QFETCH(QString, file);
        QFETCH(QString, text);
        QFETCH(QList<QByteArray>, pictures);
        const auto document = decodeRtf(readData(QStringLiteral("corpus/") + file));
        QVERIFY(document);
        QCOMPARE(PoemRichText::plainText(*document), text);
        const auto picturesOf = [](const PoemTextDocument &read) {
            QList<StoredPicture> found;
            for (QTextBlock block = read.begin(); block.isValid(); block = block.next()) {
                for (const Run &run : runsOf(block)) {
                    if (run.format.isImageFormat())
                        found.append(*read.picture(run.format.toImageFormat().name()));
                }
            }
            return found;
        };
        const QList<StoredPicture> read = picturesOf(*document);
        QCOMPARE(read.size(), pictures.size());
        for (qsizetype i = 0; i < read.size(); ++i) {
            QVERIFY(PictureFormats::pixelSize(read.at(i).bytes, read.at(i).format));
            if (!pictures.at(i).isEmpty())
                QCOMPARE(read.at(i).bytes, pictures.at(i));
        }

        const auto again = PoemRichText::decode(*PoemRichText::encode(*document));
        QCOMPARE(PoemRichText::plainText(*again), text);
        const QList<StoredPicture> rewritten = picturesOf(*again);
        QCOMPARE(rewritten.size(), read.size());
        for (qsizetype i = 0; i < read.size(); ++i)
            QCOMPARE(rewritten.at(i).bytes, read.at(i).bytes);
    }

    void hostileInputStaysBoundedAndCheap_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::newRow("deep nesting") << QByteArray("{\\rtf1 ") + QByteArray(200000, '{') + "x" +
                                             QByteArray(200000, '}');
        QTest::newRow("unbalanced closing") << QByteArray("{\\rtf1 a}}}}}}}}b\\par c");
        QTest::newRow("huge numbers") << QByteArray("{\\rtf1\\fs99999999999999999\\u99999999999\\uc999999999 x\\sa-5}");
        QTest::newRow("binary past the end") << QByteArray("{\\rtf1 \\bin2147483647 abc");
        QTest::newRow("many pictures") << QByteArray("{\\rtf1 ") +
                                              QByteArray("{\\pict\\pngblip 89504e47}").repeated(5000);
        QTest::newRow("font table flood")
            << QByteArray("{\\rtf1{\\fonttbl") + QByteArray("{\\f1 A;}").repeated(20000) + "}x}";
        QTest::newRow("truncated escape") << QByteArray("{\\rtf1 \\'");
        QTest::newRow("lone surrogates") << QByteArray("{\\rtf1\\uc0 \\u-10179 a\\u-8694 }");
    }

    void hostileInputStaysBoundedAndCheap()
    {
        QFETCH(QByteArray, data);
        QElapsedTimer timer;
        timer.start();
        const auto document = PoemRichText::decode(data);
        QVERIFY(document);
        QVERIFY(document->characterCount() <= data.size() + 1);
        QVERIFY(PoemRichText::encode(*document).ok());
    }

    void appendingAnImageFitsItIntoTheBox_data()
    {
        QTest::addColumn<QSize>("pixels");
        QTest::addColumn<QSizeF>("shown");
        QTest::newRow("wide") << QSize(1000, 800) << QSizeF(500, 400);
        QTest::newRow("tall") << QSize(300, 900) << QSizeF(650.0 / 3, 650);
        QTest::newRow("small stays") << QSize(100, 50) << QSizeF(100, 50);
    }

    void appendingAnImageFitsItIntoTheBox()
    {
        QFETCH(QSize, pixels);
        QFETCH(QSizeF, shown);
        const QString path = m_dir.filePath(QStringLiteral("append.jpg"));
        QVERIFY(patternImage(pixels.width(), pixels.height()).save(path, "JPEG"));
        auto document = PoemRichText::fromPlainText(QStringLiteral("Strophe"));
        QVERIFY(PoemRichText::appendImage(path, *document).ok());
        QCOMPARE(document->blockCount(), 2);
        const QTextBlock last = document->lastBlock();
        QCOMPARE(last.text(), QString(QChar(QChar::ObjectReplacementCharacter)));
        QCOMPARE(last.blockFormat().alignment() & Qt::AlignHorizontal_Mask, Qt::AlignHCenter);
        const QTextImageFormat image = firstImage(*document);
        QVERIFY(qAbs(image.width() - shown.width()) < 0.01);
        QVERIFY(qAbs(image.height() - shown.height()) < 0.01);
        // Stored in the file's own bytes; readers that need PNG get one made from them.
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(document->picture(image.name())->bytes, file.readAll());
        QVERIFY(document->pngData(image.name())->startsWith("\x89PNG"));
    }

    void appendingToAnEmptyBodyUsesItsOnlyParagraph()
    {
        const QString path = m_dir.filePath(QStringLiteral("append.png"));
        QVERIFY(patternImage(20, 20).save(path));
        auto document = PoemRichText::fromPlainText(QString());
        QVERIFY(PoemRichText::appendImage(path, *document).ok());
        QCOMPARE(document->blockCount(), 1);
        QVERIFY(!PoemRichText::appendImage(m_dir.filePath(QStringLiteral("missing.png")), *document).ok());
        QCOMPARE(imageCount(*document), 1);
    }

    void theImageImportAppendsToTheFormattedOrThePlainBody()
    {
        const QString path = m_dir.filePath(QStringLiteral("import.png"));
        QVERIFY(patternImage(1000, 500).save(path));
        auto formatted = PoemRichText::fromPlainText(QStringLiteral("Reich"));
        QTextCursor bold(formatted.get());
        bold.select(QTextCursor::Document);
        QTextCharFormat heavy;
        heavy.setFontWeight(QFont::Bold);
        bold.mergeCharFormat(heavy);

        const auto onRich =
            PoemRichText::appendingImage(path, *PoemRichText::encode(*formatted), QStringLiteral("alt"));
        QVERIFY(onRich.ok());
        QCOMPARE(onRich->text, QStringLiteral("Reich\n") + QChar(QChar::ObjectReplacementCharacter));
        const auto stored = PoemRichText::decode(onRich->richTextData);
        QCOMPARE(formatOf(*stored, QStringLiteral("Reich")).fontWeight(), int(QFont::Bold));
        QCOMPARE(firstImage(*stored).width(), 500.0);

        const auto onPlain = PoemRichText::appendingImage(path, QByteArray("kaputt"), QStringLiteral("Schlicht"));
        QVERIFY(onPlain.ok());
        QCOMPARE(onPlain->text, QStringLiteral("Schlicht\n") + QChar(QChar::ObjectReplacementCharacter));
        QVERIFY(!PoemRichText::appendingImage(m_dir.filePath(QStringLiteral("fehlt.png")), std::nullopt, std::nullopt));
    }

    void plainTextBecomesTheDefaultAttributes()
    {
        const QString text = QStringLiteral("Erste Zeile\nZweite Zeile\r\n\nDritte");
        const auto encoded = PoemRichText::encodePlainText(text);
        QVERIFY(encoded.ok());
        const auto decoded = PoemRichText::decode(*encoded);
        QCOMPARE(PoemRichText::plainText(*decoded), QStringLiteral("Erste Zeile\nZweite Zeile\n\nDritte"));
        for (QTextBlock block = decoded->begin(); block.isValid(); block = block.next()) {
            const QTextCharFormat format = block.length() > 1 ? runsOf(block).first().format : block.charFormat();
            QCOMPARE(familyOf(format), QStringLiteral("Roboto"));
            QCOMPARE(format.fontPointSize(), 17.0);
            QVERIFY(!format.hasProperty(QTextFormat::ForegroundBrush));
        }
    }
};

QTEST_MAIN(PoemRichTextTest)
#include "tst_poemrichtext.moc"
