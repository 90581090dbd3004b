#include "archive/Trash.h"

#include "archive/ArchiveContext.h"

Trash::Trash(ArchiveContext &context, StatusCallback onStatus) : m_context(context), m_onStatus(std::move(onStatus))
{
}

QList<PoemPtr> Trash::poems() const
{
    return m_context.fetch([](const Poem &poem) { return poem.isInTrash(); },
                           [](const Poem &a, const Poem &b) { return *a.deletedAt() > *b.deletedAt(); });
}

int Trash::count() const
{
    return count(m_context);
}

int Trash::count(const ArchiveContext &context)
{
    return context.count([](const Poem &poem) { return poem.isInTrash(); });
}

Result<QString> Trash::restore(const PoemPtr &poem, const QDateTime &now)
{
    poem->setDeletedAt(std::nullopt);
    poem->setUpdatedAt(now);
    return saveChanges(tr("Gedicht wiederhergestellt: %1").arg(displayTitle(*poem)));
}

Result<QString> Trash::deletePermanently(const PoemPtr &poem)
{
    const QString title = displayTitle(*poem);
    m_context.deletePoem(poem);
    return saveChanges(tr("Gedicht endgültig gelöscht: %1").arg(title));
}

Result<QString> Trash::emptyTrash()
{
    const QList<PoemPtr> trashed = poems();
    for (const PoemPtr &poem : trashed)
        m_context.deletePoem(poem);
    return saveChanges(emptiedText(int(trashed.size())));
}

QString Trash::displayTitle(const Poem &poem)
{
    const QString title = poem.title().value_or(QString());
    return title.isEmpty() ? tr("(ohne Titel)") : title;
}

QString Trash::emptiedText(int count)
{
    if (count == 1)
        return tr("Papierkorb geleert: %1 Gedicht endgültig gelöscht.").arg(count);
    return tr("Papierkorb geleert: %1 Gedichte endgültig gelöscht.").arg(count);
}

Result<QString> Trash::saveChanges(const QString &status)
{
    if (auto saved = m_context.save(); !saved) {
        m_context.rollback();
        const QString failure = tr("Papierkorb-Aktion fehlgeschlagen: %1").arg(saved.errorMessage());
        if (m_onStatus)
            m_onStatus(failure);
        return Error{failure};
    }
    if (m_onStatus)
        m_onStatus(status);
    return status;
}
