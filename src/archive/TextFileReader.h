#pragma once

#include "archive/Result.h"

#include <QByteArrayView>
#include <QCoreApplication>
#include <QString>

// Reads a plain-text file for a poem. UTF-8 is expected; bytes that are not UTF-8 come
// from an older Windows editor far more often than from anywhere else, so they are read
// as Windows-1252 and the caller tells the poet, instead of storing replacement marks.
class TextFileReader {
    Q_DECLARE_TR_FUNCTIONS(TextFileReader)

public:
    struct Text {
        QString text;
        bool readAsWindows1252 = false;
    };

    static constexpr qint64 maximumSize = qint64(64) << 20;

    static Result<Text> read(const QString &path);
    static Text decode(QByteArrayView bytes);
    // The sentence for the status line after a file was read as Windows-1252.
    static QString windows1252Note(const QString &path);
};
