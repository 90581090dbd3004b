#pragma once

#include <QStyledItemDelegate>

// A sidebar line: icon and name on the left, a muted count on the right.
class CountedItemDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    static constexpr int CountRole = Qt::UserRole + 40;

    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
