#include "archive/SqliteDatabase.h"

#include "archive/SqliteStatement.h"

#include <sqlite3.h>

Result<std::unique_ptr<SqliteDatabase>> SqliteDatabase::open(const QString &path, OpenMode mode)
{
    int flags = SQLITE_OPEN_FULLMUTEX;
    switch (mode) {
    case OpenMode::ReadWriteCreate:
        flags |= SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
        break;
    case OpenMode::ReadWrite:
        flags |= SQLITE_OPEN_READWRITE;
        break;
    case OpenMode::ReadOnly:
        // Read-only opening takes a URI, so it can ask for "mode=ro" or "immutable=1".
        flags |= SQLITE_OPEN_READONLY | SQLITE_OPEN_URI;
        break;
    }
    sqlite3 *db = nullptr;
    const int rc = sqlite3_open_v2(path.toUtf8().constData(), &db, flags, nullptr);
    if (rc != SQLITE_OK) {
        const QString message = db ? QString::fromUtf8(sqlite3_errmsg(db)) : QString::fromUtf8(sqlite3_errstr(rc));
        sqlite3_close(db);
        return Error{describe(rc, message)};
    }
    sqlite3_extended_result_codes(db, 1);
    sqlite3_busy_timeout(db, busyTimeoutMs);
    return std::unique_ptr<SqliteDatabase>(new SqliteDatabase(db));
}

SqliteDatabase::~SqliteDatabase()
{
    sqlite3_close(m_db);
}

Result<void> SqliteDatabase::execute(const QString &sql)
{
    char *message = nullptr;
    if (const int rc = sqlite3_exec(m_db, sql.toUtf8().constData(), nullptr, nullptr, &message); rc != SQLITE_OK) {
        const QString text = message ? QString::fromUtf8(message) : QString::fromUtf8(sqlite3_errmsg(m_db));
        sqlite3_free(message);
        return Error{describe(rc, text)};
    }
    return {};
}

Result<SqliteStatement> SqliteDatabase::prepare(const QString &sql)
{
    sqlite3_stmt *stmt = nullptr;
    if (sqlite3_prepare_v2(m_db, sql.toUtf8().constData(), -1, &stmt, nullptr) != SQLITE_OK)
        return Error{lastError()};
    return SqliteStatement(*this, stmt);
}

Result<int> SqliteDatabase::userVersion()
{
    const auto version = queryInt64(QStringLiteral("PRAGMA user_version"));
    if (!version)
        return version.error();
    return int(*version);
}

Result<qint64> SqliteDatabase::queryInt64(const QString &sql)
{
    auto statement = prepare(sql);
    if (!statement)
        return statement.error();
    const auto row = statement->step();
    if (!row)
        return row.error();
    return *row ? statement->int64(0) : 0;
}

int SqliteDatabase::changes() const
{
    return sqlite3_changes(m_db);
}

qint64 SqliteDatabase::lastInsertRowId() const
{
    return sqlite3_last_insert_rowid(m_db);
}

QString SqliteDatabase::lastError() const
{
    return describe(sqlite3_extended_errcode(m_db), QString::fromUtf8(sqlite3_errmsg(m_db)));
}

QString SqliteDatabase::describe(int resultCode, const QString &sqliteMessage)
{
    switch (resultCode & 0xff) {
    case SQLITE_FULL:
        return tr("Nicht genug Speicherplatz: Die Datenbank oder der Datenträger ist voll");
    case SQLITE_READONLY:
        return tr("Die Datenbank ist schreibgeschützt");
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return tr("Die Datenbank wird gerade von einem anderen Programm benutzt");
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return tr("Die Datenbankdatei ist beschädigt");
    case SQLITE_IOERR:
        return tr("Ein-/Ausgabefehler beim Zugriff auf die Datenbank");
    case SQLITE_CANTOPEN:
        return tr("Die Datenbankdatei kann nicht geöffnet werden");
    default:
        return sqliteMessage;
    }
}

SqliteTransaction::~SqliteTransaction()
{
    if (m_open)
        (void)m_db.execute(QStringLiteral("ROLLBACK"));
}

Result<void> SqliteTransaction::begin()
{
    auto result = m_db.execute(m_kind == Kind::write ? QStringLiteral("BEGIN IMMEDIATE") : QStringLiteral("BEGIN"));
    m_open = result.ok();
    return result;
}

Result<void> SqliteTransaction::commit()
{
    auto result = m_db.execute(QStringLiteral("COMMIT"));
    if (result)
        m_open = false;
    return result;
}
