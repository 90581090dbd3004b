#pragma once

#include <QString>

// One category button of the sidebar. The empty name stands for poems without category.
struct CategoryFilter {
    QString name;
    int count = 0;

    QString displayName() const;
    bool operator==(const CategoryFilter &other) const = default;
};
