#include "editor/AppTheme.h"

QColor AppTheme::accent()
{
    return QColor(179, 144, 67);
}

QColor AppTheme::paperText()
{
    return QColor(34, 31, 26);
}

QColor AppTheme::secondaryLabel()
{
    return QColor(142, 142, 147);
}

QColor AppTheme::systemRed()
{
    return QColor(255, 59, 48);
}

QColor AppTheme::systemBlue()
{
    return QColor(0, 122, 255);
}

QColor AppTheme::systemGreen()
{
    return QColor(52, 199, 89);
}

QColor AppTheme::systemYellow()
{
    return QColor(255, 204, 0);
}

QColor AppTheme::standardSurface()
{
    return QColor(33, 31, 29);
}

QColor AppTheme::paperSurface()
{
    return QColor(250, 246, 238);
}
