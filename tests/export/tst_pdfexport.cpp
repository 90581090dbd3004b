#include "editor/PoemTextDocument.h"
#include "export/OdeLeafLogo.h"
#include "export/PDFExporter.h"
#include "export/PdfPageLayout.h"

#include <poppler-qt6.h>

#include <QTest>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextImageFormat>

namespace {

std::unique_ptr<Poppler::Document> load(const QByteArray &pdf)
{
    auto document = Poppler::Document::loadFromData(pdf);
    if (document)
        document->setRenderHint(Poppler::Document::Antialiasing, false);
    return document;
}

QString pageText(Poppler::Document &document, int page)
{
    return document.page(page)->text(QRectF());
}

// The logo's greens in the footer box, where nothing else is drawn.
bool hasLogo(Poppler::Document &document, int page)
{
    const QImage image = document.page(page)->renderToImage(72, 72);
    const QRect box = PdfPageLayout::footerLogoRect(OdeLeafLogo::image().deviceIndependentSize()).toAlignedRect();
    int green = 0;
    for (int y = box.top(); y <= box.bottom(); ++y) {
        for (int x = box.left(); x <= box.right(); ++x) {
            const QColor c = image.pixelColor(x, y);
            if (c.green() > c.red() + 20 && c.green() > c.blue() + 10)
                ++green;
        }
    }
    return green > 20;
}

// Verses "Vers N der langen Nacht"; a blank line after every stanzaLength verses, and a
// picture of the given height after every pictureEvery verses (both 0 for none).
ExportDocument poemOfLines(int count, int stanzaLength = 0, int pictureEvery = 0, double pictureHeight = 0)
{
    ExportDocument document;
    document.title = QStringLiteral("Lange Nacht");
    document.metaLines = {QStringLiteral("Datum: 01.03.2024"), QStringLiteral("Kategorie: Lyrik")};
    QStringList lines;
    for (int i = 1; i <= count; ++i) {
        lines << QStringLiteral("Vers %1 der langen Nacht").arg(i);
        if (stanzaLength > 0 && i % stanzaLength == 0 && i < count)
            lines << QString();
    }
    if (pictureEvery == 0) {
        document.plainText = lines.join(QLatin1Char('\n'));
        return document;
    }
    auto rich = std::make_shared<PoemTextDocument>();
    QTextCursor cursor(rich.get());
    QImage picture(40, 40, QImage::Format_RGB32);
    picture.fill(QColor(0, 0, 255));
    const QString name = rich->addPicture(picture);
    int verses = 0;
    for (const QString &line : std::as_const(lines)) {
        if (!cursor.atStart())
            cursor.insertBlock();
        cursor.insertText(line);
        if (!line.isEmpty() && ++verses % pictureEvery == 0) {
            QTextImageFormat image;
            image.setName(name);
            image.setWidth(200);
            image.setHeight(pictureHeight);
            cursor.insertBlock();
            cursor.insertImage(image);
        }
    }
    document.richText = rich;
    return document;
}

struct VerseBox {
    int verse;
    QRectF box;
};

// The verse lines poppler finds on a page, each the union of its words' boxes.
QList<VerseBox> verseBoxes(Poppler::Page &page)
{
    QList<VerseBox> verses;
    const auto words = page.textList();
    for (const auto &word : words) {
        const Poppler::TextBox *number = word->nextWord();
        if (word->text() != QLatin1String("Vers") || !number)
            continue;
        QRectF box = word->boundingBox();
        for (const Poppler::TextBox *next = number; next; next = next->nextWord())
            box = box.united(next->boundingBox());
        verses.append({number->text().toInt(), box});
    }
    return verses;
}

bool hasInk(const QImage &page, const QRectF &box)
{
    const QRect pixels = box.toAlignedRect().intersected(page.rect());
    for (int y = pixels.top(); y <= pixels.bottom(); ++y) {
        for (int x = pixels.left(); x <= pixels.right(); ++x) {
            if (qGray(page.pixel(x, y)) < 128)
                return true;
        }
    }
    return false;
}

int blueRows(const QImage &page)
{
    int rows = 0;
    for (int y = 0; y < page.height(); ++y) {
        for (int x = 0; x < page.width(); ++x) {
            const QColor c = page.pixelColor(x, y);
            if (c.blue() > 180 && c.red() < 80 && c.green() < 80) {
                ++rows;
                break;
            }
        }
    }
    return rows;
}

} // namespace

class PdfExportTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void pageGeometryIsA4WithTheFixedMargins()
    {
        QCOMPARE(PdfPageLayout::textRect(), QRectF(64, 90, 467.2, 687.8));
        // A square logo is bounded by the 36 pt height; a wide one by the 110 pt width.
        QCOMPARE(PdfPageLayout::footerLogoRect(QSizeF(128, 128)), QRectF((595.2 - 36) / 2, 841.8 - 28 - 36, 36, 36));
        QCOMPARE(PdfPageLayout::footerLogoRect(QSizeF(440, 44)), QRectF((595.2 - 110) / 2, 841.8 - 28 - 11, 110, 11));
        QVERIFY(PdfPageLayout::footerLogoRect(QSizeF(0, 10)).isEmpty());
        QVERIFY(!OdeLeafLogo::image().isNull());
    }

    void everyVerseLiesWholeInsideTheTextRectOfOnePage_data()
    {
        QTest::addColumn<int>("verses");
        QTest::addColumn<int>("stanzaLength");
        QTest::addColumn<int>("pictureEvery");
        QTest::addColumn<double>("pictureHeight");
        for (const int verses : {1, 2, 36, 37, 38, 39, 40, 75, 149, 150, 151, 400})
            QTest::addRow("%d verses", verses) << verses << 0 << 0 << 0.0;
        for (const int verses : {37, 150, 151, 400})
            QTest::addRow("%d verses in stanzas of 4", verses) << verses << 4 << 0 << 0.0;
        QTest::newRow("150 verses in stanzas of 5") << 150 << 5 << 0 << 0.0;
        QTest::newRow("1 verse and a picture") << 1 << 0 << 1 << 120.0;
        QTest::newRow("60 verses, a picture every 20") << 60 << 0 << 20 << 200.0;
        QTest::newRow("150 verses in stanzas, pictures") << 150 << 6 << 13 << 90.0;
        QTest::newRow("120 verses, page-high pictures") << 120 << 4 << 40 << 650.0;
    }

    // Each verse is looked for by its box in the text layer and by its ink on the rendered
    // page: a line clipped off the paper keeps its text but shows nothing.
    void everyVerseLiesWholeInsideTheTextRectOfOnePage()
    {
        QFETCH(int, verses);
        QFETCH(int, stanzaLength);
        QFETCH(int, pictureEvery);
        QFETCH(double, pictureHeight);
        const auto pdf = PDFExporter::data(poemOfLines(verses, stanzaLength, pictureEvery, pictureHeight));
        QVERIFY(pdf.ok());
        const auto document = load(*pdf);
        QVERIFY(document);
        const QRectF inside = PdfPageLayout::textRect().adjusted(-0.5, -0.5, 0.5, 0.5);
        QList<int> found(verses + 1, 0);
        int pictureRows = 0;
        for (int index = 0; index < document->numPages(); ++index) {
            const auto page = document->page(index);
            const QString where = QStringLiteral("page %1").arg(index + 1);
            const QSizeF size = page->pageSizeF();
            QVERIFY(qAbs(size.width() - 595.2) < 1 && qAbs(size.height() - 841.8) < 1);
            QVERIFY2(hasLogo(*document, index), qPrintable(where));
            const QImage image = page->renderToImage(72, 72);
            for (const VerseBox &verse : verseBoxes(*page)) {
                const QString what = QStringLiteral("Vers %1 on %2 at %3–%4 pt")
                                         .arg(verse.verse)
                                         .arg(where)
                                         .arg(verse.box.top())
                                         .arg(verse.box.bottom());
                QVERIFY2(verse.verse >= 1 && verse.verse <= verses, qPrintable(what));
                QVERIFY2(inside.contains(verse.box), qPrintable(what));
                QVERIFY2(hasInk(image, verse.box), qPrintable(what));
                ++found[verse.verse];
            }
            pictureRows += blueRows(image);
        }
        for (int verse = 1; verse <= verses; ++verse)
            QVERIFY2(found[verse] == 1,
                     qPrintable(QStringLiteral("Vers %1 found %2 times").arg(verse).arg(found[verse])));
        const int pictures = pictureEvery > 0 ? verses / pictureEvery : 0;
        QVERIFY2(qAbs(pictureRows - pictures * pictureHeight) <= 2 * pictures,
                 qPrintable(QStringLiteral("%1 rows of %2 pictures").arg(pictureRows).arg(pictures)));
    }

    void emptyPoemIsOnePageWithTitleMetaAndPlaceholder()
    {
        ExportDocument empty;
        empty.title = QStringLiteral("Ohne Worte");
        empty.metaLines = {QStringLiteral("Kategorie: Lyrik")};
        empty.richText = std::make_shared<PoemTextDocument>();
        const auto pdf = PDFExporter::data(empty);
        QVERIFY(pdf.ok());
        const auto document = load(*pdf);
        QVERIFY(document);
        QCOMPARE(document->numPages(), 1);
        const QString text = pageText(*document, 0);
        QVERIFY(text.contains(QLatin1String("Ohne Worte")));
        QVERIFY(text.contains(QLatin1String("Kategorie: Lyrik")));
        QVERIFY(text.contains(QStringLiteral("— kein Text —")));
        QVERIFY(hasLogo(*document, 0));
    }

    void titleMetadataHoldsNoControlCharacters()
    {
        ExportDocument document = poemOfLines(2);
        document.title = QStringLiteral("Nacht\u0001\u001B") + QChar(0xD800) + QStringLiteral("lied");
        const auto pdf = PDFExporter::data(document);
        QVERIFY(pdf.ok());
        const auto loaded = load(*pdf);
        QVERIFY(loaded);
        QCOMPARE(loaded->info(QStringLiteral("Title")), QStringLiteral("Nachtlied"));
    }

    void pageTextUsesPrintSizesAndColours()
    {
        auto rich = std::make_shared<PoemTextDocument>();
        QTextCursor cursor(rich.get());
        QTextBlockFormat centred;
        centred.setAlignment(Qt::AlignHCenter);
        cursor.setBlockFormat(centred);
        QTextCharFormat editor;
        editor.setFontPointSize(17);
        cursor.insertText(QStringLiteral("ohne Farbe"), editor);
        QTextCharFormat red = editor;
        red.setForeground(QColor(255, 0, 0));
        red.setBackground(QColor(255, 255, 0));
        cursor.insertText(QStringLiteral("rot"), red);
        QImage picture(1560, 100, QImage::Format_RGB32);
        picture.fill(Qt::darkGreen);
        QTextImageFormat image;
        image.setName(rich->addPicture(picture));
        image.setWidth(780);
        image.setHeight(50);
        cursor.insertImage(image);

        ExportDocument document;
        document.title = QStringLiteral("Farben");
        document.richText = rich;
        const auto page = PDFExporter::makeAttributedText(document, QStringLiteral("Roboto"));
        const QTextBlock title = page->firstBlock();
        QCOMPARE(title.text(), QStringLiteral("Farben"));
        QCOMPARE(title.charFormat().foreground().color(), QColor(179, 144, 67));
        QCOMPARE(title.begin().fragment().charFormat().fontPointSize(), 22.0);
        QCOMPARE(title.blockFormat().bottomMargin(), 18.0);

        const QTextBlock body = title.next();
        QCOMPARE(body.blockFormat().alignment() & Qt::AlignHorizontal_Mask, Qt::AlignHCenter);
        auto it = body.begin();
        const QTextCharFormat plain = it.fragment().charFormat();
        QCOMPARE(plain.fontPointSize(), 12.5);
        QCOMPARE(plain.foreground().color().red(), 31); // white level 0.12
        ++it;
        const QTextCharFormat kept = it.fragment().charFormat();
        QCOMPARE(kept.foreground().color(), QColor(255, 0, 0));
        QVERIFY(!kept.hasProperty(QTextFormat::BackgroundBrush));
        ++it;
        const QTextImageFormat fitted = it.fragment().charFormat().toImageFormat();
        QVERIFY(fitted.isValid());
        QCOMPARE(fitted.width(), PdfPageLayout::textRect().width());
        QVERIFY(page->hasPicture(fitted.name()));
    }

    void picturesKeepTheirSizeInPoints()
    {
        auto rich = std::make_shared<PoemTextDocument>();
        QTextCursor cursor(rich.get());
        QImage picture(400, 200, QImage::Format_RGB32);
        picture.fill(QColor(0, 0, 255));
        QTextImageFormat image;
        image.setName(rich->addPicture(picture));
        image.setWidth(200);
        image.setHeight(100);
        cursor.insertImage(image);
        ExportDocument document;
        document.title = QStringLiteral("Bild");
        document.richText = rich;

        const auto pdf = PDFExporter::data(document);
        QVERIFY(pdf.ok());
        const auto loaded = load(*pdf);
        QVERIFY(loaded);
        const QImage page = loaded->page(0)->renderToImage(72, 72);
        int widest = 0;
        int rows = 0;
        for (int y = 0; y < page.height(); ++y) {
            int blue = 0;
            for (int x = 0; x < page.width(); ++x) {
                const QColor c = page.pixelColor(x, y);
                blue += c.blue() > 180 && c.red() < 80 && c.green() < 80 ? 1 : 0;
            }
            widest = std::max(widest, blue);
            rows += blue > 0 ? 1 : 0;
        }
        QVERIFY2(qAbs(widest - 200) <= 2, qPrintable(QString::number(widest)));
        QVERIFY2(qAbs(rows - 100) <= 2, qPrintable(QString::number(rows)));
    }
};

QTEST_MAIN(PdfExportTest)
#include "tst_pdfexport.moc"
