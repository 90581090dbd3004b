#pragma once

#include <QString>
#include <QUuid>

// One live poem as the matcher sees it: a plain value, safe to hand to another thread.
struct PoemSnapshotEntry {
    QUuid id;
    QString title;
};
