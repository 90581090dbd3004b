#pragma once

#include "import/ImportProposal.h"

#include <QList>
#include <QString>

#include <array>
#include <optional>

// The review's segmented control: which proposals the list shows.
enum class ProposalFilter { needsMatch, lowConfidence, matched, all };

inline constexpr std::array<ProposalFilter, 4> allProposalFilters = {
    ProposalFilter::needsMatch, ProposalFilter::lowConfidence, ProposalFilter::matched, ProposalFilter::all};

QString rawValue(ProposalFilter filter);
std::optional<ProposalFilter> proposalFilterFromRaw(const QString &raw);
QString displayTitle(ProposalFilter filter);
bool accepts(ProposalFilter filter, const ImportProposal &proposal);
// Indices of the proposals that pass, in proposal order.
QList<qsizetype> visibleIndices(ProposalFilter filter, const QList<ImportProposal> &proposals);
