#include "import/CSVTable.h"

#include <algorithm>

qsizetype CSVTable::firstCell(qsizetype row) const
{
    const qsizetype stored = row + m_firstRow;
    return stored == 0 ? 0 : qsizetype(m_rowEnds[size_t(stored - 1)]);
}

qsizetype CSVTable::Row::size() const
{
    return qsizetype(m_table->m_rowEnds[size_t(m_index + m_table->m_firstRow)]) - m_table->firstCell(m_index);
}

QStringView CSVTable::Row::cell(qsizetype column) const
{
    if (column < 0 || column >= size())
        return {};
    const qsizetype index = m_table->firstCell(m_index) + column;
    const qsizetype start = index == 0 ? 0 : qsizetype(m_table->m_cellEnds[size_t(index - 1)]);
    const qsizetype end = qsizetype(m_table->m_cellEnds[size_t(index)]);
    return QStringView(m_table->m_text).sliced(start, end - start);
}

QStringList CSVTable::Row::cells() const
{
    QStringList list;
    list.reserve(size());
    for (qsizetype column = 0; column < size(); ++column)
        list.append(cell(column).toString());
    return list;
}

void CSVTable::dropFirstRow()
{
    if (rowCount() > 0)
        ++m_firstRow;
}

QList<QStringList> CSVTable::toList() const
{
    QList<QStringList> rows;
    for (qsizetype i = 0; i < rowCount(); ++i)
        rows.append(row(i).cells());
    return rows;
}

qsizetype CSVTable::widestRow() const
{
    qsizetype widest = 0;
    for (qsizetype i = 0; i < rowCount(); ++i)
        widest = std::max(widest, row(i).size());
    return widest;
}

void CSVTable::reserve(qsizetype characters, qsizetype cells, qsizetype rows)
{
    m_text.reserve(characters);
    m_cellEnds.reserve(size_t(cells));
    m_rowEnds.reserve(size_t(rows));
}
