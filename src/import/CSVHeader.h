#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

// Header names as spreadsheets write them ("Veröffentlicht", "Datum ", "\uFEFFGedicht")
// reduced to one spelling, so that keys and column names meet.
class CSVHeader {
public:
    static QString normalizeHeaderName(const QString &name);
    // Normalised name → column; when two columns share a name, the first one counts.
    static QHash<QString, int> makeHeaderIndexMap(const QStringList &header);
};
