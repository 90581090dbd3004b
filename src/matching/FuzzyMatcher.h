#pragma once

#include <QSet>
#include <QString>

// The harsher key used only for fuzzy scores: ASCII letters and digits survive, file-name
// noise words go. Deliberately different from the title key.
class FuzzyMatcher {
public:
    static QString normalize(const QString &text);
    static QSet<QString> tokens(const QString &fuzzyKey);
};
