#include "export/PDFExporter.h"

#include "archive/AppPreferences.h"
#include "archive/AtomicFileWriter.h"
#include "editor/AppTheme.h"
#include "editor/PoemTextDocument.h"
#include "export/DOCXExporter.h"
#include "export/OdeLeafLogo.h"
#include "export/PdfPageLayout.h"

#include <QFontDatabase>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocumentFragment>
#include <QTextImageFormat>

#include <algorithm>

namespace {

constexpr double titleSpacingAfter = 18;
constexpr double metaLineSpacing = 1;
constexpr double metaSpacingAfter = 2;
constexpr double bodyLineSpacing = 5;

QColor greyOfWhiteLevel(double level)
{
    return QColor::fromRgbF(float(level), float(level), float(level));
}

bool fontExists(const QString &family)
{
    return !family.isEmpty() && QFontDatabase::hasFamily(family);
}

QFont documentFont(const QString &family, double pointSize, QFont::Weight fallbackWeight = QFont::Normal)
{
    if (fontExists(family)) {
        QFont font(family);
        font.setPointSizeF(pointSize);
        return font;
    }
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPointSizeF(pointSize);
    font.setWeight(fallbackWeight);
    return font;
}

QTextCharFormat charFormat(const QFont &font, const QColor &color)
{
    QTextCharFormat format;
    format.setFont(font);
    format.setForeground(color);
    return format;
}

QTextBlockFormat blockFormat(double lineSpacing, double spacingAfter)
{
    QTextBlockFormat format;
    format.setLineHeight(lineSpacing, QTextBlockFormat::LineDistanceHeight);
    format.setBottomMargin(spacingAfter);
    return format;
}

void appendParagraph(QTextCursor &cursor, bool first, const QTextBlockFormat &block, const QTextCharFormat &chars,
                     const QString &text)
{
    if (first) {
        cursor.setBlockFormat(block);
        cursor.setBlockCharFormat(chars);
    } else {
        cursor.insertBlock(block, chars);
    }
    cursor.insertText(text, chars);
}

// The stored body speaks in editor sizes and screen colours; on paper it gets the print
// size, a family that exists, dark ink where it had none, and pictures that fit the page.
void normalizeRichBody(QTextDocument &document, int firstBodyBlock, const QString &fontName)
{
    const QSizeF page = PdfPageLayout::textRect().size();
    const QColor ink = greyOfWhiteLevel(0.12);
    QTextBlock block = document.findBlockByNumber(firstBodyBlock);
    for (; block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            QTextCursor cursor(&document);
            cursor.setPosition(fragment.position());
            cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
            QTextCharFormat format = fragment.charFormat();
            if (format.isImageFormat()) {
                QTextImageFormat image = format.toImageFormat();
                const double scale = std::min({1.0, image.width() > 0 ? page.width() / image.width() : 1.0,
                                               image.height() > 0 ? page.height() / image.height() : 1.0});
                if (scale < 1) {
                    image.setWidth(image.width() * scale);
                    image.setHeight(image.height() * scale);
                    cursor.setCharFormat(image);
                }
                continue;
            }
            const double editorSize = format.fontPointSize() > 0 ? format.fontPointSize() : 17;
            const QStringList families = format.fontFamilies().toStringList();
            const QString family = families.isEmpty() ? QString() : families.first();
            QFont font = documentFont(fontExists(family) ? family : fontName, DOCXExporter::printPointSize(editorSize));
            font.setWeight(format.fontWeight() >= QFont::DemiBold ? QFont::Bold : QFont::Normal);
            font.setItalic(format.fontItalic());
            font.setUnderline(format.fontUnderline());
            font.setStrikeOut(format.fontStrikeOut());
            format.setFont(font, QTextCharFormat::FontPropertiesAll);
            if (!format.hasProperty(QTextFormat::ForegroundBrush) || format.foreground().style() == Qt::NoBrush)
                format.setForeground(ink);
            format.clearBackground();
            cursor.setCharFormat(format);
        }
    }
}

} // namespace

std::unique_ptr<PoemTextDocument> PDFExporter::makeAttributedText(const ExportDocument &document,
                                                                  const QString &fontName)
{
    auto page = std::make_unique<PoemTextDocument>();
    page->setUndoRedoEnabled(false);
    QTextCursor cursor(page.get());

    QFont titleFont = documentFont(fontName, titlePointSize, QFont::DemiBold);
    if (fontExists(fontName))
        titleFont.setBold(true);
    appendParagraph(cursor, true, blockFormat(0, titleSpacingAfter), charFormat(titleFont, AppTheme::accent()),
                    document.title);
    const QTextCharFormat meta = charFormat(documentFont(fontName, metaPointSize), greyOfWhiteLevel(0.36));
    for (const QString &line : document.metaLines)
        appendParagraph(cursor, false, blockFormat(metaLineSpacing, metaSpacingAfter), meta, line);

    const QTextBlockFormat body = blockFormat(bodyLineSpacing, 0);
    const QTextCharFormat bodyChars = charFormat(documentFont(fontName, bodyPointSize), greyOfWhiteLevel(0.12));
    if (document.hasRichText()) {
        const int firstBodyBlock = page->blockCount();
        page->adoptPictures(*document.richText);
        cursor.insertBlock(body, bodyChars);
        cursor.insertFragment(QTextDocumentFragment(document.richText.get()));
        // The first rich paragraph lands in the paragraph opened above; it keeps its own
        // alignment and spacing all the same.
        QTextCursor first(page->findBlockByNumber(firstBodyBlock));
        first.setBlockFormat(document.richText->firstBlock().blockFormat());
        normalizeRichBody(*page, firstBodyBlock, fontName);
        return page;
    }
    const QString text = document.plainText.trimmed().isEmpty() ? QStringLiteral("— kein Text —") : document.plainText;
    QString lines = text;
    lines.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    lines.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    for (const QString &line : lines.split(QLatin1Char('\n')))
        appendParagraph(cursor, false, body, bodyChars, line);
    return page;
}

Result<QByteArray> PDFExporter::data(const ExportDocument &document)
{
    const auto page = makeAttributedText(document, AppPreferences::editorFontName());
    return PdfPageLayout::pdf(*page, document.title, OdeLeafLogo::image());
}

Result<void> PDFExporter::write(const ExportDocument &document, const QString &path)
{
    const auto page = makeAttributedText(document, AppPreferences::editorFontName());
    const QImage logo = OdeLeafLogo::image();
    return AtomicFileWriter::write(
        path, [&](QIODevice &device) { return PdfPageLayout::write(*page, device, document.title, logo); });
}
