#include "import/ImportApplier.h"

#include "archive/ArchiveContext.h"
#include "archive/PoemVersion.h"
#include "archive/VersionReason.h"

ImportApplier::ImportApplier(ArchiveContext &context, UndoWriter writeUndo, int batchSize)
    : m_context(context), m_writeUndo(std::move(writeUndo)), m_batchSize(std::max(1, batchSize)),
      m_clock([] { return QDateTime::currentDateTimeUtc(); }),
      m_versionReason(PoemVersion::reasonKey(QT_TRANSLATE_NOOP("PoemVersion", "vor Textimport")))
{
    // Trashed poems too: a file chosen for a poem that went to the trash still finds it.
    for (const PoemPtr &poem : context.fetch()) {
        if (poem->id())
            m_poemMap.insert(*poem->id(), poem);
    }
}

bool ImportApplier::hasText(const QUuid &id) const
{
    const PoemPtr poem = m_poemMap.value(id);
    return poem && !poem->text().value_or(QString()).trimmed().isEmpty();
}

ImportApplier::Outcome ImportApplier::apply(const QUuid &poemID, const QString &text,
                                            const std::optional<QByteArray> &richTextData, bool onlyIfEmpty)
{
    const PoemPtr poem = m_poemMap.value(poemID);
    if (!poem)
        return {};
    if (onlyIfEmpty && hasText(poemID))
        return {false, true, std::nullopt};
    if (!m_recorded.contains(poemID)) {
        m_recorded.insert(poemID);
        m_undoItems.append({poemID, poem->title().value_or(QString()), poem->text(), poem->richTextData()});
    }
    poem->setText(text);
    poem->setRichTextData(richTextData);
    poem->setUpdatedAt(m_clock());
    ++m_pending;
    if (!m_batch.contains(poem))
        m_batch.append(poem);
    Outcome outcome{true, false, std::nullopt};
    if (m_pending >= m_batchSize) {
        if (auto committed = commit(); !committed)
            outcome.saveError = committed.errorMessage();
        else
            outcome.committed = true;
    }
    return outcome;
}

Result<void> ImportApplier::finalize()
{
    if (m_pending == 0 && m_undoItemsOnDisk == m_undoItems.size())
        return {};
    return commit();
}

Result<void> ImportApplier::commit()
{
    if (auto stored = storeBatch(); !stored) {
        dropBatch();
        return stored;
    }
    m_pending = 0;
    m_batch.clear();
    m_undoItemsCommitted = m_undoItems.size();
    return {};
}

Result<void> ImportApplier::storeBatch()
{
    // The record first: a batch in the store whose previous texts are not on disk could
    // never be undone.
    if (m_undoItemsOnDisk != m_undoItems.size()) {
        if (auto written = m_writeUndo(m_undoItems); !written)
            return written;
        m_undoItemsOnDisk = m_undoItems.size();
    }
    const VersionReason reason(m_context, m_versionReason);
    return m_context.save();
}

void ImportApplier::dropBatch()
{
    m_context.revert(m_batch);
    for (qsizetype i = m_undoItemsCommitted; i < m_undoItems.size(); ++i)
        m_recorded.remove(m_undoItems.at(i).id);
    m_undoItems.resize(m_undoItemsCommitted);
    // The file may already name poems that the store never saw changed: the next write
    // replaces it.
    m_undoItemsOnDisk = -1;
    m_pending = 0;
    m_batch.clear();
}
