#pragma once

#include "analysis/StatisticCounts.h"

#include <QString>

// The statistics of one category; the empty name stands for poems without category.
struct CategoryStatistic {
    QString name;
    StatisticCounts counts;

    int count() const { return counts.total; }
    QString displayName() const;

    bool operator==(const CategoryStatistic &other) const = default;
};
