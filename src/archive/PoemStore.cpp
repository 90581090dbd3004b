#include "archive/PoemStore.h"

#include "archive/SqliteDatabase.h"
#include "archive/SqliteStatement.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTimeZone>
#include <QUrl>

namespace {

const char *const columnList = "pk, id, title, title_normalized, text, rich_text_data, category, date, writer_notes, "
                               "is_published, in_podcast, external_id, created_at, updated_at, deleted_at";

std::optional<qint64> msecs(const std::optional<QDateTime> &value)
{
    if (!value)
        return std::nullopt;
    return value->toMSecsSinceEpoch();
}

std::optional<QDateTime> dateTime(const std::optional<qint64> &value)
{
    if (!value)
        return std::nullopt;
    return QDateTime::fromMSecsSinceEpoch(*value, Qt::UTC);
}

std::optional<QString> idText(const std::optional<QUuid> &id)
{
    if (!id)
        return std::nullopt;
    return uuidText(*id);
}

std::optional<QUuid> idValue(const std::optional<QString> &text)
{
    if (!text)
        return std::nullopt;
    const QUuid id(*text);
    if (id.isNull())
        return std::nullopt;
    return id;
}

void bindValues(SqliteStatement &statement, qint64 key, const PoemValues &v)
{
    statement.bind(1, key);
    statement.bind(2, idText(v.id));
    statement.bind(3, v.title);
    statement.bind(4, v.titleNormalized);
    statement.bind(5, v.text);
    statement.bind(6, v.richTextData);
    statement.bind(7, v.category);
    statement.bind(8, msecs(v.date));
    statement.bind(9, v.writerNotes);
    statement.bind(10, qint64(v.isPublished));
    statement.bind(11, qint64(v.inPodcast));
    statement.bind(12, v.externalId);
    statement.bind(13, msecs(v.createdAt));
    statement.bind(14, msecs(v.updatedAt));
    statement.bind(15, msecs(v.deletedAt));
}

PoemValues readValues(const SqliteStatement &s)
{
    PoemValues v;
    v.id = idValue(s.optionalText(1));
    v.title = s.optionalText(2);
    v.titleNormalized = s.optionalText(3);
    v.text = s.optionalText(4);
    v.richTextData = s.optionalBlob(5);
    v.category = s.optionalText(6);
    v.date = dateTime(s.optionalInt64(7));
    v.writerNotes = s.optionalText(8);
    v.isPublished = s.int64(9) != 0;
    v.inPodcast = s.int64(10) != 0;
    v.externalId = s.optionalText(11);
    v.createdAt = dateTime(s.optionalInt64(12));
    v.updatedAt = dateTime(s.optionalInt64(13));
    v.deletedAt = dateTime(s.optionalInt64(14));
    return v;
}

} // namespace

PoemStore::PoemStore(std::unique_ptr<SqliteDatabase> db, QString path) : m_db(std::move(db)), m_path(std::move(path))
{
}

PoemStore::~PoemStore() = default;

Result<std::unique_ptr<PoemStore>> PoemStore::open(const QString &path)
{
    auto db = SqliteDatabase::open(path, SqliteDatabase::OpenMode::ReadWriteCreate);
    if (!db)
        return db.error();
    return prepare(std::move(db.value()), path);
}

Result<std::unique_ptr<PoemStore>> PoemStore::openInMemory()
{
    auto db = SqliteDatabase::open(QStringLiteral(":memory:"), SqliteDatabase::OpenMode::ReadWriteCreate);
    if (!db)
        return db.error();
    return prepare(std::move(db.value()), QString());
}

Result<std::unique_ptr<PoemStore>> PoemStore::openReadOnly(const QString &path)
{
    const QString uri = QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()).toString(QUrl::FullyEncoded);
    // A store in WAL mode needs its shared-memory file, which a read-only folder cannot
    // get; read as an unchanging file then.
    std::unique_ptr<SqliteDatabase> db;
    QString firstError;
    for (const char *parameters : {"?mode=ro", "?immutable=1"}) {
        auto opened = SqliteDatabase::open(uri + QLatin1String(parameters), SqliteDatabase::OpenMode::ReadOnly);
        if (!opened) {
            firstError = firstError.isEmpty() ? opened.errorMessage() : firstError;
            continue;
        }
        const auto version = (*opened)->userVersion();
        if (!version) {
            firstError = firstError.isEmpty() ? version.errorMessage() : firstError;
            continue;
        }
        if (*version != currentSchemaVersion)
            return Error{tr("Das Archiv ist schreibgeschützt und kann nicht auf den aktuellen Stand gebracht "
                            "werden.")};
        db = std::move(opened.value());
        break;
    }
    if (!db)
        return Error{firstError};
    std::unique_ptr<PoemStore> store(new PoemStore(std::move(db), path));
    store->m_readOnly = true;
    return store;
}

QString PoemStore::readOnlyText()
{
    return tr("Archiv ist schreibgeschützt – Änderungen sind nicht möglich.");
}

