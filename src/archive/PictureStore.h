#pragma once

#include "archive/Result.h"
#include "archive/StoredRichText.h"

#include <QByteArray>
#include <QString>

#include <map>
#include <optional>
#include <vector>

class SqliteDatabase;

// The picture rows behind the poems' rich text. A picture row is never changed, only added
// or removed, and its id is never handed out again, so bytes once committed under an id
// stay that id's bytes. A save therefore recognises the pictures a poem already has by
// comparing with what it wrote last time, and writes nothing for them.
class PictureStore {
public:
    explicit PictureStore(SqliteDatabase &db) : m_db(db) {}

    // Stores the pictures cut from `richText` for the poem row `key`, keeping the rows it
    // already has where the bytes are the same and removing the ones it no longer uses.
    // Returns the list that belongs next to the body; nothing when there are no pictures.
    Result<std::optional<QString>> store(qint64 key, const QByteArray &richText, const StoredRichText &split);
    Result<void> removeAll(qint64 key);
    // The rich text from a row's body and its list. Nothing when the list is damaged or a
    // picture it names is missing.
    Result<std::optional<QByteArray>> join(qint64 key, const QByteArray &body, const QString &list);

    // The picture ids a list names.
    static std::vector<qint64> pictureIds(const std::optional<QString> &list);

    // What a write remembered counts only once its transaction is committed: a rolled-back
    // id may be handed out again for other bytes.
    void commit();
    void rollback() { m_pending.clear(); }

private:
    struct Placed {
        qint64 id;
        qsizetype offset; // in the rich text remembered with it
        qsizetype length;
    };
    struct Written {
        QByteArray richText;
        std::vector<Placed> pictures;
        quint64 age = 0;
    };

    Result<std::map<qint64, qsizetype>> lengthsOf(qint64 key);
    Result<std::optional<qint64>> storedMatch(qint64 key, const QByteArrayView &bytes,
                                              const std::map<qint64, qsizetype> &candidates);
    Result<std::optional<QByteArray>> storedBytes(qint64 key, qint64 id);
    Result<qint64> insert(qint64 key, const QByteArrayView &bytes);
    std::optional<qint64> rememberedMatch(qint64 key, const QByteArrayView &bytes,
                                          const std::map<qint64, qsizetype> &existing) const;

    // Enough for the poems being typed in; older ones are compared with the file instead.
    static constexpr size_t rememberedRows = 16;

    SqliteDatabase &m_db;
    std::map<qint64, Written> m_remembered;
    std::map<qint64, std::optional<Written>> m_pending;
    quint64 m_commits = 0;
};
