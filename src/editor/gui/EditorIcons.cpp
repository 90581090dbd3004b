#include "editor/gui/EditorIcons.h"

#include "editor/AppTheme.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>

namespace {

constexpr int iconSize = 32;

QColor ink()
{
    return QApplication::palette().color(QPalette::ButtonText);
}

QPixmap canvas()
{
    QPixmap pixmap(iconSize, iconSize);
    pixmap.fill(Qt::transparent);
    return pixmap;
}

struct Lettering {
    int pixelSize = 22;
    bool bold = false;
    bool italic = false;
    bool underline = false;
};

void drawLetters(QPainter &painter, const QRect &box, const QString &text, const Lettering &style)
{
    QFont font = QApplication::font();
    font.setPixelSize(style.pixelSize);
    font.setBold(style.bold);
    font.setItalic(style.italic);
    font.setUnderline(style.underline);
    painter.setFont(font);
    painter.setPen(ink());
    painter.drawText(box, Qt::AlignCenter, text);
}

} // namespace

QIcon EditorIcons::alignment(Qt::Alignment alignment)
{
    QPixmap pixmap = canvas();
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(ink(), 2.6, Qt::SolidLine, Qt::RoundCap));
    const int lengths[] = {24, 16, 22, 14};
    for (int i = 0; i < 4; ++i) {
        const int y = 7 + i * 6;
        const int length = lengths[i];
        int x = 4;
        if (alignment & Qt::AlignHCenter)
            x = (iconSize - length) / 2;
        else if (alignment & Qt::AlignRight)
            x = iconSize - 4 - length;
        painter.drawLine(x, y, x + length, y);
    }
    return QIcon(pixmap);
}

QIcon EditorIcons::colorSwatch(const QColor &color)
{
    QPixmap pixmap = canvas();
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(ink(), 1.5));
    painter.setBrush(color.isValid() ? color : QApplication::palette().color(QPalette::Text));
    painter.drawEllipse(QRectF(5, 5, 22, 22));
    return QIcon(pixmap);
}

QIcon EditorIcons::letter(const QString &letter, bool bold, bool italic, bool underline)
{
    QPixmap pixmap = canvas();
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::TextAntialiasing);
    drawLetters(painter, pixmap.rect(), letter, {22, bold, italic, underline});
    return QIcon(pixmap);
}

QIcon EditorIcons::clearFormatting()
{
    QPixmap pixmap = canvas();
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    drawLetters(painter, QRect(0, 0, 26, 30), QStringLiteral("T"), {22, false, true, false});
    painter.setPen(QPen(AppTheme::systemRed(), 2.6, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(19, 19, 28, 28);
    painter.drawLine(28, 19, 19, 28);
    return QIcon(pixmap);
}

QIcon EditorIcons::spelling()
{
    QPixmap pixmap = canvas();
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    drawLetters(painter, QRect(0, 2, 32, 18), QStringLiteral("ABC"), {13, true, false, false});
    QPainterPath wave;
    wave.moveTo(3, 25);
    for (int x = 3; x < 29; x += 4)
        wave.quadTo(x + 1, x % 8 == 3 ? 29 : 21, x + 4, 25);
    painter.setPen(QPen(AppTheme::systemRed(), 2));
    painter.drawPath(wave);
    return QIcon(pixmap);
}

QIcon EditorIcons::find()
{
    QPixmap pixmap = canvas();
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(ink(), 2.8, Qt::SolidLine, Qt::RoundCap));
    painter.drawEllipse(QRectF(5, 5, 15, 15));
    painter.drawLine(QPointF(18, 18), QPointF(27, 27));
    return QIcon(pixmap);
}

QIcon EditorIcons::notes()
{
    QPixmap pixmap = canvas();
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(ink(), 2.2));
    painter.drawRoundedRect(QRectF(6, 4, 20, 24), 3, 3);
    for (const int y : {11, 16, 21})
        painter.drawLine(10, y, 22, y);
    return QIcon(pixmap);
}

QIcon EditorIcons::duplicate()
{
    QPixmap pixmap = canvas();
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(ink(), 2.2));
    painter.drawRoundedRect(QRectF(4, 4, 16, 19), 3, 3);
    painter.setBrush(QApplication::palette().color(QPalette::Button));
    painter.drawRoundedRect(QRectF(12, 10, 16, 19), 3, 3);
    return QIcon(pixmap);
}
