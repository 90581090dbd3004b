#include "app/gui/PoemRowDelegate.h"

#include "app/gui/PoemListModel.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>

namespace {

constexpr int horizontalPadding = 14;
constexpr int verticalPadding = 9;
constexpr int lineGap = 3;

QFont titleFont(const QFont &base)
{
    QFont font = base;
    font.setWeight(QFont::DemiBold);
    return font;
}

QFont smallFont(const QFont &base)
{
    QFont font = base;
    font.setPointSizeF(base.pointSizeF() * 0.88);
    return font;
}

// Published poems are green, podcast ones blue, drafts stay grey.
QColor badgeColour(const QModelIndex &index)
{
    if (index.data(PoemListModel::PublishedRole).toBool())
        return QColor(0x2e, 0x7d, 0x32);
    if (index.data(PoemListModel::PodcastRole).toBool())
        return QColor(0x1f, 0x5f, 0xa8);
    return QColor(0x75, 0x75, 0x75);
}

} // namespace

void PoemRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    item.text.clear();
    const QWidget *widget = item.widget;
    QStyle *style = widget ? widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &item, painter, widget);

    const bool selected = item.state & QStyle::State_Selected;
    const QPalette &palette = item.palette;
    const QColor text = palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
    const QColor muted(0x80, 0x7d, 0x76);

    // A hairline between poems.
    painter->save();
    painter->setPen(QColor(0xee, 0xec, 0xe7));
    painter->drawLine(item.rect.left() + horizontalPadding, item.rect.bottom(), item.rect.right(), item.rect.bottom());
    painter->restore();

    const QRect area = item.rect.adjusted(horizontalPadding, verticalPadding, -horizontalPadding, -verticalPadding);
    const QFont title = titleFont(item.font);
    const QFont small = smallFont(item.font);
    const QFontMetrics titleMetrics(title);
    const QFontMetrics smallMetrics(small);
    const QFontMetrics bodyMetrics(item.font);

    painter->save();
    // Title line, the date right-aligned in small type.
    const QString date = index.data(PoemListModel::DateTextRole).toString();
    const int dateWidth = smallMetrics.horizontalAdvance(date);
    QRect line(area.left(), area.top(), area.width(), titleMetrics.height());
    painter->setFont(small);
    painter->setPen(muted);
    painter->drawText(line, Qt::AlignRight | Qt::AlignVCenter, date);
    painter->setFont(title);
    painter->setPen(text);
    const QString titleText = index.data(Qt::DisplayRole).toString();
    painter->drawText(line.adjusted(0, 0, -(dateWidth + 12), 0), Qt::AlignLeft | Qt::AlignVCenter,
                      titleMetrics.elidedText(titleText, Qt::ElideRight, line.width() - dateWidth - 12));

    // Excerpt.
    line = QRect(area.left(), line.bottom() + 1 + lineGap, area.width(), bodyMetrics.height());
    painter->setFont(item.font);
    QColor excerptColour = text;
    excerptColour.setAlpha(index.data(PoemListModel::HasTextRole).toBool() ? 190 : 120);
    painter->setPen(excerptColour);
    painter->drawText(
        line, Qt::AlignLeft | Qt::AlignVCenter,
        bodyMetrics.elidedText(index.data(PoemListModel::ExcerptRole).toString(), Qt::ElideRight, line.width()));

    // Category and status.
    line = QRect(area.left(), line.bottom() + 1 + lineGap + 1, area.width(), smallMetrics.height() + 4);
    paintBadge(painter, line, index, small);
    painter->restore();
}

void PoemRowDelegate::paintBadge(QPainter *painter, const QRect &line, const QModelIndex &index,
                                 const QFont &font) const
{
    const QFontMetrics metrics(font);
    const QString status = index.data(PoemListModel::StatusTextRole).toString();
    const QColor colour = badgeColour(index);
    const QRect badge(line.left(), line.top(), metrics.horizontalAdvance(status) + 14, line.height());

    QPainterPath outline;
    outline.addRoundedRect(QRectF(badge).adjusted(0.5, 0.5, -0.5, -0.5), badge.height() / 2.0, badge.height() / 2.0);
    painter->setRenderHint(QPainter::Antialiasing);
    QColor fill = colour;
    fill.setAlpha(30);
    painter->fillPath(outline, fill);
    painter->setFont(font);
    painter->setPen(colour);
    painter->drawText(badge, Qt::AlignCenter, status);

    const QString category = index.data(PoemListModel::CategoryRole).toString();
    if (category.isEmpty())
        return;
    painter->setPen(QColor(0x6b, 0x68, 0x62));
    const QRect categoryRect(badge.right() + 10, line.top(), line.right() - badge.right() - 10, line.height());
    painter->drawText(categoryRect, Qt::AlignLeft | Qt::AlignVCenter,
                      metrics.elidedText(category, Qt::ElideRight, categoryRect.width()));
}

QSize PoemRowDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    const QFontMetrics titleMetrics(titleFont(option.font));
    const QFontMetrics bodyMetrics(option.font);
    const QFontMetrics smallMetrics(smallFont(option.font));
    const int height = verticalPadding * 2 + titleMetrics.height() + lineGap + bodyMetrics.height() + lineGap + 1 +
                       smallMetrics.height() + 4;
    return {200, height};
}
