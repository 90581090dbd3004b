#pragma once

#include <QStyledItemDelegate>

// One poem in the list: title and date, the excerpt, then category and status badge.
class PoemRowDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    void paintBadge(QPainter *painter, const QRect &line, const QModelIndex &index, const QFont &font) const;
};
