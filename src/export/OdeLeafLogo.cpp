#include "export/OdeLeafLogo.h"

#include <QFile>

namespace {

const QString pngPath = QStringLiteral(":/odeleaf/logo/odeleaf-logo@2x.png");

} // namespace

QImage OdeLeafLogo::image()
{
    QImage image(pngPath);
    if (!image.isNull())
        image.setDevicePixelRatio(2);
    return image;
}

std::optional<QByteArray> OdeLeafLogo::png()
{
    QFile file(pngPath);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray bytes = file.readAll();
    if (bytes.isEmpty())
        return std::nullopt;
    return bytes;
}

QString OdeLeafLogo::svgPath()
{
    return QStringLiteral(":/odeleaf/logo/odeleaf-logo.svg");
}
