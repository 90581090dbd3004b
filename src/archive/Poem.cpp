#include "archive/Poem.h"

#include "archive/ArchiveContext.h"

Poem::Poem(ArchiveContext *context, qint64 key, PoemValues values, bool persisted)
    : m_context(context), m_key(key), m_values(std::move(values)), m_persisted(persisted)
{
}

void Poem::setValues(const PoemValues &values)
{
    if (m_values == values)
        return;
    valuesToChange() = values;
    noteChanged();
}

void Poem::setSavedAndCurrent(const PoemValues &saved, PoemValues current)
{
    if (saved == current)
        m_savedApart.reset();
    else if (m_savedApart)
        *m_savedApart = saved;
    else
        m_savedApart = std::make_unique<PoemValues>(saved);
    m_values = std::move(current);
}

void Poem::revertToSaved()
{
    if (!m_savedApart)
        return;
    m_values = std::move(*m_savedApart);
    m_savedApart.reset();
}

PoemValues &Poem::valuesToChange()
{
    if (!m_savedApart)
        m_savedApart = std::make_unique<PoemValues>(m_values);
    return m_values;
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
