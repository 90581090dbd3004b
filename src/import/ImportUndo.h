#pragma once

#include "archive/Result.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QString>

class ArchiveContext;

// "Import rückgängig": puts back the texts the last import replaced, from its undo file.
class ImportUndo {
    Q_DECLARE_TR_FUNCTIONS(ImportUndo)

public:
    // The status line of the outcome; a failure is "Rückgängig fehlgeschlagen: …".
    static Result<QString> undoLastImport(ArchiveContext &context,
                                          const QDateTime &now = QDateTime::currentDateTimeUtc());
    static QString nothingToUndoText();
};
