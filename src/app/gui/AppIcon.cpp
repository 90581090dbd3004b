#include "app/gui/AppIcon.h"

#include "export/OdeLeafLogo.h"

#include <QPixmap>

QIcon AppIcon::icon()
{
    // The drawing scales to every size where the SVG icon engine is installed; the PNG
    // covers the rest.
    QIcon icon(OdeLeafLogo::svgPath());
    icon.addPixmap(QPixmap::fromImage(OdeLeafLogo::image()));
    return icon;
}
