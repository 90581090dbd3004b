#include "import/DocumentTextExtractor.h"

#include "archive/BoundedFileReader.h"
#include "import/DocxTextReader.h"
#include "import/ExtractError.h"
#include "import/PdfLineReader.h"
#include "import/TextCleanup.h"

#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <vector>

namespace {

constexpr double defaultLineDistance = 12.0;
constexpr double minimumCountedDistance = 1.0;
constexpr double paragraphGapFactor = 1.35;
constexpr double paragraphGapExtra = 3.0;

double midLine(const PDFLine &line)
{
    return line.bounds.center().y();
}

QList<PDFLine> inReadingOrder(QList<PDFLine> lines)
{
    std::stable_sort(lines.begin(), lines.end(),
                     [](const PDFLine &a, const PDFLine &b) { return a.bounds.top() < b.bounds.top(); });
    return lines;
}

QString pageText(const QList<PDFLine> &page)
{
    const QList<PDFLine> lines = inReadingOrder(page);
    const double median = DocumentTextExtractor::medianLineDistance(lines);
    const double paragraphGap = std::max(median * paragraphGapFactor, median + paragraphGapExtra);
    QStringList emitted;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (i > 0 && std::abs(midLine(lines.at(i)) - midLine(lines.at(i - 1))) > paragraphGap && !emitted.isEmpty() &&
            !emitted.last().isEmpty())
            emitted.append(QString());
        emitted.append(lines.at(i).text);
    }
    return emitted.join(QLatin1Char('\n'));
}

} // namespace

double DocumentTextExtractor::medianLineDistance(const QList<PDFLine> &linesInReadingOrder)
{
    std::vector<double> distances;
    for (qsizetype i = 1; i < linesInReadingOrder.size(); ++i) {
        const double distance = std::abs(midLine(linesInReadingOrder.at(i)) - midLine(linesInReadingOrder.at(i - 1)));
        if (distance > minimumCountedDistance)
            distances.push_back(distance);
    }
    if (distances.empty())
        return defaultLineDistance;
    std::sort(distances.begin(), distances.end());
    const size_t middle = distances.size() / 2;
    if (distances.size() % 2 == 1)
        return distances[middle];
    return (distances[middle - 1] + distances[middle]) / 2.0;
}

QString DocumentTextExtractor::extractPDFByLines(const QList<QList<PDFLine>> &pages)
{
    QStringList texts;
    texts.reserve(pages.size());
    for (const QList<PDFLine> &page : pages)
        texts.append(pageText(page));
    return texts.join(QStringLiteral("\n\n"));
}

Result<ExtractedDocument> DocumentTextExtractor::extract(const QString &path)
{
    const QString extension = QFileInfo(path).suffix().toLower();
    if (extension != QLatin1String("docx") && extension != QLatin1String("pdf"))
        return Error(ExtractError::unsupportedExtension(extension));
    // A FIFO named like a document would hang the reader until the timeout; a missing
    // file is left to the reader, which names it in its own words.
    if (QFileInfo::exists(path)) {
        if (auto regular = BoundedFileReader::checkRegularFile(path); !regular)
            return Error(ExtractError::failed(regular.errorMessage()));
    }
    if (extension == QLatin1String("docx"))
        return extractDOCX(path);
    return extractPDF(path);
}

Result<ExtractedDocument> DocumentTextExtractor::extractDOCX(const QString &path)
{
    const auto read = DocxTextReader::read(path);
    if (!read)
        return Error(ExtractError::failed(read.error().message));
    AttributedText rich = TextCleanup::cleanupAttributed(*read);
    ExtractedDocument document;
    document.text = TextCleanup::cleanup(read->plainText());
    document.richText = std::move(rich);
    return document;
}

Result<ExtractedDocument> DocumentTextExtractor::extractPDF(const QString &path)
{
    const auto pages = PdfLineReader::read(path);
    if (!pages)
        return Error(ExtractError::failed(pages.error().message));
    const QString text = TextCleanup::cleanup(extractPDFByLines(*pages));
    if (text.isEmpty())
        return Error(ExtractError::emptyText());
    return ExtractedDocument{text, std::nullopt};
}
