#pragma once

#include "archive/ArchiveContext.h"
#include "archive/Result.h"

#include <memory>

// Owns the archive store and its one view context.
class PersistenceController {
public:
    // The on-disk store at ApplicationSupport::storePath(), opened once; later calls
    // return the same outcome. shared() is valid only after a successful openShared().
    static Result<void> openShared();
    static PersistenceController &shared();

    static Result<std::unique_ptr<PersistenceController>> open(const QString &storePath);
    static std::unique_ptr<PersistenceController> inMemory();

    ArchiveContext &viewContext() { return *m_context; }
    QString storePath() const { return m_storePath; }

    // "Archiv konnte nicht geöffnet werden: %@" with the reason and the file.
    static QString loadFailureText(const QString &reason, const QString &path);

private:
    PersistenceController(std::unique_ptr<ArchiveContext> context, QString path);
    std::unique_ptr<ArchiveContext> m_context;
    QString m_storePath;
};
