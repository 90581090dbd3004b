#include "import/CSVParser.h"

namespace {

bool isLineBreak(QChar c)
{
    return c == QLatin1Char('\n') || c == QLatin1Char('\r');
}

// Collects cells and rows; a row that is one empty, unquoted cell was an empty line.
class RowBuilder {
public:
    void appendToCell(QChar c)
    {
        m_cell.append(c);
        m_cellStarted = true;
    }
    void markCellStarted() { m_cellStarted = true; }
    bool cellStarted() const { return m_cellStarted; }

    void endCell()
    {
        m_row.append(m_cell);
        m_cell.clear();
        m_cellStarted = false;
    }

    void endRow()
    {
        const bool emptyLine = m_row.isEmpty() && !m_cellStarted;
        endCell();
        if (!emptyLine)
            m_rows.append(m_row);
        m_row.clear();
    }

    QList<QStringList> finish()
    {
        if (!m_row.isEmpty() || m_cellStarted)
            endRow();
        return std::move(m_rows);
    }

private:
    QList<QStringList> m_rows;
    QStringList m_row;
    QString m_cell;
    bool m_cellStarted = false;
};

// Length of the line break at i: 2 for CRLF, 1 for LF or CR.
qsizetype lineBreakLength(QStringView text, qsizetype i)
{
    if (text.at(i) == QLatin1Char('\r') && i + 1 < text.size() && text.at(i + 1) == QLatin1Char('\n'))
        return 2;
    return 1;
}

} // namespace

QList<QStringList> CSVParser::parseCSV(QStringView text, QChar delimiter)
{
    const QChar quote = QLatin1Char('"');
    RowBuilder builder;
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
    return builder.finish();
}

QList<QStringList> CSVParser::parseCSVSimple(QStringView text, QChar delimiter)
{
    QList<QStringList> rows;
    qsizetype start = 0;
    while (start < text.size()) {
        qsizetype end = start;
        while (end < text.size() && !isLineBreak(text.at(end)))
            ++end;
        const QStringView line = text.sliced(start, end - start);
        if (!line.isEmpty()) {
            QStringList cells;
            for (const QStringView cell : line.split(delimiter))
                cells.append(cell.toString());
            rows.append(cells);
        }
        start = end < text.size() ? end + lineBreakLength(text, end) : end;
    }
    return rows;
}
