#include "editor/ImageSizing.h"

#include <algorithm>

QSizeF ImageSizing::fittedToWidth(QSizeF natural, double target)
{
    if (!(natural.width() > 0) || !(natural.height() > 0))
        return QSizeF(target, target * 0.66);
    const double scale = std::min(target / natural.width(), 1.0);
    return natural * scale;
}

QSizeF ImageSizing::forInsert(QSizeF natural, double textWidth)
{
    return fittedToWidth(natural, std::clamp(textWidth, minimumInsertWidth, maximumInsertWidth));
}

QSizeF ImageSizing::forResize(QSizeF natural, WriterImageSize size)
{
    return fittedToWidth(natural, targetWidth(size));
}

QSizeF ImageSizing::forAppend(QSizeF natural)
{
    if (!(natural.width() > 0) || !(natural.height() > 0))
        return QSizeF(appendBoxWidth, appendBoxWidth * 0.66);
    const double scale = std::min({appendBoxWidth / natural.width(), appendBoxHeight / natural.height(), 1.0});
    return natural * scale;
}
