#pragma once

#include <QCoreApplication>
#include <QString>

#include <functional>

class QObject;

// Shows a written file in the desktop's file manager: selected in its folder where the
// file manager offers that over D-Bus, else the folder is opened. When neither works,
// reportFailure gets a sentence for the status line.
class FileManagerReveal {
    Q_DECLARE_TR_FUNCTIONS(FileManagerReveal)

public:
    static void reveal(const QString &filePath, QObject *owner,
                       const std::function<void(const QString &)> &reportFailure);
};
