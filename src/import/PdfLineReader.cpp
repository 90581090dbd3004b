#include "import/PdfLineReader.h"

#include "import/ExtractError.h"

#include <poppler-qt6.h>

namespace {

// Poppler reports every oddity of a file on standard error; the import has its own messages.
void ignorePopplerMessage(const QString &, const QVariant &)
{
}

// Poppler links the words of one line through nextWord(); a word without a successor ends
// its line.
QList<PDFLine> linesOfPage(const Poppler::Page &page)
{
    QList<PDFLine> lines;
    QString text;
    QRectF bounds;
    for (const std::unique_ptr<Poppler::TextBox> &word : page.textList()) {
        text.append(word->text());
        bounds = bounds.isNull() ? word->boundingBox() : bounds.united(word->boundingBox());
        if (word->nextWord()) {
            if (word->hasSpaceAfter())
                text.append(QLatin1Char(' '));
            continue;
        }
        const QString trimmed = text.trimmed();
        if (!trimmed.isEmpty())
            lines.append({trimmed, bounds});
        text.clear();
        bounds = QRectF();
    }
    return lines;
}

} // namespace

Result<QList<QList<PDFLine>>> PdfLineReader::read(const QString &path)
{
    Poppler::setDebugErrorFunction(ignorePopplerMessage, QVariant());
    const std::unique_ptr<Poppler::Document> document = Poppler::Document::load(path);
    if (!document || document->isLocked())
        return Error{ExtractError::pdfCannotBeOpenedText()};
    QList<QList<PDFLine>> pages;
    const int pageCount = document->numPages();
    for (int index = 0; index < pageCount; ++index) {
        const std::unique_ptr<Poppler::Page> page = document->page(index);
        pages.append(page ? linesOfPage(*page) : QList<PDFLine>());
    }
    return pages;
}
