#include "import/gui/ProposalFilterProxyModel.h"

#include "import/gui/ImportProposalTableModel.h"

ProposalFilterProxyModel::ProposalFilterProxyModel(QObject *parent) : QSortFilterProxyModel(parent)
{
    setDynamicSortFilter(true);
}

void ProposalFilterProxyModel::setFilter(ProposalFilter filter)
{
    if (filter == m_filter)
        return;
    m_filter = filter;
    invalidateRowsFilter();
}

bool ProposalFilterProxyModel::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    const auto *model = qobject_cast<const ImportProposalTableModel *>(sourceModel());
    if (!model || sourceParent.isValid() || sourceRow >= model->proposals().size())
        return false;
    return accepts(m_filter, model->proposals().at(sourceRow));
}
