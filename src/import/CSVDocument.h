#pragma once

#include "archive/Result.h"
#include "import/CSVTable.h"

#include <QByteArray>
#include <QChar>
#include <QHash>
#include <QStringList>

#include <initializer_list>
#include <optional>

// A spreadsheet export read into rows: decoded, its separator found, parsed, its header
// mapped. Pure work on bytes; the fuzzer runs it on anything.
class CSVDocument {
public:
    // Fails only when the bytes cannot be decoded.
    static Result<CSVDocument> read(const QByteArray &bytes);

    // Columns past these are never looked up by name: a poem list has a dozen, and a
    // header of a million names would cost far more than the file.
    static constexpr qsizetype maxHeaderColumns = 1000;

    QString encoding;
    QChar delimiter;
    // The header's first cells, at most maxHeaderColumns; empty when the text had no row.
    QStringList header;
    QHash<QString, int> headerIndex;
    CSVTable dataRows;
    int maxColumns = 0;

    // The trimmed cell of the first key that names a column; empty when none does or the
    // row is shorter.
    QString value(const CSVTable::Row &row, std::initializer_list<QStringView> keys) const;
    // Resolved once per import: the lookups normalise each key.
    std::optional<int> firstColumn(std::initializer_list<QStringView> keys) const;
    std::optional<int> column(QStringView key) const;
    static QString cell(const CSVTable::Row &row, std::optional<int> column);
};
