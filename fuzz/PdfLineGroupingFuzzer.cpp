// Feeds synthetic line boxes, decoded from arbitrary bytes, to the grouping of PDF lines
// into a poem text. Real PDFs would spend the run inside poppler; the boxes poppler hands
// over can be anything, including empty, inverted, overlapping and non-finite ones.
// The grouping may not crash or hang, and must keep every line's text in the result.
#include "import/DocumentTextExtractor.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace {

class ByteSource {
public:
    ByteSource(const uint8_t *data, size_t size) : m_data(data), m_size(size) {}

    bool atEnd() const { return m_pos >= m_size; }

    uint8_t byte() { return atEnd() ? 0 : m_data[m_pos++]; }

    // Mostly page-sized values, now and then one that breaks arithmetic.
    double coordinate()
    {
        const uint8_t kind = byte();
        const int16_t raw = int16_t(uint16_t(byte()) << 8 | byte());
        switch (kind % 16) {
        case 0:
            return std::numeric_limits<double>::quiet_NaN();
        case 1:
            return std::numeric_limits<double>::infinity();
        case 2:
            return -std::numeric_limits<double>::infinity();
        case 3:
            return double(raw) * 1e300;
        default:
            return double(raw) / 8.0;
        }
    }

private:
    const uint8_t *m_data;
    size_t m_size;
    size_t m_pos = 0;
};

// Each record: a control byte (bit 0 starts a new page), four coordinates and a text of up
// to 15 letters, so that no line carries a line break of its own.
QList<QList<PDFLine>> decodePages(ByteSource &source)
{
    QList<QList<PDFLine>> pages(1);
    while (!source.atEnd()) {
        const uint8_t control = source.byte();
        if (control & 1)
            pages.append(QList<PDFLine>());
        const double x = source.coordinate();
        const double y = source.coordinate();
        const double width = source.coordinate();
        const double height = source.coordinate();
        QString text;
        for (int i = 0; i < (control >> 4); ++i)
            text.append(QChar(u'a' + source.byte() % 26));
        pages.last().append({text, QRectF(x, y, width, height)});
    }
    return pages;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    ByteSource source(data, size);
    const QList<QList<PDFLine>> pages = decodePages(source);
    const QString text = DocumentTextExtractor::extractPDFByLines(pages);

    qsizetype letters = 0;
    for (const QList<PDFLine> &page : pages) {
        for (const PDFLine &line : page)
            letters += line.text.size();
        (void)DocumentTextExtractor::medianLineDistance(page);
    }
    if (text.size() - text.count(QLatin1Char('\n')) != letters)
        std::abort();
    return 0;
}
