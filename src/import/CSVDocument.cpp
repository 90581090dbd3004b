#include "import/CSVDocument.h"

#include "import/CSVDelimiter.h"
#include "import/CSVHeader.h"
#include "import/CSVParser.h"
#include "import/CSVTextDecoder.h"

#include <algorithm>
#include <limits>

Result<CSVDocument> CSVDocument::read(const QByteArray &bytes)
{
    auto decoded = CSVTextDecoder::decodeText(bytes);
    if (!decoded)
        return decoded.error();
    CSVDocument document;
    document.encoding = decoded->encoding;
    document.delimiter = CSVDelimiter::detectDelimiter(decoded->text);
    CSVTable rows = CSVParser::parseCSV(decoded->text, document.delimiter);
    if (rows.rowCount() <= 1) {
        rows = CSVTable(); // one table at a time keeps the peak low
        rows = CSVParser::parseCSVSimple(decoded->text, document.delimiter);
    }
    decoded->text.clear();
    document.maxColumns = int(std::min<qsizetype>(rows.widestRow(), std::numeric_limits<int>::max()));
    if (rows.rowCount() > 0) {
        const CSVTable::Row first = rows.row(0);
        for (qsizetype column = 0; column < std::min(first.size(), maxHeaderColumns); ++column)
            document.header.append(first.cell(column).toString());
        document.headerIndex = CSVHeader::makeHeaderIndexMap(document.header);
        rows.dropFirstRow();
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

QString CSVDocument::cell(const CSVTable::Row &row, std::optional<int> column)
{
    return column ? row.cell(*column).trimmed().toString() : QString();
}

QString CSVDocument::value(const CSVTable::Row &row, std::initializer_list<QStringView> keys) const
{
    return cell(row, firstColumn(keys));
}
