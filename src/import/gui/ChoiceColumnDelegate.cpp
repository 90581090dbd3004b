#include "import/gui/ChoiceColumnDelegate.h"

#include <QApplication>
#include <QIcon>
#include <QPainter>
#include <QStyle>

namespace {

QStyleOptionComboBox comboOption(const QStyleOptionViewItem &item, const QModelIndex &index)
{
    QStyleOptionComboBox combo;
    combo.rect = item.rect.adjusted(2, 2, -2, -2);
    combo.state = item.state & (QStyle::State_Enabled | QStyle::State_MouseOver);
    combo.state |= QStyle::State_Enabled;
    combo.palette = item.palette;
    combo.fontMetrics = item.fontMetrics;
    combo.currentText = index.data(Qt::DisplayRole).toString();
    combo.editable = false;
    combo.frame = true;
    return combo;
}

} // namespace

void ChoiceColumnDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const QWidget *widget = option.widget;
    QStyle *style = widget ? widget->style() : QApplication::style();
    // Keep the row's selection background behind the button.
    item.text.clear();
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, widget);

    QStyleOptionComboBox combo = comboOption(item, index);
    style->drawComplexControl(QStyle::CC_ComboBox, &combo, painter, widget);
    combo.rect = style->subControlRect(QStyle::CC_ComboBox, &combo, QStyle::SC_ComboBoxEditField, widget);
    const QString text = index.data(Qt::DisplayRole).toString();
    painter->save();
    // A warning (a poem chosen twice) stands before the title, inside the button.
    const QIcon warning = index.data(Qt::DecorationRole).value<QIcon>();
    if (!warning.isNull()) {
        const int side = std::min(16, combo.rect.height());
        const QRect iconRect(combo.rect.left() + 4, combo.rect.center().y() - side / 2, side, side);
        warning.paint(painter, iconRect);
        combo.rect.setLeft(iconRect.right() + 2);
    }
    painter->setPen(combo.palette.color(QPalette::ButtonText));
    painter->drawText(combo.rect.adjusted(4, 0, -2, 0), Qt::AlignVCenter | Qt::AlignLeft,
                      combo.fontMetrics.elidedText(text, Qt::ElideRight, combo.rect.width() - 6));
    painter->restore();
}

QSize ChoiceColumnDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.setHeight(std::max(size.height(), option.fontMetrics.height() + 14));
    size.setWidth(std::max(size.width() + 40, 220));
    return size;
}
