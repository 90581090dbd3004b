#pragma once

#include "app/UpdateRelease.h"
#include "archive/Result.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QList>

// Reads an RSS update feed ("appcast"): one item per release, its version in a
// "version" element or attribute, its download in the enclosure.
class UpdateFeed {
    Q_DECLARE_TR_FUNCTIONS(UpdateFeed)

public:
    static Result<QList<UpdateRelease>> parse(const QByteArray &document);
    // The highest version of the feed; a feed without any readable version is an error.
    static Result<UpdateRelease> newestRelease(const QByteArray &document);
};
