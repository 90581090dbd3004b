// Feeds arbitrary bytes to the reader of poem lists: decoding, separator detection, both
// parsers and the header map. None may crash, hang or touch memory it does not own, and
// the plain parser must keep every character it was given.
#include "import/CSVDelimiter.h"
#include "import/CSVDocument.h"
#include "import/CSVParser.h"
#include "import/CSVTextDecoder.h"

#include <cstdint>
#include <cstdlib>

namespace {

// Without quotes in play, cells and separators must give back every character that is no
// line break.
void checkNothingIsLost(const QString &text, QChar delimiter)
{
    qsizetype kept = 0;
    const CSVTable rows = CSVParser::parseCSVSimple(text, delimiter);
    for (qsizetype i = 0; i < rows.rowCount(); ++i) {
        const CSVTable::Row row = rows.row(i);
        for (qsizetype column = 0; column < row.size(); ++column)
            kept += row.cell(column).size();
        kept += row.size() - 1;
    }
    const qsizetype expected = text.size() - text.count(QLatin1Char('\n')) - text.count(QLatin1Char('\r'));
    if (kept != expected)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));
    const auto decoded = CSVTextDecoder::decodeText(bytes);
    if (!decoded)
        return 0;
    const QChar delimiter = CSVDelimiter::detectDelimiter(decoded->text);
    checkNothingIsLost(decoded->text, delimiter);
    if (const auto document = CSVDocument::read(bytes)) {
        for (qsizetype i = 0; i < document->dataRows.rowCount(); ++i)
            (void)document->value(document->dataRows.row(i), {u"gedicht", u"titel", u"title"});
    }
    return 0;
}
