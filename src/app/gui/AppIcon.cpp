#include "app/gui/AppIcon.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace {

QPixmap drawLeaf(int size)
{
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal s = size;

    QPainterPath tile;
    tile.addRoundedRect(QRectF(s * 0.04, s * 0.04, s * 0.92, s * 0.92), s * 0.22, s * 0.22);
    QLinearGradient background(0, 0, 0, s);
    background.setColorAt(0, QColor(0x4c, 0x8c, 0x5a));
    background.setColorAt(1, QColor(0x2f, 0x64, 0x3d));
    painter.fillPath(tile, background);

    QPainterPath leaf;
    leaf.moveTo(s * 0.26, s * 0.76);
    leaf.cubicTo(s * 0.20, s * 0.42, s * 0.42, s * 0.22, s * 0.78, s * 0.22);
    leaf.cubicTo(s * 0.80, s * 0.56, s * 0.58, s * 0.78, s * 0.26, s * 0.76);
    painter.fillPath(leaf, QColor(0xf4, 0xf1, 0xe6));

    QPen vein(QColor(0x3d, 0x76, 0x4a), qMax(1.0, s * 0.035), Qt::SolidLine, Qt::RoundCap);
    painter.setPen(vein);
    QPainterPath stem;
    stem.moveTo(s * 0.22, s * 0.80);
    stem.quadTo(s * 0.46, s * 0.52, s * 0.70, s * 0.30);
    painter.drawPath(stem);
    return pixmap;
}

} // namespace

QIcon AppIcon::icon()
{
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256})
        icon.addPixmap(drawLeaf(size));
    return icon;
}
