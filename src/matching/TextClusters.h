#pragma once

#include <QList>
#include <QString>
#include <QStringView>

// Characters as a reader counts them (extended grapheme clusters). Titles and file names
// are almost always plain Latin text, where every UTF-16 unit is one character; the
// boundary finder is used only for the rest.
class TextClusters {
public:
    // True when every UTF-16 unit of the text is a character of its own.
    static bool isOneUnitPerCharacter(QStringView text);
    static QList<QStringView> split(QStringView text);
    static qsizetype count(QStringView text);
    // The first n characters.
    static QStringView prefix(QStringView text, qsizetype n);
};
