#include "analysis/CategoryStatistic.h"

#include "archive/CategoryFilter.h"

QString CategoryStatistic::displayName() const
{
    return CategoryFilter{name, 0}.displayName();
}
