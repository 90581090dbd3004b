#pragma once

#include "matching/TitleIndex.h"

#include <QStringList>

// Live poems with fresh ids and the given titles, in order.
inline QList<PoemSnapshotEntry> snapshotOf(const QStringList &titles)
{
    QList<PoemSnapshotEntry> poems;
    for (const QString &title : titles)
        poems.append({QUuid::createUuid(), title});
    return poems;
}
