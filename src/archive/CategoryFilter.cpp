#include "archive/CategoryFilter.h"

#include <QCoreApplication>

QString CategoryFilter::displayName() const
{
    return name.isEmpty() ? QCoreApplication::translate("CategoryFilter", "Ohne Kategorie") : name;
}
