#pragma once

#include <QString>

// Messages can carry what the poet's files hold (a header of a million columns, a file
// name of any length); a label that lays out megabytes freezes the window. Shown lines
// are cut, the whole text stays for the details.
class MessageText {
public:
    static constexpr qsizetype statusLimit = 400;
    static constexpr qsizetype tooltipLimit = 4000;

    // At most limit characters including the closing ellipsis; never splits a surrogate pair.
    static QString shortened(const QString &text, qsizetype limit = statusLimit);
    static bool isShortened(const QString &text, qsizetype limit = statusLimit) { return text.size() > limit; }
    // The whole text with every line longer than width broken into pieces of that width:
    // a viewer lays out and draws a line of megabytes slowly and garbled.
    static QString inLines(const QString &text, qsizetype width = 1000);
};
