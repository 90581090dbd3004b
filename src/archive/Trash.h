#pragma once

#include "archive/Poem.h"
#include "archive/Result.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QList>

#include <functional>

class ArchiveContext;

// The trash: poems with a deletion time. Only restoring, deleting for good and emptying
// happen here; each ends in one save that is rolled back when it fails, so a failed
// action leaves every poem where it was.
class Trash {
    Q_DECLARE_TR_FUNCTIONS(Trash)

public:
    using StatusCallback = std::function<void(const QString &)>;

    // Views follow through the context's change notice.
    explicit Trash(ArchiveContext &context, StatusCallback onStatus = {});

    // Most recently trashed first.
    QList<PoemPtr> poems() const;
    int count() const;
    static int count(const ArchiveContext &context);

    // Each returns the status line on success, the failure line otherwise; both also go to onStatus.
    Result<QString> restore(const PoemPtr &poem, const QDateTime &now);
    Result<QString> deletePermanently(const PoemPtr &poem);
    Result<QString> emptyTrash();

    static QString displayTitle(const Poem &poem);
    static QString emptiedText(int count);

private:
    Result<QString> saveChanges(const QString &status);

    ArchiveContext &m_context;
    StatusCallback m_onStatus;
};
