#pragma once

#include "editor/FoldedText.h"

#include <QString>
#include <QTextCursor>

#include <optional>

class QTextDocument;

struct FindOutcome {
    bool found = false;
    int replaced = 0;
    QString status; // the find bar's status line; empty when there is nothing to say
};

// Find and replace in a poem body, ignoring case and diacritics, wrapping round.
// Positions are document positions: paragraphs are joined by one character.
class TextFinder {
public:
    static QString documentText(const QTextDocument &document);
    static std::optional<TextRange> find(const QTextDocument &document, const QString &term, int selectionStart,
                                         int selectionEnd, bool backwards);

    // Select the next (or previous) match.
    static FindOutcome find(QTextCursor &cursor, const QString &term, bool backwards);
    // Replaces the selection if it is a match, else selects the next match.
    static FindOutcome replaceCurrent(QTextCursor &cursor, const QString &term, const QString &replacement);
    // Every match, as one undo step.
    static FindOutcome replaceAll(QTextCursor &cursor, const QString &term, const QString &replacement);

    static QString noTermStatus();
    static QString notFoundStatus();
    static QString replacedStatus();
    static QString replacedAllStatus(int count);

private:
    static QTextCharFormat replacementFormat(const QTextDocument &document, int position, const QString &editorFamily);
};