Result<std::unique_ptr<PoemStore>> PoemStore::prepare(std::unique_ptr<SqliteDatabase> db, const QString &path)
{
    // Reading the version is the first touch of the file: a non-database fails here,
    // before anything could write to it.
    const auto version = db->userVersion();
    if (!version)
        return version.error();
    if (*version > currentSchemaVersion)
        return Error{PoemStore::tr(
                         "Die Archivdatei stammt aus einer neueren Version von OdeLeaf (Schema %1, diese Version kennt "
                         "Schema %2).")
                         .arg(*version)
                         .arg(currentSchemaVersion)};
    if (*version == 0) {
        auto tables = db->prepare(QStringLiteral("SELECT count(*) FROM sqlite_master"));
        if (!tables)
            return tables.error();
        const auto row = tables->step();
        if (!row)
            return row.error();
        if (tables->int64(0) > 0)
            return Error{PoemStore::tr("Die Datei ist kein OdeLeaf-Archiv.")};
    }
    if (!path.isEmpty()) {
        if (auto wal = db->execute(QStringLiteral("PRAGMA journal_mode=WAL")); !wal)
            return wal.error();
    }
    if (auto sync = db->execute(QStringLiteral("PRAGMA synchronous=FULL")); !sync)
        return sync.error();

    std::unique_ptr<PoemStore> store(new PoemStore(std::move(db), path));
    if (auto migrated = store->migrate(*version); !migrated)
        return migrated.error();
    return store;
}

Result<void> PoemStore::migrate(int fromVersion)
{
    if (fromVersion == currentSchemaVersion)
        return {};
    SqliteTransaction transaction(*m_db);
    if (auto begun = transaction.begin(); !begun)
        return begun;
    if (fromVersion == 0) {
        auto created = m_db->execute(QStringLiteral(
            "CREATE TABLE poem (pk INTEGER PRIMARY KEY, id TEXT, title TEXT, title_normalized TEXT, text TEXT, "
            "rich_text_data BLOB, category TEXT, date INTEGER, writer_notes TEXT, "
            "is_published INTEGER NOT NULL DEFAULT 0, in_podcast INTEGER NOT NULL DEFAULT 0, external_id TEXT, "
            "created_at INTEGER, updated_at INTEGER, deleted_at INTEGER)"));
        if (!created)
            return created;
    }
    if (fromVersion == 1) {
        // Version 1 had neither writer's notes nor the podcast flag.
        for (const char *sql : {"ALTER TABLE poem ADD COLUMN writer_notes TEXT",
                                "ALTER TABLE poem ADD COLUMN in_podcast INTEGER NOT NULL DEFAULT 0"}) {
            if (auto altered = m_db->execute(QString::fromLatin1(sql)); !altered)
                return altered;
        }
    }
    if (auto stamped = m_db->execute(QStringLiteral("PRAGMA user_version=%1").arg(currentSchemaVersion)); !stamped)
        return stamped;
    return transaction.commit();
}

Result<std::vector<PoemStore::Row>> PoemStore::loadAll()
{
    auto statement = m_db->prepare(QStringLiteral("SELECT %1 FROM poem ORDER BY pk").arg(QLatin1String(columnList)));
    if (!statement)
        return statement.error();
    std::vector<Row> rows;
    for (;;) {
        const auto hasRow = statement->step();
        if (!hasRow)
            return hasRow.error();
        if (!*hasRow)
            break;
        rows.push_back(Row{statement->int64(0), readValues(*statement)});
    }
    return rows;
}

Result<void> PoemStore::write(const ChangeSet &changes)
{
    if (changes.isEmpty())
        return {};
    if (m_readOnly)
        return Error{readOnlyText()};
    SqliteTransaction transaction(*m_db);
    if (auto begun = transaction.begin(); !begun)
        return begun;

    const QString placeholders = QStringLiteral("?,?,?,?,?,?,?,?,?,?,?,?,?,?,?");
    auto insert =
        m_db->prepare(QStringLiteral("INSERT INTO poem (%1) VALUES (%2)").arg(QLatin1String(columnList), placeholders));
    if (!insert)
        return insert.error();
    for (const Row &row : changes.inserted) {
        bindValues(*insert, row.key, row.values);
        if (auto done = insert->run(); !done)
            return done;
    }

    auto update = m_db->prepare(QStringLiteral(
        "UPDATE poem SET id=?2, title=?3, title_normalized=?4, text=?5, rich_text_data=?6, category=?7, date=?8, "
        "writer_notes=?9, is_published=?10, in_podcast=?11, external_id=?12, created_at=?13, updated_at=?14, "
        "deleted_at=?15 WHERE pk=?1"));
    if (!update)
        return update.error();
    for (const Row &row : changes.updated) {
        bindValues(*update, row.key, row.values);
        if (auto done = update->run(); !done)
            return done;
    }

    auto remove = m_db->prepare(QStringLiteral("DELETE FROM poem WHERE pk=?1"));
    if (!remove)
        return remove.error();
    for (const qint64 key : changes.deleted) {
        remove->bind(1, key);
        if (auto done = remove->run(); !done)
            return done;
    }
    return transaction.commit();
}
