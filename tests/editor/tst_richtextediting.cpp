#include "EditorTestSupport.h"

#include "archive/ApplicationSupport.h"
#include "editor/AppTheme.h"
#include "editor/ImageSizing.h"
#include "editor/ParagraphSpacingOption.h"
#include "editor/PoemPieces.h"
#include "editor/PoemRichText.h"
#include "editor/RichTextEditing.h"
#include "editor/WriterTypingAttributes.h"

#include <QTemporaryDir>
#include <QTest>
#include <QTextCursor>
#include <QTextImageFormat>

using namespace EditorTestSupport;

namespace {

QTextCursor selecting(QTextDocument &document, int start, int end)
{
    QTextCursor cursor(&document);
    cursor.setPosition(start);
    cursor.setPosition(end, QTextCursor::KeepAnchor);
    return cursor;
}

QTextCharFormat formatAt(QTextDocument &document, int position)
{
    QTextCursor cursor(&document);
    cursor.setPosition(position + 1);
    return cursor.charFormat();
}

Qt::Alignment alignmentOf(const QTextBlock &block)
{
    return block.blockFormat().alignment() & Qt::AlignHorizontal_Mask;
}

} // namespace

class RichTextEditingTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    QString imageFile(int width, int height)
    {
        const QString path = m_dir.filePath(QStringLiteral("bild-%1x%2.png").arg(width).arg(height));
        patternImage(width, height).save(path);
        return path;
    }

