#pragma once

#include "import/CSVTable.h"

#include <QChar>
#include <QStringView>

// Splits CSV text into rows of cells. Empty lines produce no row: spreadsheets leave them
// at the end, and they would only be counted as skipped.
class CSVParser {
public:
    // Quote-aware: a quote opening a cell protects separators, line breaks and doubled
    // quotes up to its closing quote; any other quote is an ordinary character. Rows end at
    // LF, CR or CRLF.
    static CSVTable parseCSV(QStringView text, QChar delimiter);
    // Lines split at line breaks, cells at the separator, quotes left as they are: the way
    // back when a stray quote swallowed the rest of the file.
    static CSVTable parseCSVSimple(QStringView text, QChar delimiter);
};
