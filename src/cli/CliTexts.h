#pragma once

#include <QCoreApplication>

// Translation context of the command line's own messages (the operations' status lines
// come from the core with their own contexts).
class CliTexts {
    Q_DECLARE_TR_FUNCTIONS(CliTexts)
};
