#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <vector>

// Rows of cells held in one string and two offset lists. A file of separators or of
// one-letter lines has a cell for nearly every byte; a QString per cell and a list per row
// took seventy times the file's size, these take about four bytes per cell and row.
class CSVTable {
public:
    // One row, valid while its table lives.
    class Row {
    public:
        Row(const CSVTable &table, qsizetype index) : m_table(&table), m_index(index) {}
        qsizetype size() const;
        // Empty for a column past the row's end.
        QStringView cell(qsizetype column) const;
        QStringList cells() const;

    private:
        const CSVTable *m_table;
        qsizetype m_index;
    };

    qsizetype rowCount() const { return qsizetype(m_rowEnds.size()) - m_firstRow; }
    Row row(qsizetype index) const { return {*this, index}; }
    // Rows then count from the second one; the first is the header.
    void dropFirstRow();
    QList<QStringList> toList() const;
    qsizetype widestRow() const;

    // Building, in reading order. reserve() with the exact totals keeps the peak down.
    void reserve(qsizetype characters, qsizetype cells, qsizetype rows);
    void append(QChar c) { m_text.append(c); }
    void endCell() { m_cellEnds.push_back(quint32(m_text.size())); }
    void endRow() { m_rowEnds.push_back(quint32(m_cellEnds.size())); }

private:
    qsizetype firstCell(qsizetype row) const;

    QString m_text;
    // 32-bit offsets: the reader takes no file beyond 32 MB.
    std::vector<quint32> m_cellEnds; // end of each cell in m_text
    std::vector<quint32> m_rowEnds;  // end of each row in m_cellEnds
    qsizetype m_firstRow = 0;
};
