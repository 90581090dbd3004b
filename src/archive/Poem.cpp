#include "archive/Poem.h"

#include "archive/ArchiveContext.h"

#include <QCoreApplication>

Poem::Poem(ArchiveContext *context, qint64 key, PoemValues values, bool persisted)
    : m_context(context), m_key(key), m_values(std::move(values)), m_persisted(persisted)
{
}

void Poem::setValues(const PoemValues &values)
{
    readPendingRichText();
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
    readPendingRichText();
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

void Poem::readRichText() const
{
    // Filling in what the store held all along is no change of the poem, which is never
    // const itself: only this view of it is.
    auto &self = const_cast<Poem &>(*this);
    Q_ASSERT(!m_savedApart);
    self.m_richTextPending = false;
    auto read = m_context ? m_context->readRichText(*this) : Result<std::optional<QByteArray>>(Error{});
    if (!read) {
        self.m_richTextUnreadable = true;
        return;
    }
    self.m_values.richTextData = std::move(read.value());
}

void Poem::letGoOfRichText()
{
    if (m_savedApart || !m_persisted || m_richTextUnreadable || !m_values.richTextData)
        return;
    m_values.richTextData.reset();
    m_richTextPending = true;
}

Result<void> Poem::readFully() const
{
    readPendingRichText();
    if (!m_richTextUnreadable)
        return {};
    return Error{QCoreApplication::translate("Poem",
                                             "Der formatierte Text von „%1“ konnte nicht aus dem Archiv gelesen "
                                             "werden. Das Gedicht bleibt im Archiv, wie es ist.")
                     .arg(m_values.title.value_or(QString()).trimmed())};
}
