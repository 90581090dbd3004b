#pragma once

#include "import/ImportProposal.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QList>
#include <QString>
#include <QUuid>

#include <functional>
#include <optional>

class ImportApplier;

// One file of a run and the poem it goes into.
struct ImportWorkItem {
    Q_DECLARE_TR_FUNCTIONS(ImportWorkItem)

public:
    QUuid poemID;
    QString poemTitle;
    QString fileName;
    double bestScore = 0.0;
    double secondBestScore = 0.0;
    QString filePath;

    // Proposals with a chosen poem, in proposal order; titles come from the lookup
    // ("(ohne Titel)" for an empty one, "(unbekannt)" for a poem that is gone).
    using TitleLookup = std::function<std::optional<QString>(const QUuid &)>;
    static QList<ImportWorkItem> fromProposals(const QList<ImportProposal> &proposals, const QString &folder,
                                               const TitleLookup &titleOf);
    static QString displayTitle(const std::optional<QString> &title);
};

// What reading one file gave.
struct ImportExtraction {
    QString text;
    std::optional<QByteArray> richTextData;
    bool timedOut = false;
    bool emptyFile = false;
    // The reader's own words when it failed.
    std::optional<QString> errorHint;
};
