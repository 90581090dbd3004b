#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

class Poem;

// When the editor reloads its text from the record: only when the record's formatted or
// plain text is not what it last loaded or wrote, or the search highlight changed; never
// while it is writing itself.
class PoemTextSync {
public:
    bool needsReload(const std::optional<QByteArray> &richTextData, const std::optional<QString> &text,
                     const QString &highlight) const;
    void noteLoaded(const std::optional<QByteArray> &richTextData, const std::optional<QString> &text,
                    const QString &highlight);
    void noteWritten(const QByteArray &richTextData, const QString &text);
    void reset();

    bool isUpdating() const { return m_isUpdating; }
    void setUpdating(bool updating) { m_isUpdating = updating; }

    const QByteArray &lastLoadedData() const { return m_lastLoadedData; }
    const QString &lastLoadedPlainText() const { return m_lastLoadedPlainText; }
    const QString &lastHighlight() const { return m_lastHighlight; }

private:
    bool m_hasLoaded = false;
    QByteArray m_lastLoadedData;
    QString m_lastLoadedPlainText;
    QString m_lastHighlight;
    bool m_isUpdating = false;
};
