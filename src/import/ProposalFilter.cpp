#include "import/ProposalFilter.h"

#include <QCoreApplication>

QString rawValue(ProposalFilter filter)
{
    switch (filter) {
    case ProposalFilter::needsMatch:
        return QStringLiteral("needsMatch");
    case ProposalFilter::lowConfidence:
        return QStringLiteral("lowConfidence");
    case ProposalFilter::matched:
        return QStringLiteral("matched");
    case ProposalFilter::all:
        return QStringLiteral("all");
    }
    return {};
}

std::optional<ProposalFilter> proposalFilterFromRaw(const QString &raw)
{
    for (const ProposalFilter filter : allProposalFilters) {
        if (rawValue(filter) == raw)
            return filter;
    }
    return std::nullopt;
}

QString displayTitle(ProposalFilter filter)
{
    switch (filter) {
    case ProposalFilter::needsMatch:
        return QCoreApplication::translate("ProposalFilter", "Offen");
    case ProposalFilter::lowConfidence:
        return QCoreApplication::translate("ProposalFilter", "Unsicher");
    case ProposalFilter::matched:
        return QCoreApplication::translate("ProposalFilter", "Zugeordnet");
    case ProposalFilter::all:
        return QCoreApplication::translate("ProposalFilter", "Alle");
    }
    return {};
}

bool accepts(ProposalFilter filter, const ImportProposal &proposal)
{
    switch (filter) {
    case ProposalFilter::needsMatch:
        return !proposal.chosenPoemObjectURI.has_value();
    case ProposalFilter::lowConfidence:
        return proposal.suggestedScore < ImportProposal::preselectThreshold;
    case ProposalFilter::matched:
        return proposal.chosenPoemObjectURI.has_value();
    case ProposalFilter::all:
        return true;
    }
    return true;
}

QList<qsizetype> visibleIndices(ProposalFilter filter, const QList<ImportProposal> &proposals)
{
    QList<qsizetype> indices;
    for (qsizetype i = 0; i < proposals.size(); ++i) {
        if (accepts(filter, proposals.at(i)))
            indices.append(i);
    }
    return indices;
}
