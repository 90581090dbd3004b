#pragma once

#include <QChar>
#include <QStringView>

// Which of the three usual separators a spreadsheet export uses, judged on its header line.
class CSVDelimiter {
public:
    // The candidate found most often in the first line; a tie goes to the earlier of ";",
    // "," and tab, and a line without any of them gives ";".
    static QChar detectDelimiter(QStringView text);
    static QStringView headerLine(QStringView text);
};
