#pragma once

#include "archive/Poem.h"
#include "archive/Result.h"
#include "export/OdeLeafReaderPackage.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QList>

// Builds the reader app's package from the archive and writes it. Poems in the trash
// stay out; the package carries each poem's texts unchanged and a one-line excerpt.
class OdeLeafReaderPackageExporter {
    Q_DECLARE_TR_FUNCTIONS(OdeLeafReaderPackageExporter)

public:
    static constexpr qsizetype excerptLimit = 180;
    static constexpr qsizetype excerptCut = 177;

    static OdeLeafReaderPackage makePackage(const QList<PoemPtr> &poems, const QStringList &categories,
                                            const QDateTime &now = QDateTime::currentDateTime());
    static ReaderPoem readerPoem(const Poem &poem);
    // Absent without rich text, or when it cannot be read.
    static std::optional<QList<ParagraphAlignment>> paragraphAlignments(const QString &text,
                                                                        const std::optional<QByteArray> &richTextData);
    static QString excerpt(const QString &text);
    // Trimmed; blank becomes absent.
    static std::optional<QString> cleanedOptional(const std::optional<QString> &value);

    // Builds, encodes and writes the package atomically; returns the number of poems.
    static Result<int> write(const QList<PoemPtr> &poems, const QStringList &categories, const QString &path,
                             const QDateTime &now = QDateTime::currentDateTime());

    // "OdeLeaf-Reader-" and the local minute, as the save dialog proposes it.
    static QString proposedFileName(const QDateTime &now);
    static QString fileExtension() { return QStringLiteral("odeleafreader"); }

    static QString createdStatus(int poemCount, const QString &path);
    static QString failedStatus(const QString &reason);
    static QString cancelledStatus();
};