private Q_SLOTS:
    void initTestCase() { ApplicationSupport::setDirectory(m_dir.path()); }

    void fontSizeStepsByOneAndStopsAtEightPoints()
    {
        auto document = PoemRichText::fromPlainText(QStringLiteral("klein groß"));
        QTextCursor small = selecting(*document, 0, 5);
        QTextCharFormat nine;
        nine.setFontPointSize(9);
        small.mergeCharFormat(nine);
        RichTextEditing::changeFontSize(small, -1);
        QCOMPARE(formatAt(*document, 0).fontPointSize(), 8.0);
        RichTextEditing::changeFontSize(small, -1);
        QCOMPARE(formatAt(*document, 0).fontPointSize(), 8.0);
        // The rest of the line was not selected.
        QCOMPARE(formatAt(*document, 7).fontPointSize(), 17.0);

        QTextCursor all = selecting(*document, 0, 10);
        RichTextEditing::changeFontSize(all, 1);
        QCOMPARE(formatAt(*document, 0).fontPointSize(), 9.0);
        QCOMPARE(formatAt(*document, 7).fontPointSize(), 18.0);
    }

    void fontSizeOfARunWithoutSizeStartsAtSeventeen()
    {
        PoemTextDocument document;
        QTextCursor cursor(&document);
        cursor.insertText(QStringLiteral("ohne Größe"), QTextCharFormat());
        QTextCursor all = selecting(document, 0, 10);
        RichTextEditing::changeFontSize(all, 1);
        QCOMPARE(formatAt(document, 3).fontPointSize(), 18.0);
    }

    void withoutSelectionCommandsChangeTheTypingAttributes()
    {
        auto document = PoemRichText::fromPlainText(QStringLiteral("Zeile"));
        QTextCursor cursor(document.get());
        cursor.movePosition(QTextCursor::End);
        RichTextEditing::toggleBold(cursor);
        RichTextEditing::changeFontSize(cursor, 1);
        RichTextEditing::setTextColor(cursor, AppTheme::accent());
        cursor.insertText(QStringLiteral(" fett"));
        QCOMPARE(formatAt(*document, 0).fontWeight(), int(QFont::Normal));
        const QTextCharFormat typed = formatAt(*document, 6);
        QCOMPARE(typed.fontWeight(), int(QFont::Bold));
        QCOMPARE(typed.fontPointSize(), 18.0);
        QCOMPARE(typed.foreground().color(), AppTheme::accent());
        QCOMPARE(familyOf(typed), QStringLiteral("Roboto"));
    }

    void boldFollowsTheFirstRunAndUndoesInOneStep()
    {
        auto document = PoemRichText::fromPlainText(QStringLiteral("eins zwei"));
        QTextCursor second = selecting(*document, 5, 9);
        RichTextEditing::toggleBold(second);
        QCOMPARE(formatAt(*document, 5).fontWeight(), int(QFont::Bold));

        // Mixed selection starting with plain text: everything becomes bold.
        QTextCursor all = selecting(*document, 0, 9);
        RichTextEditing::toggleBold(all);
        QCOMPARE(formatAt(*document, 0).fontWeight(), int(QFont::Bold));
        QCOMPARE(formatAt(*document, 6).fontWeight(), int(QFont::Bold));
        // And all bold: everything plain again.
        RichTextEditing::toggleBold(all);
        QCOMPARE(formatAt(*document, 0).fontWeight(), int(QFont::Normal));
        QCOMPARE(formatAt(*document, 6).fontWeight(), int(QFont::Normal));

        document->undo();
        QCOMPARE(formatAt(*document, 0).fontWeight(), int(QFont::Bold));
        QCOMPARE(formatAt(*document, 6).fontWeight(), int(QFont::Bold));
        document->undo();
        QCOMPARE(formatAt(*document, 0).fontWeight(), int(QFont::Normal));
        QCOMPARE(formatAt(*document, 6).fontWeight(), int(QFont::Bold));
    }

    void italicAndUnderlineToggle()
    {
        auto document = PoemRichText::fromPlainText(QStringLiteral("Wort"));
        QTextCursor all = selecting(*document, 0, 4);
        RichTextEditing::toggleItalic(all);
        RichTextEditing::toggleUnderline(all);
        QVERIFY(formatAt(*document, 1).fontItalic());
        QVERIFY(formatAt(*document, 1).fontUnderline());
        RichTextEditing::toggleUnderline(all);
        QVERIFY(!formatAt(*document, 1).fontUnderline());
        QVERIFY(formatAt(*document, 1).fontItalic());
    }

    void alignmentAndSpacingApplyToEveryTouchedParagraph()
    {
        auto document = PoemRichText::fromPlainText(QStringLiteral("eins\nzwei\ndrei"));
        QTextCursor middle = selecting(*document, 2, 7); // from "eins" into "zwei"
        RichTextEditing::setAlignment(middle, Qt::AlignHCenter);
        QCOMPARE(alignmentOf(blockAt(*document, 0)), Qt::AlignHCenter);
        QCOMPARE(alignmentOf(blockAt(*document, 1)), Qt::AlignHCenter);
        QCOMPARE(alignmentOf(blockAt(*document, 2)), Qt::AlignLeft);

        const auto airy = ParagraphSpacingOption::airy;
        RichTextEditing::setParagraphSpacing(middle, lineSpacing(airy), paragraphSpacingAfter(airy));
        QCOMPARE(blockAt(*document, 1).blockFormat().bottomMargin(), 4.0);
        QCOMPARE(blockAt(*document, 1).blockFormat().lineHeight(), 9.0);
        QCOMPARE(blockAt(*document, 1).blockFormat().lineHeightType(), int(QTextBlockFormat::LineDistanceHeight));
        const auto normal = ParagraphSpacingOption::normal;
        RichTextEditing::setParagraphSpacing(middle, lineSpacing(normal), paragraphSpacingAfter(normal));
        QCOMPARE(blockAt(*document, 0).blockFormat().bottomMargin(), 0.0);
        QCOMPARE(blockAt(*document, 0).blockFormat().lineHeight(), 5.0);
        QCOMPARE(alignmentOf(blockAt(*document, 0)), Qt::AlignHCenter);
        QCOMPARE(blockAt(*document, 2).blockFormat().bottomMargin(), 0.0);

        QTextCursor caret(document.get());
        caret.setPosition(12);
        RichTextEditing::setAlignment(caret, Qt::AlignRight);
        QCOMPARE(alignmentOf(blockAt(*document, 2)), Qt::AlignRight);
    }

    void standardColourRemovesTheRunsOwnColour()
    {
        auto document = PoemRichText::fromPlainText(QStringLiteral("rot"));
        QTextCursor all = selecting(*document, 0, 3);
        RichTextEditing::setTextColor(all, AppTheme::systemRed());
        QCOMPARE(formatAt(*document, 1).foreground().color(), AppTheme::systemRed());
        RichTextEditing::setTextColor(all, std::nullopt);
        QVERIFY(!formatAt(*document, 1).hasProperty(QTextFormat::ForegroundBrush));
    }

    void clearFormattingLeavesFontAndLabelColourOnlyAndKeepsImages()
    {
        auto document = PoemRichText::fromPlainText(QStringLiteral("schön bunt\nzweite"));
        QTextCursor first = selecting(*document, 0, 10);
        RichTextEditing::toggleBold(first);
        RichTextEditing::toggleUnderline(first);
        RichTextEditing::setTextColor(first, AppTheme::systemBlue());
        RichTextEditing::setAlignment(first, Qt::AlignRight);
        QTextCursor end(document.get());
        end.movePosition(QTextCursor::End);
        QVERIFY(RichTextEditing::insertImage(end, imageFile(50, 40), 600).ok());

        QTextCursor all(document.get());
        all.select(QTextCursor::Document);
        RichTextEditing::clearFormatting(all);
        const QTextCharFormat cleared = formatAt(*document, 2);
        QCOMPARE(familyOf(cleared), QStringLiteral("Roboto"));
        QCOMPARE(cleared.fontPointSize(), 17.0);
        QCOMPARE(cleared.fontWeight(), int(QFont::Normal));
        QVERIFY(!cleared.fontUnderline());
        QVERIFY(!cleared.hasProperty(QTextFormat::ForegroundBrush));
        QCOMPARE(alignmentOf(blockAt(*document, 0)), Qt::AlignLeft);
        QCOMPARE(imageCount(*document), 1);
    }

    void captionIsItsOwnParagraphWithThePlaceholderSelected()
    {
        auto document = PoemRichText::fromPlainText(QStringLiteral("vorher nachher"));
        QTextCursor cursor(document.get());
        cursor.setPosition(7);
        RichTextEditing::insertCaption(cursor);
        QCOMPARE(PoemRichText::plainText(*document), QStringLiteral("vorher \nBildunterschrift\nnachher"));
        QCOMPARE(cursor.selectedText(), QStringLiteral("Bildunterschrift"));
        const QTextBlock caption = blockAt(*document, 1);
        QCOMPARE(alignmentOf(caption), Qt::AlignHCenter);
        QCOMPARE(caption.blockFormat().bottomMargin(), 12.0);
        const QTextCharFormat characters = runsOf(caption).first().format;
        QCOMPARE(characters.fontPointSize(), 14.0);
        QVERIFY(characters.fontItalic());
        QCOMPARE(characters.foreground().color(), AppTheme::secondaryLabel());
        QCOMPARE(alignmentOf(blockAt(*document, 2)), Qt::AlignLeft);

        cursor.insertText(QStringLiteral("Am Fluss"));
        QCOMPARE(blockAt(*document, 1).text(), QStringLiteral("Am Fluss"));
        QVERIFY(runsOf(blockAt(*document, 1)).first().format.fontItalic());
    }

    void aLineBreakAfterACaptionOrSectionMarkStartsBodyText()
    {
        auto document = PoemRichText::fromPlainText(QStringLiteral("Strophe"));
        QTextCursor cursor(document.get());
        cursor.movePosition(QTextCursor::End);
        RichTextEditing::insertCaption(cursor);
        cursor.insertText(QStringLiteral("Am Fluss"));
        QVERIFY(RichTextEditing::breakOutOfPiece(cursor));
        cursor.insertText(QStringLiteral("weiter"));
        const QTextBlock after = blockAt(*document, 2);
        QCOMPARE(after.text(), QStringLiteral("weiter"));
        QCOMPARE(alignmentOf(after), Qt::AlignLeft);
        QVERIFY(!runsOf(after).first().format.fontItalic());
        QCOMPARE(runsOf(after).first().format.fontPointSize(), 17.0);

        // In body text, and inside a caption, a line break is the editor's ordinary one.
        QVERIFY(!RichTextEditing::breakOutOfPiece(cursor));
        cursor.setPosition(blockAt(*document, 1).position() + 2);
        QVERIFY(!RichTextEditing::breakOutOfPiece(cursor));

        cursor.movePosition(QTextCursor::End);
        cursor.insertBlock();
        cursor.movePosition(QTextCursor::PreviousBlock);
        RichTextEditing::insertSectionMark(cursor);
        QTextCursor atMark(blockAt(*document, 3));
        atMark.movePosition(QTextCursor::EndOfBlock);
        QVERIFY(RichTextEditing::breakOutOfPiece(atMark));
        atMark.insertText(QStringLiteral("neu"));
        QCOMPARE(runsOf(atMark.block()).first().format.fontWeight(), int(QFont::Normal));
        QCOMPARE(alignmentOf(atMark.block()), Qt::AlignLeft);
    }

    void sectionMarkStandsBetweenLineBreaksAndWritingContinuesAsBefore()
    {
        auto document = PoemRichText::fromPlainText(QStringLiteral("Strophe eins"));
        QTextCursor cursor(document.get());
        cursor.movePosition(QTextCursor::End);
        RichTextEditing::insertSectionMark(cursor);
        QCOMPARE(PoemRichText::plainText(*document), QStringLiteral("Strophe eins\n* * *\n"));
        const QTextBlock mark = blockAt(*document, 1);
        QCOMPARE(alignmentOf(mark), Qt::AlignHCenter);
        QCOMPARE(mark.blockFormat().bottomMargin(), 18.0);
        const QTextCharFormat characters = runsOf(mark).first().format;
        QCOMPARE(characters.fontPointSize(), 18.0);
        QCOMPARE(characters.fontWeight(), int(QFont::Bold));
        QCOMPARE(characters.foreground().color(), AppTheme::secondaryLabel());
        QCOMPARE(alignmentOf(blockAt(*document, 0)), Qt::AlignLeft);

        cursor.insertText(QStringLiteral("Strophe zwei"));
        QCOMPARE(alignmentOf(blockAt(*document, 2)), Qt::AlignLeft);
        const QTextCharFormat after = runsOf(blockAt(*document, 2)).first().format;
        QCOMPARE(after.fontPointSize(), 17.0);
        QCOMPARE(after.fontWeight(), int(QFont::Normal));
        QVERIFY(!after.hasProperty(QTextFormat::ForegroundBrush));
        document->undo();
        document->undo();
        QCOMPARE(PoemRichText::plainText(*document), QStringLiteral("Strophe eins"));
    }

    void insertedImagesFitTheTextWidthAndAreNeverEnlarged_data()
    {
        QTest::addColumn<QSize>("pixels");
        QTest::addColumn<double>("textWidth");
        QTest::addColumn<QSizeF>("shown");
        QTest::newRow("wider than the text") << QSize(1200, 600) << 600.0 << QSizeF(600, 300);
        QTest::newRow("narrow stays") << QSize(200, 100) << 600.0 << QSizeF(200, 100);
        QTest::newRow("narrow editor clamps to 240") << QSize(480, 480) << 100.0 << QSizeF(240, 240);
        QTest::newRow("wide editor clamps to 780") << QSize(1560, 100) << 2000.0 << QSizeF(780, 50);
    }

    void insertedImagesFitTheTextWidthAndAreNeverEnlarged()
    {
        QFETCH(QSize, pixels);
        QFETCH(double, textWidth);
        QFETCH(QSizeF, shown);
        auto document = PoemRichText::fromPlainText(QStringLiteral("ab"));
        QTextCursor cursor = selecting(*document, 1, 2);
        QVERIFY(RichTextEditing::insertImage(cursor, imageFile(pixels.width(), pixels.height()), textWidth).ok());
        QCOMPARE(document->toRawText(), QStringLiteral("a") + QChar(QChar::ObjectReplacementCharacter));
        const QTextImageFormat image = firstImage(*document);
        QCOMPARE(QSizeF(image.width(), image.height()), shown);
        QCOMPARE(alignmentOf(document->begin()), Qt::AlignHCenter);
        QCOMPARE(document->begin().blockFormat().bottomMargin(), 14.0);
    }

    void bigImagesKeepEveryPixelAndTheirFileBytes()
    {
        auto document = PoemRichText::fromPlainText(QString());
        QTextCursor cursor(document.get());
        const QString path = imageFile(2000, 1000);
        QVERIFY(RichTextEditing::insertImage(cursor, path, 600).ok());
        const QTextImageFormat inserted = firstImage(*document);
        QCOMPARE(QSizeF(inserted.width(), inserted.height()), QSizeF(600, 300));
        QCOMPARE(document->naturalSize(inserted.name()), QSizeF(2000, 1000));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(document->picture(inserted.name())->bytes, file.readAll());
        // "Seitenbreite" measures against the natural size, so the picture can grow again.
        QVERIFY(RichTextEditing::resizeImage(cursor, WriterImageSize::pageWidth));
        QCOMPARE(firstImage(*document).width(), 780.0);
        QCOMPARE(firstImage(*document).height(), 390.0);
    }

    void aFileThatIsNoImageIsReportedAndChangesNothing()
    {
        const QString path = m_dir.filePath(QStringLiteral("kein-bild.png"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("not an image");
        file.close();
        auto document = PoemRichText::fromPlainText(QStringLiteral("Text"));
        QTextCursor cursor(document.get());
        const auto inserted = RichTextEditing::insertImage(cursor, path, 500);
        QVERIFY(!inserted.ok());
        QVERIFY(inserted.errorMessage().contains(QStringLiteral("kein-bild.png")));
        QCOMPARE(PoemRichText::plainText(*document), QStringLiteral("Text"));
    }

    void resizeFindsTheImageNextToTheCursor()
    {
        auto document = PoemRichText::fromPlainText(QStringLiteral("a"));
        QTextCursor cursor(document.get());
        cursor.movePosition(QTextCursor::End);
        QVERIFY(RichTextEditing::insertImage(cursor, imageFile(600, 300), 240).ok());
        QCOMPARE(firstImage(*document).width(), 240.0);

        QTextCursor after(document.get());
        after.setPosition(2);
        QVERIFY(RichTextEditing::resizeImage(after, WriterImageSize::medium));
        QCOMPARE(firstImage(*document).width(), 520.0);
        QCOMPARE(firstImage(*document).height(), 260.0);
        QTextCursor before(document.get());
        before.setPosition(1);
        QVERIFY(RichTextEditing::resizeImage(before, WriterImageSize::pageWidth));
        // Never enlarged past its natural size.
        QCOMPARE(firstImage(*document).width(), 600.0);
        document->undo();
        QCOMPARE(firstImage(*document).width(), 520.0);

        QTextCursor away(document.get());
        away.setPosition(0);
        QVERIFY(!RichTextEditing::resizeImage(away, WriterImageSize::small));
    }

    void sizingRules()
    {
        QCOMPARE(ImageSizing::forResize(QSizeF(0, 100), WriterImageSize::small), QSizeF(280, 280 * 0.66));
        QCOMPARE(ImageSizing::forResize(QSizeF(100, 0), WriterImageSize::medium), QSizeF(520, 520 * 0.66));
        QCOMPARE(ImageSizing::forResize(QSizeF(100, 50), WriterImageSize::small), QSizeF(100, 50));
        QCOMPARE(ImageSizing::forAppend(QSizeF(1000, 1000)), QSizeF(500, 500));
        QCOMPARE(ImageSizing::forAppend(QSizeF(500, 1300)), QSizeF(250, 650));
    }

    void appendTextUsesTheTypingAttributes()
    {
        auto document = PoemRichText::fromPlainText(QString());
        QTextCursor cursor(document.get());
        RichTextEditing::toggleItalic(cursor);
        RichTextEditing::appendText(cursor, QStringLiteral("© Autor\n01.02.2026"));
        QCOMPARE(document->blockCount(), 2);
        QVERIFY(formatAt(*document, 0).fontItalic());
        QVERIFY(runsOf(blockAt(*document, 1)).first().format.fontItalic());
        document->undo();
        QCOMPARE(PoemRichText::plainText(*document), QString());
    }

    void preservingFormattingOnlyFillsWhatIsMissing()
    {
        QTextCharFormat current;
        current.setFontFamilies({QStringLiteral("DejaVu Serif")});
        current.setFontWeight(QFont::Bold);
        const QTextCharFormat kept =
            WriterTypingAttributes::preservingFormatting(current, WriterTypingAttributes::defaults());
        QCOMPARE(familyOf(kept), QStringLiteral("DejaVu Serif"));
        QCOMPARE(kept.fontWeight(), int(QFont::Bold));
        QCOMPARE(kept.fontPointSize(), 17.0);
        const QTextCharFormat filled =
            WriterTypingAttributes::preservingFormatting(QTextCharFormat(), WriterTypingAttributes::defaults());
        QCOMPARE(familyOf(filled), QStringLiteral("Roboto"));
    }
};

QTEST_MAIN(RichTextEditingTest)
#include "tst_richtextediting.moc"
