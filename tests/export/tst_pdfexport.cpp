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

ExportDocument poemOfLines(int count)
{
    ExportDocument document;
    document.title = QStringLiteral("Lange Nacht");
    document.metaLines = {QStringLiteral("Datum: 01.03.2024"), QStringLiteral("Kategorie: Lyrik")};
    QStringList lines;
    for (int i = 1; i <= count; ++i)
        lines << QStringLiteral("Vers %1 der langen Nacht").arg(i);
    document.plainText = lines.join(QLatin1Char('\n'));
    return document;
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

    void longPoemRunsOverPagesEachWithTheLogoAndLosesNoLine()
    {
        const auto pdf = PDFExporter::data(poemOfLines(150));
        QVERIFY(pdf.ok());
        const auto document = load(*pdf);
        QVERIFY(document);
        QVERIFY2(document->numPages() >= 3, qPrintable(QString::number(document->numPages())));
        const QSizeF size = document->page(0)->pageSizeF();
        QVERIFY(qAbs(size.width() - 595.2) < 1 && qAbs(size.height() - 841.8) < 1);

        QString all;
        for (int page = 0; page < document->numPages(); ++page) {
            QVERIFY2(hasLogo(*document, page), qPrintable(QStringLiteral("page %1").arg(page + 1)));
            all += pageText(*document, page) + QLatin1Char('\n');
        }
        for (int line = 1; line <= 150; ++line) {
            const QString verse = QStringLiteral("Vers %1 der").arg(line);
            QCOMPARE(all.count(verse + QLatin1Char(' ')) + all.count(verse + QLatin1Char('\n')), 1);
        }
        QVERIFY(pageText(*document, document->numPages() - 1).contains(QLatin1String("Vers 150")));
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
            for (int x = 0; x < page.width(); ++x)
            {
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
