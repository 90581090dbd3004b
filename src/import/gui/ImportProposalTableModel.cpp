#include "import/gui/ImportProposalTableModel.h"

#include <QApplication>
#include <QFont>
#include <QGuiApplication>
#include <QIcon>
#include <QPalette>
#include <QStyle>

ImportProposalTableModel::ImportProposalTableModel(QList<ImportProposal> proposals, TitleLookup lookup, QObject *parent)
    : QAbstractTableModel(parent), m_proposals(std::move(proposals)), m_lookup(std::move(lookup))
{
    for (const ImportProposal &proposal : std::as_const(m_proposals))
        countChoice(proposal.chosenPoemObjectURI, 1);
}

void ImportProposalTableModel::countChoice(const std::optional<QString> &poemObjectURI, int delta)
{
    if (poemObjectURI)
        m_choiceCounts[*poemObjectURI] += delta;
}

int ImportProposalTableModel::sharedChoiceCount() const
{
    return int(std::count_if(m_choiceCounts.cbegin(), m_choiceCounts.cend(), [](int count) { return count > 1; }));
}

bool ImportProposalTableModel::sharesItsChoice(const ImportProposal &proposal) const
{
    return proposal.chosenPoemObjectURI && m_choiceCounts.value(*proposal.chosenPoemObjectURI) > 1;
}

QString ImportProposalTableModel::sharedChoiceText()
{
    return tr("Diesem Gedicht ist noch eine andere Datei zugeordnet; übernommen würde nur der Text der zuletzt "
              "gelesenen.");
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
    const int sharedBefore = sharedChoiceCount();
    countChoice(proposal.chosenPoemObjectURI, -1);
    proposal.chosenPoemObjectURI = std::move(poemObjectURI);
    countChoice(proposal.chosenPoemObjectURI, 1);
    Q_EMIT dataChanged(index(int(proposalIndex), 0), index(int(proposalIndex), columnTotal - 1));
    // Another row may have gained or lost its warning.
    Q_EMIT dataChanged(index(0, choiceColumn), index(rowCount() - 1, choiceColumn));
    if (sharedChoiceCount() != sharedBefore)
        Q_EMIT sharedChoicesChanged();
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
    if (role == sortRole) {
        if (index.column() == scoreColumn)
            return proposal.suggestedTitle ? proposal.suggestedScore : -1.0;
        role = Qt::DisplayRole;
    }
    switch (index.column()) {
    case fileColumn:
        // With its subfolder: two folders may hold files of one name.
        if (role == Qt::DisplayRole)
            return proposal.relativePath.isEmpty() ? proposal.fileName : proposal.relativePath;
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
            return sharesItsChoice(proposal) ? sharedChoiceText() : tr("Klicken, um die Zuordnung zu ändern");
        if (role == Qt::DecorationRole && sharesItsChoice(proposal))
            return QIcon::fromTheme(QStringLiteral("dialog-warning"),
                                    QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning));
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
