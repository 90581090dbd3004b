#pragma once

#include "archive/Result.h"

#include <QByteArray>
#include <QChar>
#include <QHash>
#include <QList>
#include <QStringList>

#include <initializer_list>
#include <optional>

// A spreadsheet export read into rows: decoded, its separator found, parsed, its header
// mapped. Pure work on bytes; the fuzzer runs it on anything.
class CSVDocument {
public:
    // Fails only when the bytes cannot be decoded.
    static Result<CSVDocument> read(const QByteArray &bytes);

    QString encoding;
    QChar delimiter;
    // Empty when the text had no row at all.
    QStringList header;
    QHash<QString, int> headerIndex;
    QList<QStringList> dataRows;
    int maxColumns = 0;

    // The trimmed cell of the first key that names a column; empty when none does or the
    // row is shorter.
    QString value(const QStringList &row, std::initializer_list<QStringView> keys) const;
    // Resolved once per import: the lookups normalise each key.
    std::optional<int> firstColumn(std::initializer_list<QStringView> keys) const;
    std::optional<int> column(QStringView key) const;
    static QString cell(const QStringList &row, std::optional<int> column);
};
