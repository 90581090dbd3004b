#include "matching/MatchCandidate.h"

QJsonObject MatchCandidate::toJson() const
{
    return QJsonObject{{QStringLiteral("poemObjectURI"), poemObjectURI},
                       {QStringLiteral("poemTitle"), poemTitle},
                       {QStringLiteral("score"), score}};
}

std::optional<MatchCandidate> MatchCandidate::fromJson(const QJsonObject &object)
{
    const QJsonValue uri = object.value(QStringLiteral("poemObjectURI"));
    const QJsonValue title = object.value(QStringLiteral("poemTitle"));
    const QJsonValue score = object.value(QStringLiteral("score"));
    if (!uri.isString() || !title.isString() || !score.isDouble())
        return std::nullopt;
    return MatchCandidate{uri.toString(), title.toString(), score.toDouble()};
}
