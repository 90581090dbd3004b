#include "archive/CategoryNameTable.h"

int CategoryNameTable::idOf(const QString &trimmedName)
{
    const auto found = m_ids.constFind(trimmedName);
    if (found != m_ids.cend())
        return found.value();
    const int id = int(m_names.size());
    m_names.append(trimmedName);
    m_ids.insert(trimmedName, id);
    return id;
}
