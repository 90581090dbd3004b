#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

// Trimmed category names by small number, so a rebuild counts and compares categories
// without hashing a string per poem. Names are only added; the table stays tiny.
class CategoryNameTable {
public:
    int idOf(const QString &trimmedName);
    // -1 when no poem ever had that name.
    int find(const QString &trimmedName) const { return m_ids.value(trimmedName, -1); }
    const QString &name(int id) const { return m_names.at(id); }
    int size() const { return int(m_names.size()); }

private:
    QHash<QString, int> m_ids;
    QStringList m_names;
};
