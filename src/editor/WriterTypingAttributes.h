#pragma once

#include <QFont>
#include <QTextBlockFormat>
#include <QTextCharFormat>

// The attributes a poem body starts with, and the rule that keeps typing after formatted
// text formatted while font and size are never missing.
class WriterTypingAttributes {
public:
    static constexpr double defaultPointSize = 17;

    // The editor font of the preferences; the system font when no such family is installed.
    static QString editorFontFamily();
    static QFont editorFont(double pointSize = defaultPointSize);
    // Font at 17 points and no colour of its own (the label colour).
    static QTextCharFormat defaults();
    // The editor font at the given size with the traits converted in.
    static QTextCharFormat pieceFormat(double pointSize, bool bold, bool italic, const QColor &color);
    // Starts from current and adds every property of defaults that current lacks; a property
    // present in current keeps its value.
    static QTextCharFormat preservingFormatting(const QTextCharFormat &current, const QTextCharFormat &defaults);
};
