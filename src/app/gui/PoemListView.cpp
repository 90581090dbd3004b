#include "app/gui/PoemListView.h"

PoemListView::PoemListView(QWidget *parent) : QListView(parent)
{
    setUniformItemSizes(true);
}

void PoemListView::dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight, const QList<int> &roles)
{
    // Repaints the rows and updates an open editor, without the layout pass.
    QAbstractItemView::dataChanged(topLeft, bottomRight, roles);
}
