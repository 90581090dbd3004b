#pragma once

#include "archive/Result.h"

#include <QByteArray>
#include <QString>

#include <optional>

struct sqlite3_stmt;
class SqliteDatabase;

// A prepared statement; parameters are 1-based, columns 0-based, as in SQLite.
class SqliteStatement {
public:
    SqliteStatement(SqliteDatabase &db, sqlite3_stmt *stmt) : m_db(&db), m_stmt(stmt) {}
    SqliteStatement(SqliteStatement &&other) noexcept;
    SqliteStatement &operator=(SqliteStatement &&other) noexcept;
    ~SqliteStatement();

    void bindNull(int index);
    void bind(int index, qint64 value);
    void bind(int index, const std::optional<QString> &value);
    void bind(int index, const std::optional<QByteArray> &value);
    void bind(int index, std::optional<qint64> value);

    // True while a row is available; a failure is reported through the result.
    Result<bool> step();
    Result<void> run();
    void reset();

    bool isNull(int column) const;
    qint64 int64(int column) const;
    std::optional<qint64> optionalInt64(int column) const;
    std::optional<QString> optionalText(int column) const;
    std::optional<QByteArray> optionalBlob(int column) const;

private:
    SqliteDatabase *m_db;
    sqlite3_stmt *m_stmt;
};
