#include "import/CSVParser.h"

namespace {

bool isLineBreak(QChar c)
{
    return c == QLatin1Char('\n') || c == QLatin1Char('\r');
}

// Counts what a table will hold, so that it can be built in memory of exactly that size.
struct TableSize {
    qsizetype characters = 0;
    qsizetype cells = 0;
    qsizetype rows = 0;

    void append(QChar) { ++characters; }
    void endCell() { ++cells; }
    void endRow() { ++rows; }
};

// Hands cells and rows to the sink; a row that is one empty, unquoted cell was an empty line.
template <typename Sink> class RowBuilder {
public:
    explicit RowBuilder(Sink &sink) : m_sink(sink) {}

    void appendToCell(QChar c)
    {
        m_sink.append(c);
        m_cellStarted = true;
    }
    void markCellStarted() { m_cellStarted = true; }
    bool cellStarted() const { return m_cellStarted; }

    void endCell()
    {
        m_sink.endCell();
        m_rowStarted = true;
        m_cellStarted = false;
    }

    void endRow()
    {
        if (!m_rowStarted && !m_cellStarted)
            return;
        endCell();
        m_sink.endRow();
        m_rowStarted = false;
    }

    void finish() { endRow(); }

private:
    Sink &m_sink;
    bool m_rowStarted = false;
    bool m_cellStarted = false;
};

// Length of the line break at i: 2 for CRLF, 1 for LF or CR.
qsizetype lineBreakLength(QStringView text, qsizetype i)
{
    if (text.at(i) == QLatin1Char('\r') && i + 1 < text.size() && text.at(i + 1) == QLatin1Char('\n'))
        return 2;
    return 1;
}

template <typename Sink> void parseQuoted(QStringView text, QChar delimiter, Sink &sink)
{
    const QChar quote = QLatin1Char('"');
    RowBuilder builder(sink);
    bool inQuotes = false;
    qsizetype i = 0;
    while (i < text.size()) {
        const QChar c = text.at(i);
        if (inQuotes) {
            if (c != quote) {
                builder.appendToCell(c);
            } else if (i + 1 < text.size() && text.at(i + 1) == quote) {
                builder.appendToCell(quote);
                ++i;
            } else {
                inQuotes = false;
            }
            ++i;
            continue;
        }
        if (c == quote && !builder.cellStarted()) {
            inQuotes = true;
            builder.markCellStarted();
        } else if (c == delimiter) {
            builder.endCell();
        } else if (isLineBreak(c)) {
            builder.endRow();
            i += lineBreakLength(text, i);
            continue;
        } else {
            builder.appendToCell(c);
        }
        ++i;
    }
    builder.finish();
}

template <typename Sink> void parseSimple(QStringView text, QChar delimiter, Sink &sink)
{
    qsizetype start = 0;
    while (start < text.size()) {
        qsizetype end = start;
        while (end < text.size() && !isLineBreak(text.at(end)))
            ++end;
        if (end > start) {
            for (qsizetype i = start; i < end; ++i) {
                if (text.at(i) == delimiter)
                    sink.endCell();
                else
                    sink.append(text.at(i));
            }
            sink.endCell();
            sink.endRow();
        }
        start = end < text.size() ? end + lineBreakLength(text, end) : end;
    }
}

// Two passes: the first counts, the second fills a table reserved to that size.
template <typename Parse> CSVTable parsedTable(Parse parse)
{
    TableSize size;
    parse(size);
    CSVTable table;
    table.reserve(size.characters, size.cells, size.rows);
    parse(table);
    return table;
}

} // namespace

CSVTable CSVParser::parseCSV(QStringView text, QChar delimiter)
{
    return parsedTable([&](auto &sink) { parseQuoted(text, delimiter, sink); });
}

CSVTable CSVParser::parseCSVSimple(QStringView text, QChar delimiter)
{
    return parsedTable([&](auto &sink) { parseSimple(text, delimiter, sink); });
}
