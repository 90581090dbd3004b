#pragma once

#include "archive/PoemValues.h"
#include "archive/Result.h"

#include <memory>

class ArchiveContext;

// One poem registered in an ArchiveContext. Setters only change memory; the context
// writes every changed poem in one transaction when it is saved.
class Poem {
public:
    const PoemValues &values() const
    {
        readPendingRichText();
        return m_values;
    }

    const std::optional<QUuid> &id() const { return m_values.id; }
    const std::optional<QString> &title() const { return m_values.title; }
    const std::optional<QString> &titleNormalized() const { return m_values.titleNormalized; }
    const std::optional<QString> &text() const { return m_values.text; }
    const std::optional<QByteArray> &richTextData() const
    {
        readPendingRichText();
        return m_values.richTextData;
    }
    const std::optional<QString> &category() const { return m_values.category; }
    const std::optional<QDateTime> &date() const { return m_values.date; }
    const std::optional<QString> &writerNotes() const { return m_values.writerNotes; }
    bool isPublished() const { return m_values.isPublished; }
    bool inPodcast() const { return m_values.inPodcast; }
    const std::optional<QString> &externalId() const { return m_values.externalId; }
    const std::optional<QDateTime> &createdAt() const { return m_values.createdAt; }
    const std::optional<QDateTime> &updatedAt() const { return m_values.updatedAt; }
    const std::optional<QDateTime> &deletedAt() const { return m_values.deletedAt; }

    void setId(std::optional<QUuid> value) { assign(&PoemValues::id, std::move(value)); }
    void setTitle(std::optional<QString> value) { assign(&PoemValues::title, std::move(value)); }
    void setTitleNormalized(std::optional<QString> value) { assign(&PoemValues::titleNormalized, std::move(value)); }
    void setText(std::optional<QString> value) { assign(&PoemValues::text, std::move(value)); }
    void setRichTextData(std::optional<QByteArray> value) { assign(&PoemValues::richTextData, std::move(value)); }
    void setCategory(std::optional<QString> value) { assign(&PoemValues::category, std::move(value)); }
    void setDate(std::optional<QDateTime> value) { assign(&PoemValues::date, std::move(value)); }
    void setWriterNotes(std::optional<QString> value) { assign(&PoemValues::writerNotes, std::move(value)); }
    void setPublished(bool value) { assign(&PoemValues::isPublished, value); }
    void setInPodcast(bool value) { assign(&PoemValues::inPodcast, value); }
    void setExternalId(std::optional<QString> value) { assign(&PoemValues::externalId, std::move(value)); }
    void setCreatedAt(std::optional<QDateTime> value) { assign(&PoemValues::createdAt, std::move(value)); }
    void setUpdatedAt(std::optional<QDateTime> value) { assign(&PoemValues::updatedAt, std::move(value)); }
    void setDeletedAt(std::optional<QDateTime> value) { assign(&PoemValues::deletedAt, std::move(value)); }
    void setValues(const PoemValues &values);

    bool isInTrash() const { return m_values.deletedAt.has_value(); }
    // Fails when the store could not give the poem's rich text: the poem then holds none in
    // its place, and must not be written out as if it had none.
    Result<void> readFully() const;
    // Whether the rich text is still only in the store.
    bool richTextWaiting() const { return m_richTextPending; }
    // Lets go of rich text read for a moment, as by a backup, so it is read again when
    // next asked for. Only an unchanged, stored poem does.
    void letGoOfRichText();
    bool hasUnsavedChanges() const { return m_values != saved() || !m_persisted; }

    // The poem's identity in its context, stable for the context's life: a new poem keeps
    // it when it is saved, although the store hands out its row key only then.
    qint64 storeKey() const { return m_key; }
    // The store's key, 0 while the poem was never saved.
    qint64 storeRowKey() const { return m_persisted ? m_rowKey : 0; }
    QString objectID() const;
    static QString objectIDPrefix();
    ArchiveContext *context() const { return m_context; }

private:
    friend class ArchiveContext;
    Poem(ArchiveContext *context, qint64 key, PoemValues values, bool persisted);

    template <typename T> void assign(T PoemValues::*member, T value)
    {
        readPendingRichText();
        if (m_values.*member == value)
            return;
        valuesToChange().*member = std::move(value);
        noteChanged();
    }
    void noteChanged();

    // As last read from or written to the store.
    const PoemValues &saved() const { return m_savedApart ? *m_savedApart : m_values; }
    // The stored values and the current ones, after a read, a save or a merge.
    void setSavedAndCurrent(const PoemValues &saved, PoemValues current);
    void revertToSaved();
    // The values to change in place, the stored ones kept apart first.
    PoemValues &valuesToChange();
    // A list never shows rich text, so a poem read with the archive reads it when first
    // asked for. Only an unchanged poem waits for it: every change reads it first.
    void readPendingRichText() const
    {
        if (m_richTextPending)
            readRichText();
    }
    void readRichText() const;

    ArchiveContext *m_context;
    qint64 m_key;
    PoemValues m_values;
    // The stored values while they differ from m_values. Nearly every poem of a large
    // archive is unchanged and so holds its values once.
    std::unique_ptr<PoemValues> m_savedApart;
    bool m_persisted;
    bool m_richTextPending = false;
    bool m_richTextUnreadable = false;
    qint64 m_rowKey = 0;    // the store's key, once persisted
    qint64 m_changeSeq = 0; // the store's change number of saved()
};

using PoemPtr = std::shared_ptr<Poem>;
