#include "archive/PoemRow.h"

#include <QCoreApplication>

QString PoemRow::displayTitle() const
{
    return title.isEmpty() ? QCoreApplication::translate("PoemRow", "Gedicht ohne Titel") : title;
}
