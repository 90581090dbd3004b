#pragma once

#include "import/ProposalFilter.h"

#include <QSortFilterProxyModel>

// Shows the proposals that pass the review's filter, in proposal order.
class ProposalFilterProxyModel : public QSortFilterProxyModel {
    Q_OBJECT

public:
    explicit ProposalFilterProxyModel(QObject *parent = nullptr);

    ProposalFilter filter() const { return m_filter; }
    void setFilter(ProposalFilter filter);

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    ProposalFilter m_filter = ProposalFilter::needsMatch;
};
