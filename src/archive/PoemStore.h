#pragma once

#include "archive/PictureStore.h"
#include "archive/PoemField.h"
#include "archive/PoemValues.h"
#include "archive/PoemVersionStore.h"
#include "archive/Result.h"
#include "archive/SqliteStatement.h"

#include <QCoreApplication>
#include <QString>

#include <map>
#include <memory>
#include <optional>
#include <vector>

class SqliteDatabase;
class SqliteTransaction;

// The SQLite file behind the archive: schema, migration, and writes that several
// processes can make at once. The database hands out the row keys, and every write
// stamps the rows it touches with a store-wide change number that only grows, so a
// reader finds what others changed since it last looked, and a writer finds out whether
// a row is still the version it loaded.
class PoemStore {
    Q_DECLARE_TR_FUNCTIONS(PoemStore)

public:
    static constexpr int currentSchemaVersion = 5;

    struct Row {
        qint64 key;
        qint64 changeSeq;
        PoemValues values;
        // The row has rich text that was not read: values.richTextData is empty in its place.
        bool richTextPending = false;
    };

    struct Changes {
        std::vector<Row> rows; // changed or added since the given change number
        qint64 rowCount = 0;   // of the whole table, to notice rows removed meanwhile
    };

    // One write transaction. Nothing is stored unless commit() succeeds.
    class Write {
    public:
        ~Write();
        qint64 changeSeq() const { return m_changeSeq; }
        Result<qint64> insert(const PoemValues &values);
        // False when the row is gone or carries another change number than expected:
        // another process changed it since it was read.
        Result<bool> update(qint64 key, qint64 expectedSeq, const PoemValues &values, PoemFieldSet fields);
        Result<bool> remove(qint64 key, qint64 expectedSeq);
        Result<std::optional<Row>> row(qint64 key);
        // The poem's row as it stands now, kept as a version before it changes.
        Result<std::optional<qint64>> recordVersion(qint64 key, const QString &reason, const QString &name,
                                                    const QDateTime &now, bool onlyWhenChanged = false);
        Result<bool> hasVersions(qint64 key);
        Result<int> pruneVersions(const QDateTime &now);
        Result<void> commit();

    private:
        friend class PoemStore;
        Write(PoemStore &store, std::unique_ptr<SqliteTransaction> transaction, qint64 changeSeq);
        Result<bool> isCurrent(qint64 key, qint64 expectedSeq);
        Result<void> storePictures(qint64 key, const QByteArray &richText, const StoredRichText &split);
        PoemStore &m_store;
        std::unique_ptr<SqliteTransaction> m_transaction;
        qint64 m_changeSeq;
    };

    // Opens (or creates) the file and brings its schema up to date. A file that is not an
    // archive, or one from a newer schema, is refused without being touched.
    static Result<std::unique_ptr<PoemStore>> open(const QString &path);
    static Result<std::unique_ptr<PoemStore>> openInMemory();
    // For a store on a disk or in a folder that cannot be written: everything can be read,
    // every write is refused with readOnlyText(). The file is never touched.
    static Result<std::unique_ptr<PoemStore>> openReadOnly(const QString &path);
    bool isReadOnly() const { return m_readOnly; }
    static QString readOnlyText();

    ~PoemStore();

    // Every row, without the rich text, which a list never shows: richText() reads it.
    Result<std::vector<Row>> loadAll();
    // One row's rich text with its pictures.
    Result<std::optional<QByteArray>> richText(qint64 key);
    Result<Changes> changesSince(qint64 changeSeq);
    Result<std::vector<qint64>> allKeys();
    // Moves whenever another connection has committed a change.
    Result<qint64> dataVersion();
    // Waits for other writers up to the busy timeout.
    Result<std::unique_ptr<Write>> beginWrite();

    QString path() const { return m_path; }

    // Newest first, without their contents.
    Result<std::vector<PoemVersion>> versions(qint64 key);
    Result<std::optional<PoemVersion>> version(qint64 key, qint64 number);
    Result<qint64> versionStorageBytes();

private:
    PoemStore(std::unique_ptr<SqliteDatabase> db, QString path, int schemaVersion);
    static Result<std::unique_ptr<PoemStore>> prepare(std::unique_ptr<SqliteDatabase> db, const QString &path);
    Result<void> migrate();
    Result<void> migrateStep(int fromVersion);
    enum class RichText { read, leftOut };
    Result<std::vector<Row>> selectRows(const QString &condition, qint64 parameter, RichText richText);
    QString pictureListExpression() const;
    Result<void> joinPictures(Row &row, const std::optional<QString> &pictureList);
    Result<SqliteStatement *> cachedStatement(const QString &sql);

    std::unique_ptr<SqliteDatabase> m_db;
    std::map<QString, SqliteStatement> m_statements;
    PictureStore m_pictures;
    PoemVersionStore m_versions;
    QString m_path;
    int m_schemaVersion;
    bool m_readOnly = false;
};
