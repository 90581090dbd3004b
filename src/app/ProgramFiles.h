#pragma once

#include <QString>

// Where the files the program ships lie: the text-extraction helper and the translations.
// Both are found relative to the running program, so the same rule serves the build folder
// (bin/, libexec/odeleaf/, share/odeleaf/ below it) and an installed prefix, wherever the
// package put it.
class ProgramFiles {
public:
    static QString helperExecutable();
    static QString translationsDirectory();

    // The same, for a program whose binary lies in programDirectory.
    static QString helperExecutable(const QString &programDirectory);
    static QString translationsDirectory(const QString &programDirectory);
};
