#include "import/gui/ImportProposalTableModel.h"

#include <QFont>
#include <QGuiApplication>
#include <QPalette>

ImportProposalTableModel::ImportProposalTableModel(QList<ImportProposal> proposals, TitleLookup lookup, QObject *parent)
    : QAbstractTableModel(parent), m_proposals(std::move(proposals)), m_lookup(std::move(lookup))
{
}

QString ImportProposalTableModel::noChoiceText()
{
    return tr("— keine Zuordnung —");
}

QString ImportProposalTableModel::scoreText(double score)
{
    return tr("%1 %").arg(int(score * 100));
}

void ImportProposalTableModel::setChoice(qsizetype proposalIndex, std::optional<QString> poemObjectURI)
{
    if (proposalIndex < 0 || proposalIndex >= m_proposals.size())
        return;
    ImportProposal &proposal = m_proposals[proposalIndex];
    if (proposal.chosenPoemObjectURI == poemObjectURI)
        return;
    proposal.chosenPoemObjectURI = std::move(poemObjectURI);
    Q_EMIT dataChanged(index(int(proposalIndex), 0), index(int(proposalIndex), columnTotal - 1));
}

QString ImportProposalTableModel::choiceTitle(const ImportProposal &proposal) const
{
    if (!proposal.chosenPoemObjectURI)
        return noChoiceText();
    if (const auto title = proposal.chosenCandidateTitle())
        return *title;
    if (m_lookup) {
        if (const auto title = m_lookup(*proposal.chosenPoemObjectURI))
            return *title;
    }
    return tr("(unbekannt)");
}

int ImportProposalTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_proposals.size());
}

int ImportProposalTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : columnTotal;
}

QVariant ImportProposalTableModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_proposals.size())
        return {};
    const ImportProposal &proposal = m_proposals.at(index.row());
    if (role == proposalIndexRole)
        return index.row();
    switch (index.column()) {
    case fileColumn:
        if (role == Qt::DisplayRole)
            return proposal.fileName;
        if (role == Qt::ToolTipRole)
            return proposal.relativePath;
        break;
    case suggestionColumn:
        if (role == Qt::DisplayRole)
            return proposal.suggestedTitle.value_or(tr("Kein Vorschlag"));
        if (role == Qt::ForegroundRole && !proposal.suggestedTitle)
            return QGuiApplication::palette().brush(QPalette::Disabled, QPalette::Text);
        break;
    case scoreColumn:
        if (role == Qt::DisplayRole)
            return proposal.suggestedTitle ? scoreText(proposal.suggestedScore) : QString();
        if (role == Qt::TextAlignmentRole)
            return int(Qt::AlignRight | Qt::AlignVCenter);
        if (role == Qt::ForegroundRole && proposal.suggestedTitle &&
            proposal.suggestedScore < ImportProposal::preselectThreshold)
            return QGuiApplication::palette().brush(QPalette::Disabled, QPalette::Text);
        break;
    case choiceColumn:
        if (role == Qt::DisplayRole)
            return choiceTitle(proposal);
        if (role == Qt::ToolTipRole)
            return tr("Klicken, um die Zuordnung zu ändern");
        break;
    default:
        break;
    }
    return {};
}

QVariant ImportProposalTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case fileColumn:
        return tr("Datei");
    case suggestionColumn:
        return tr("Vorschlag");
    case scoreColumn:
        return tr("Score");
    case choiceColumn:
        return tr("Zuordnung");
    default:
        return {};
    }
}
