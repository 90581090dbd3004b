#pragma once

#include "import/ScannedFile.h"
#include "matching/MatchCandidate.h"

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QUuid>

#include <optional>

// One scanned file with the poems it may belong to. The matcher fills the candidates and
// the suggestion once; the review only ever changes the choice.
struct ImportProposal {
    static constexpr double preselectThreshold = 0.85;

    QString fileName;
    QString relativePath;
    QList<MatchCandidate> candidates; // best first
    std::optional<QString> suggestedPoemObjectURI;
    std::optional<QString> suggestedTitle;
    double suggestedScore = 0.0;
    std::optional<QString> chosenPoemObjectURI;

    // The review lists proposals by file; the relative path is unique within one scan.
    const QString &id() const { return relativePath; }

    // Suggests the first candidate and preselects it when it is safe enough.
    static ImportProposal make(const ScannedFile &file, QList<MatchCandidate> candidates);

    // The poem the file goes into; only a choice that parses as an id counts.
    std::optional<QUuid> chosenPoemID() const;
    // The chosen poem's title when it is one of the candidates.
    std::optional<QString> chosenCandidateTitle() const;
    double secondBestScore() const;

    bool operator==(const ImportProposal &other) const = default;

    QJsonObject toJson() const;
    static std::optional<ImportProposal> fromJson(const QJsonObject &object);
};
