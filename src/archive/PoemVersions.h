#pragma once

#include "archive/Poem.h"
#include "archive/PoemVersion.h"
#include "archive/Result.h"

#include <QCoreApplication>

#include <vector>

class ArchiveContext;

// The versions of a poem as the window and the command line use them. Every write is one
// transaction of its own; the time of a version is the context's clock.
class PoemVersions {
    Q_DECLARE_TR_FUNCTIONS(PoemVersions)

public:
    // When an editing session ends: kept only when the poem differs from its newest version.
    static Result<bool> recordSessionEnd(ArchiveContext &context, const Poem &poem);
    // "Fassung sichern…": always kept, with the name when one is given.
    static Result<qint64> saveByHand(ArchiveContext &context, const Poem &poem, const QString &name);

    static Result<std::vector<PoemVersion>> list(ArchiveContext &context, const Poem &poem);
    static Result<PoemVersion> version(ArchiveContext &context, const Poem &poem, qint64 number);

    // The current state becomes a version first, so going back can itself be undone.
    static Result<void> restore(ArchiveContext &context, Poem &poem, qint64 number);
    static Result<PoemPtr> copyAsNewPoem(ArchiveContext &context, const PoemVersion &version);

    static Result<int> pruneAll(ArchiveContext &context);
    static Result<qint64> storageBytes(ArchiveContext &context);

    static QString restoreReason(qint64 number);
    static QString savedText() { return tr("Fassung gesichert."); }
    static QString restoredText() { return tr("Fassung wiederhergestellt."); }
};
