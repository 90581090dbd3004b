#include "archive/Poem.h"

#include "archive/ArchiveContext.h"

Poem::Poem(ArchiveContext *context, qint64 key, PoemValues values, bool persisted)
    : m_context(context), m_key(key), m_values(values), m_saved(std::move(values)), m_persisted(persisted)
{
}

void Poem::setValues(const PoemValues &values)
{
    if (m_values == values)
        return;
    m_values = values;
    noteChanged();
}

QString Poem::objectID() const
{
    return objectIDPrefix() + QString::number(m_key);
}

QString Poem::objectIDPrefix()
{
    return QStringLiteral("x-odeleaf://archive/Poem/p");
}

void Poem::noteChanged()
{
    if (m_context)
        m_context->noteChanged(m_key);
}
