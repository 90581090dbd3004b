#include "editor/PoemTextSync.h"

bool PoemTextSync::needsReload(const std::optional<QByteArray> &richTextData, const std::optional<QString> &text,
                               const QString &highlight) const
{
    if (m_isUpdating)
        return false;
    if (!m_hasLoaded)
        return true;
    return richTextData.value_or(QByteArray()) != m_lastLoadedData ||
           text.value_or(QString()) != m_lastLoadedPlainText || highlight != m_lastHighlight;
}

void PoemTextSync::noteLoaded(const std::optional<QByteArray> &richTextData, const std::optional<QString> &text,
                              const QString &highlight)
{
    m_hasLoaded = true;
    m_lastLoadedData = richTextData.value_or(QByteArray());
    m_lastLoadedPlainText = text.value_or(QString());
    m_lastHighlight = highlight;
}

void PoemTextSync::noteWritten(const QByteArray &richTextData, const QString &text)
{
    m_lastLoadedData = richTextData;
    m_lastLoadedPlainText = text;
}

void PoemTextSync::reset()
{
    *this = PoemTextSync();
}
