#pragma once

#include <QStyledItemDelegate>

// Draws the choice cell as a drop-down button, so the review reads as a list of menus.
class ChoiceColumnDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
