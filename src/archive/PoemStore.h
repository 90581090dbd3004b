#pragma once

#include "archive/PoemValues.h"
#include "archive/Result.h"

#include <QCoreApplication>
#include <QString>

#include <memory>
#include <vector>

class SqliteDatabase;

// The SQLite file behind the archive: schema, migration, and whole-change writes.
class PoemStore {
    Q_DECLARE_TR_FUNCTIONS(PoemStore)

public:
    static constexpr int currentSchemaVersion = 2;

    struct Row {
        qint64 key;
        PoemValues values;
    };

    struct ChangeSet {
        std::vector<Row> inserted;
        std::vector<Row> updated;
        std::vector<qint64> deleted;
        bool isEmpty() const { return inserted.empty() && updated.empty() && deleted.empty(); }
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

    Result<std::vector<Row>> loadAll();
    // All rows of the change or none.
    Result<void> write(const ChangeSet &changes);

    QString path() const { return m_path; }

private:
    PoemStore(std::unique_ptr<SqliteDatabase> db, QString path);
    static Result<std::unique_ptr<PoemStore>> prepare(std::unique_ptr<SqliteDatabase> db, const QString &path);
    Result<void> migrate(int fromVersion);

    std::unique_ptr<SqliteDatabase> m_db;
    QString m_path;
    bool m_readOnly = false;
};
