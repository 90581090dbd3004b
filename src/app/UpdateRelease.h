#pragma once

#include <QString>
#include <QUrl>
#include <QVersionNumber>

// One version offered by the update feed.
struct UpdateRelease {
    QVersionNumber version;
    QString displayVersion; // the short version string when the feed has one
    QString title;
    QUrl downloadUrl; // the enclosure, else the item's link
    QString notes;
};
