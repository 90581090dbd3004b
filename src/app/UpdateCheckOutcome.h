#pragma once

#include "app/UpdateRelease.h"

#include <QMetaType>
#include <QString>

// How one update check ended, and whether the user asked for it (an automatic check
// that finds nothing new stays silent).
struct UpdateCheckOutcome {
    enum class Kind { upToDate, updateAvailable, failed };

    Kind kind = Kind::upToDate;
    UpdateRelease release;
    QString errorText;
    bool userInitiated = false;
};

Q_DECLARE_METATYPE(UpdateCheckOutcome)
