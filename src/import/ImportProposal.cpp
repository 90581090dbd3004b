#include "import/ImportProposal.h"

#include <QJsonArray>

ImportProposal ImportProposal::make(const ScannedFile &file, QList<MatchCandidate> candidates)
{
    ImportProposal proposal;
    proposal.fileName = file.fileName;
    proposal.relativePath = file.relativePath;
    proposal.candidates = std::move(candidates);
    if (proposal.candidates.isEmpty())
        return proposal;
    const MatchCandidate &best = proposal.candidates.constFirst();
    proposal.suggestedPoemObjectURI = best.poemObjectURI;
    proposal.suggestedTitle = best.poemTitle;
    proposal.suggestedScore = best.score;
    if (best.score >= preselectThreshold)
        proposal.chosenPoemObjectURI = best.poemObjectURI;
    return proposal;
}

std::optional<QUuid> ImportProposal::chosenPoemID() const
{
    if (!chosenPoemObjectURI)
        return std::nullopt;
    const QUuid id = QUuid::fromString(*chosenPoemObjectURI);
    if (id.isNull())
        return std::nullopt;
    return id;
}

std::optional<QString> ImportProposal::chosenCandidateTitle() const
{
    if (!chosenPoemObjectURI)
        return std::nullopt;
    for (const MatchCandidate &candidate : candidates) {
        if (candidate.poemObjectURI == *chosenPoemObjectURI)
            return candidate.poemTitle;
    }
    return std::nullopt;
}

double ImportProposal::secondBestScore() const
{
    return candidates.size() < 2 ? 0.0 : candidates.at(1).score;
}

QJsonObject ImportProposal::toJson() const
{
    QJsonArray candidateArray;
    for (const MatchCandidate &candidate : candidates)
        candidateArray.append(candidate.toJson());
    QJsonObject object{{QStringLiteral("fileName"), fileName},
                       {QStringLiteral("relativePath"), relativePath},
                       {QStringLiteral("candidates"), candidateArray},
                       {QStringLiteral("suggestedScore"), suggestedScore}};
    if (suggestedPoemObjectURI)
        object.insert(QStringLiteral("suggestedPoemObjectURI"), *suggestedPoemObjectURI);
    if (suggestedTitle)
        object.insert(QStringLiteral("suggestedTitle"), *suggestedTitle);
    if (chosenPoemObjectURI)
        object.insert(QStringLiteral("chosenPoemObjectURI"), *chosenPoemObjectURI);
    return object;
}

std::optional<ImportProposal> ImportProposal::fromJson(const QJsonObject &object)
{
    const auto optionalString = [&](const QString &key, std::optional<QString> &target) {
        const QJsonValue value = object.value(key);
        if (value.isString())
            target = value.toString();
        return value.isUndefined() || value.isNull() || value.isString();
    };
    ImportProposal proposal;
    const QJsonValue fileName = object.value(QStringLiteral("fileName"));
    const QJsonValue relativePath = object.value(QStringLiteral("relativePath"));
    const QJsonValue candidates = object.value(QStringLiteral("candidates"));
    const QJsonValue score = object.value(QStringLiteral("suggestedScore"));
    if (!fileName.isString() || !relativePath.isString() || !candidates.isArray() || !score.isDouble())
        return std::nullopt;
    proposal.fileName = fileName.toString();
    proposal.relativePath = relativePath.toString();
    proposal.suggestedScore = score.toDouble();
    for (const QJsonValue candidate : candidates.toArray()) {
        auto decoded = MatchCandidate::fromJson(candidate.toObject());
        if (!decoded)
            return std::nullopt;
        proposal.candidates.append(*decoded);
    }
    if (!optionalString(QStringLiteral("suggestedPoemObjectURI"), proposal.suggestedPoemObjectURI) ||
        !optionalString(QStringLiteral("suggestedTitle"), proposal.suggestedTitle) ||
        !optionalString(QStringLiteral("chosenPoemObjectURI"), proposal.chosenPoemObjectURI))
        return std::nullopt;
    return proposal;
}
