#include "archive/SqliteStatement.h"

#include "archive/SqliteDatabase.h"

#include <sqlite3.h>

#include <utility>

SqliteStatement::SqliteStatement(SqliteStatement &&other) noexcept
    : m_db(other.m_db), m_stmt(std::exchange(other.m_stmt, nullptr))
{
}

SqliteStatement &SqliteStatement::operator=(SqliteStatement &&other) noexcept
{
    if (this != &other) {
        sqlite3_finalize(m_stmt);
        m_db = other.m_db;
        m_stmt = std::exchange(other.m_stmt, nullptr);
    }
    return *this;
}

SqliteStatement::~SqliteStatement()
{
    sqlite3_finalize(m_stmt);
}

void SqliteStatement::bindNull(int index)
{
    sqlite3_bind_null(m_stmt, index);
}

void SqliteStatement::bind(int index, qint64 value)
{
    sqlite3_bind_int64(m_stmt, index, value);
}

void SqliteStatement::bind(int index, const std::optional<QString> &value)
{
    if (!value) {
        bindNull(index);
        return;
    }
    const QByteArray utf8 = value->toUtf8();
    // An empty QByteArray still yields a valid pointer, so '' stays distinct from NULL.
    sqlite3_bind_text(m_stmt, index, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
}

void SqliteStatement::bind(int index, const std::optional<QByteArray> &value)
{
    if (!value) {
        bindNull(index);
        return;
    }
    if (value->isEmpty()) {
        sqlite3_bind_zeroblob(m_stmt, index, 0);
        return;
    }
    sqlite3_bind_blob64(m_stmt, index, value->constData(), sqlite3_uint64(value->size()), SQLITE_TRANSIENT);
}

void SqliteStatement::bind(int index, std::optional<qint64> value)
{
    if (value)
        bind(index, *value);
    else
        bindNull(index);
}

Result<bool> SqliteStatement::step()
{
    const int rc = sqlite3_step(m_stmt);
    if (rc == SQLITE_ROW)
        return true;
    if (rc == SQLITE_DONE)
        return false;
    return Error{m_db->lastError()};
}

Result<void> SqliteStatement::run()
{
    const auto result = step();
    reset();
    if (!result)
        return result.error();
    return {};
}

void SqliteStatement::reset()
{
    sqlite3_reset(m_stmt);
    sqlite3_clear_bindings(m_stmt);
}

bool SqliteStatement::isNull(int column) const
{
    return sqlite3_column_type(m_stmt, column) == SQLITE_NULL;
}

qint64 SqliteStatement::int64(int column) const
{
    return sqlite3_column_int64(m_stmt, column);
}

std::optional<qint64> SqliteStatement::optionalInt64(int column) const
{
    if (isNull(column))
        return std::nullopt;
    return int64(column);
}

std::optional<QString> SqliteStatement::optionalText(int column) const
{
    if (isNull(column))
        return std::nullopt;
    const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(m_stmt, column));
    const int size = sqlite3_column_bytes(m_stmt, column);
    return text ? QString::fromUtf8(text, size) : QString(QLatin1String(""));
}

std::optional<QByteArray> SqliteStatement::optionalBlob(int column) const
{
    if (isNull(column))
        return std::nullopt;
    const void *data = sqlite3_column_blob(m_stmt, column);
    const int size = sqlite3_column_bytes(m_stmt, column);
    if (!data || size == 0)
        return QByteArray("", 0);
    return QByteArray(static_cast<const char *>(data), size);
}
