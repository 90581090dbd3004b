#pragma once

#include "archive/Poem.h"
#include "backup/PoemBackup.h"

#include <QDateTime>
#include <QList>
#include <QString>

// The backup document: the whole archive, trash included, at one moment.
struct Backup {
    QString app;
    qint64 schemaVersion = 0;
    QDateTime exportedAt;
    qint64 poemCount = 0;
    QList<PoemBackup> poems;

    // The document the writer produces: entries in the order given.
    // Fails when a poem could not be read whole, which a backup must never leave out.
    static Result<Backup> make(const QList<PoemPtr> &poems, const QDateTime &exportedAt);

    static constexpr qint64 currentSchemaVersion = 3;
    static QString appName() { return QStringLiteral("OdeLeaf"); }
};
