#pragma once

#include "archive/PoemValues.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QString>

// One kept state of a poem. Listings leave `values` empty; a version read in full carries the
// poem's user-visible attributes, rich text with its pictures included.
struct PoemVersion {
    Q_DECLARE_TR_FUNCTIONS(PoemVersion)

public:
    qint64 number = 0; // counts up per poem, never reused
    QDateTime createdAt;
    QString reason;
    QString name;
    int wordsAdded = 0; // since the version before it
    int wordsRemoved = 0;
    PoemValues values;

    // The name when the poet gave one, else why it was kept, in the interface language.
    QString label() const { return name.isEmpty() ? reasonText(reason) : name; }

    // Reasons are stored as their German keys (the QT_TRANSLATE_NOOP texts of this context),
    // so a version kept from the command line reads in the window's language.
    static QString reasonKey(const char *german) { return QString::fromUtf8(german); }
    static QString reasonText(const QString &key);
};
