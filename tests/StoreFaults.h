#pragma once

#include <QString>
#include <QTest>

#include <sqlite3.h>

// Runs SQL on a store file behind the program's back: tests use triggers to make the
// next save fail the way a full disk or a locked file would.
inline void executeOnStore(const QString &path, const char *sql)
{
    sqlite3 *db = nullptr;
    QCOMPARE(sqlite3_open(path.toUtf8().constData(), &db), SQLITE_OK);
    char *error = nullptr;
    const int rc = sqlite3_exec(db, sql, nullptr, nullptr, &error);
    const QString message = error ? QString::fromUtf8(error) : QString();
    sqlite3_free(error);
    sqlite3_close(db);
    QVERIFY2(rc == SQLITE_OK, qPrintable(message));
}

// The first column of the first row, -1 when there is none.
inline qint64 queryOnStore(const QString &path, const char *sql)
{
    sqlite3 *db = nullptr;
    sqlite3_stmt *statement = nullptr;
    qint64 value = -1;
    if (sqlite3_open(path.toUtf8().constData(), &db) == SQLITE_OK &&
        sqlite3_prepare_v2(db, sql, -1, &statement, nullptr) == SQLITE_OK && sqlite3_step(statement) == SQLITE_ROW)
        value = sqlite3_column_int64(statement, 0);
    sqlite3_finalize(statement);
    sqlite3_close(db);
    return value;
}
