#pragma once

#include "archive/Result.h"

#include <QCoreApplication>
#include <QString>

#include <memory>

struct sqlite3;
class SqliteStatement;

// Owns one SQLite connection. Errors come back as values: a German text for the failures
// a poet meets (full disk, read-only, busy, damaged file), SQLite's own message otherwise.
class SqliteDatabase {
    Q_DECLARE_TR_FUNCTIONS(SqliteDatabase)

public:
    enum class OpenMode { ReadWriteCreate, ReadWrite, ReadOnly };

    // How long a statement waits for another process's write to finish. The longest
    // write, a whole restore in one transaction, takes far less than this.
    static constexpr int busyTimeoutMs = 20000;

    static Result<std::unique_ptr<SqliteDatabase>> open(const QString &path, OpenMode mode);

    ~SqliteDatabase();
    SqliteDatabase(const SqliteDatabase &) = delete;
    SqliteDatabase &operator=(const SqliteDatabase &) = delete;

    Result<void> execute(const QString &sql);
    Result<SqliteStatement> prepare(const QString &sql);
    Result<int> userVersion();
    // The first column of the first row, 0 when there is none.
    Result<qint64> queryInt64(const QString &sql);
    // Rows changed by the last INSERT, UPDATE or DELETE of this connection.
    int changes() const;
    qint64 lastInsertRowId() const;

    QString lastError() const;
    // The text for a result code, with SQLite's message where there is no German one.
    static QString describe(int resultCode, const QString &sqliteMessage);
    sqlite3 *handle() const { return m_db; }

private:
    explicit SqliteDatabase(sqlite3 *db) : m_db(db) {}
    sqlite3 *m_db = nullptr;
};

// Commits only when told to; rolls back on destruction otherwise, so an early return
// never leaves half a change in the file. A write transaction takes the write lock at
// once, so what it reads stays as read until it commits; a read transaction gives a
// consistent view over several statements.
class SqliteTransaction {
public:
    enum class Kind { write, read };
    explicit SqliteTransaction(SqliteDatabase &db, Kind kind = Kind::write) : m_db(db), m_kind(kind) {}
    ~SqliteTransaction();
    Result<void> begin();
    Result<void> commit();

private:
    SqliteDatabase &m_db;
    Kind m_kind;
    bool m_open = false;
};
