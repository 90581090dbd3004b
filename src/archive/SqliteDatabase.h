#pragma once

#include "archive/Result.h"

#include <QString>

#include <memory>

struct sqlite3;
class SqliteStatement;

// Owns one SQLite connection. Errors come back as values carrying SQLite's own message.
class SqliteDatabase {
public:
    enum class OpenMode { ReadWriteCreate, ReadWrite, ReadOnly };

    static Result<std::unique_ptr<SqliteDatabase>> open(const QString &path, OpenMode mode);

    ~SqliteDatabase();
    SqliteDatabase(const SqliteDatabase &) = delete;
    SqliteDatabase &operator=(const SqliteDatabase &) = delete;

    Result<void> execute(const QString &sql);
    Result<SqliteStatement> prepare(const QString &sql);
    Result<int> userVersion();

    QString lastError() const;
    sqlite3 *handle() const { return m_db; }

private:
    explicit SqliteDatabase(sqlite3 *db) : m_db(db) {}
    sqlite3 *m_db = nullptr;
};

// Commits only when told to; rolls back on destruction otherwise, so an early return
// never leaves half a change in the file.
class SqliteTransaction {
public:
    explicit SqliteTransaction(SqliteDatabase &db) : m_db(db) {}
    ~SqliteTransaction();
    Result<void> begin();
    Result<void> commit();

private:
    SqliteDatabase &m_db;
    bool m_open = false;
};
