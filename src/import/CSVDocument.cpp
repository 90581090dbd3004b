#include "import/CSVDocument.h"

#include "import/CSVDelimiter.h"
#include "import/CSVHeader.h"
#include "import/CSVParser.h"
#include "import/CSVTextDecoder.h"

#include <algorithm>

Result<CSVDocument> CSVDocument::read(const QByteArray &bytes)
{
    auto decoded = CSVTextDecoder::decodeText(bytes);
    if (!decoded)
        return decoded.error();
    CSVDocument document;
    document.encoding = decoded->encoding;
    document.delimiter = CSVDelimiter::detectDelimiter(decoded->text);
    QList<QStringList> rows = CSVParser::parseCSV(decoded->text, document.delimiter);
    if (rows.size() <= 1)
        rows = CSVParser::parseCSVSimple(decoded->text, document.delimiter);
    decoded->text.clear(); // the rows hold their own copies; keep the peak low
    for (const QStringList &row : std::as_const(rows))
        document.maxColumns = std::max(document.maxColumns, int(row.size()));
    if (!rows.isEmpty()) {
        document.header = rows.takeFirst();
        document.headerIndex = CSVHeader::makeHeaderIndexMap(document.header);
    }
    document.dataRows = std::move(rows);
    return document;
}

std::optional<int> CSVDocument::column(QStringView key) const
{
    const auto found = headerIndex.constFind(CSVHeader::normalizeHeaderName(key.toString()));
    if (found == headerIndex.constEnd())
        return std::nullopt;
    return *found;
}

std::optional<int> CSVDocument::firstColumn(std::initializer_list<QStringView> keys) const
{
    for (const QStringView key : keys) {
        if (const auto index = column(key))
            return index;
    }
    return std::nullopt;
}

QString CSVDocument::cell(const QStringList &row, std::optional<int> column)
{
    return column && *column < row.size() ? row.at(*column).trimmed() : QString();
}

QString CSVDocument::value(const QStringList &row, std::initializer_list<QStringView> keys) const
{
    return cell(row, firstColumn(keys));
}
