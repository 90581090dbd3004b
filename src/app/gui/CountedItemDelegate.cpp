#include "app/gui/CountedItemDelegate.h"

#include <QApplication>
#include <QPainter>

void CountedItemDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const QVariant count = index.data(CountRole);
    const QString countText = count.isValid() ? QString::number(count.toInt()) : QString();
    const int countWidth = countText.isEmpty() ? 0 : item.fontMetrics.horizontalAdvance(countText) + 12;

    // The style draws the background, icon and elided name in the space left of the count.
    const QWidget *widget = item.widget;
    QStyle *style = widget ? widget->style() : QApplication::style();
    const QString name = item.text;
    item.text.clear();
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, widget);

    const QRect textRect = style->subElementRect(QStyle::SE_ItemViewItemText, &item, widget);
    const QRect nameRect = textRect.adjusted(0, 0, -countWidth, 0);
    const bool selected = item.state & QStyle::State_Selected;
    const QPalette::ColorGroup group = item.state & QStyle::State_Enabled ? QPalette::Normal : QPalette::Disabled;
    painter->save();
    painter->setFont(item.font);
    painter->setPen(item.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text));
    painter->drawText(nameRect, Qt::AlignVCenter | Qt::AlignLeft,
                      item.fontMetrics.elidedText(name, Qt::ElideRight, nameRect.width()));
    if (!countText.isEmpty()) {
        QColor muted = item.palette.color(group, selected ? QPalette::HighlightedText : QPalette::PlaceholderText);
        painter->setPen(muted);
        painter->drawText(textRect.adjusted(0, 0, -6, 0), Qt::AlignVCenter | Qt::AlignRight, countText);
    }
    painter->restore();
}

QSize CountedItemDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.setHeight(qMax(size.height(), option.fontMetrics.height() + 12));
    return size;
}
