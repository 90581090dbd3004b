#include "archive/PoemStore.h"

#include "archive/SqliteDatabase.h"
#include "archive/SqliteStatement.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStringList>
#include <QTimeZone>
#include <QUrl>

namespace {

// Column names in PoemField order.
const char *const fieldColumns[poemFieldCount] = {
    "id",           "title",        "title_normalized", "text",        "rich_text_data", "category",   "date",
    "writer_notes", "is_published", "in_podcast",       "external_id", "created_at",     "updated_at", "deleted_at",
};

const char *const selectColumns =
    "pk, change_seq, id, title, title_normalized, text, rich_text_data, category, date, writer_notes, "
    "is_published, in_podcast, external_id, created_at, updated_at, deleted_at, %1";
const int pictureListColumn = 16;

// AUTOINCREMENT keeps a key from coming back after its poem was deleted for good, so a
// process still holding the old poem can never mistake a newer one for it.
const char *const createPoemTable =
    "CREATE TABLE poem (pk INTEGER PRIMARY KEY AUTOINCREMENT, id TEXT, title TEXT, title_normalized TEXT, "
    "text TEXT, rich_text_data BLOB, category TEXT, date INTEGER, writer_notes TEXT, "
    "is_published INTEGER NOT NULL DEFAULT 0, in_podcast INTEGER NOT NULL DEFAULT 0, external_id TEXT, "
    "created_at INTEGER, updated_at INTEGER, deleted_at INTEGER, change_seq INTEGER NOT NULL DEFAULT 0)";

const char *const createChangeTracking[] = {
    "CREATE INDEX poem_change_seq ON poem (change_seq)",
    // The last change number handed out; unlike max(change_seq) it never goes back when
    // the newest row is deleted.
    "CREATE TABLE store_change (seq INTEGER NOT NULL)",
    "INSERT INTO store_change (seq) VALUES (0)",
};

// Pictures live in rows of their own, so a keystroke does not rewrite a photograph; the
// poem row keeps its rich text with the picture bytes cut out and a list of where they go.
const char *const createPictureStorage[] = {
    "CREATE TABLE picture (id INTEGER PRIMARY KEY AUTOINCREMENT, poem_pk INTEGER NOT NULL, bytes BLOB NOT NULL)",
    "CREATE INDEX picture_poem ON picture (poem_pk)",
    "ALTER TABLE poem ADD COLUMN rich_text_pictures TEXT",
};

// The oldest schema a read-only store can be read in as it is: its rich text has no
// pictures cut out.
constexpr int firstReadableSchemaVersion = 3;

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

std::optional<QUuid> idValue(const std::optional<QString> &text)
{
    if (!text)
        return std::nullopt;
    const QUuid id(*text);
    if (id.isNull())
        return std::nullopt;
    return id;
}

void bindValue(SqliteStatement &statement, int index, const std::optional<QUuid> &id)
{
    statement.bind(index, id ? std::optional<QString>(uuidText(*id)) : std::nullopt);
}

void bindValue(SqliteStatement &statement, int index, const std::optional<QDateTime> &value)
{
    statement.bind(index, msecs(value));
}

void bindValue(SqliteStatement &statement, int index, bool value)
{
    statement.bind(index, qint64(value));
}

template <typename T> void bindValue(SqliteStatement &statement, int index, const std::optional<T> &value)
{
    statement.bind(index, value);
}

// The rich text goes in as the body of its split, without the picture bytes.
void bindField(SqliteStatement &statement, int index, PoemField field, const PoemValues &values,
               const StoredRichText &split)
{
    if (field == PoemField::richTextData) {
        statement.bind(index, values.richTextData ? std::optional<QByteArray>(split.body) : std::nullopt);
        return;
    }
    withPoemMember(field, [&](auto member) { bindValue(statement, index, values.*member); });
}

// Columns as selectColumns lists them.
PoemStore::Row readRow(const SqliteStatement &s)
{
    PoemValues v;
    v.id = idValue(s.optionalText(2));
    v.title = s.optionalText(3);
    v.titleNormalized = s.optionalText(4);
    v.text = s.optionalText(5);
    v.richTextData = s.optionalBlob(6);
    v.category = s.optionalText(7);
    v.date = dateTime(s.optionalInt64(8));
    v.writerNotes = s.optionalText(9);
    v.isPublished = s.int64(10) != 0;
    v.inPodcast = s.int64(11) != 0;
    v.externalId = s.optionalText(12);
    v.createdAt = dateTime(s.optionalInt64(13));
    v.updatedAt = dateTime(s.optionalInt64(14));
    v.deletedAt = dateTime(s.optionalInt64(15));
    return PoemStore::Row{s.int64(0), s.int64(1), std::move(v)};
}

// Every row the statement yields, each read by read().
template <typename Read>
auto collect(SqliteStatement &statement, Read read) -> Result<std::vector<decltype(read(statement))>>
{
    std::vector<decltype(read(statement))> rows;
    for (;;) {
        const auto hasRow = statement.step();
        if (!hasRow)
            return hasRow.error();
        if (!*hasRow)
            return rows;
        rows.push_back(read(statement));
    }
}

QString updateSql(PoemFieldSet fields)
{
    QStringList assignments;
    for (int i = 0; i < poemFieldCount; ++i) {
        if (fields[size_t(i)])
            assignments.append(QStringLiteral("%1=?%2").arg(QLatin1String(fieldColumns[i])).arg(i + 4));
    }
    if (fields[size_t(PoemField::richTextData)])
        assignments.append(QStringLiteral("rich_text_pictures=?%1").arg(poemFieldCount + 4));
    assignments.append(QStringLiteral("change_seq=?3"));
    return QStringLiteral("UPDATE poem SET %1 WHERE pk=?1 AND change_seq=?2").arg(assignments.join(QLatin1Char(',')));
}

} // namespace

PoemStore::PoemStore(std::unique_ptr<SqliteDatabase> db, QString path, int schemaVersion)
    : m_db(std::move(db)), m_pictures(*m_db), m_versions(*m_db, m_pictures), m_path(std::move(path)),
      m_schemaVersion(schemaVersion)
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
    int schemaVersion = 0;
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
        if (*version < firstReadableSchemaVersion || *version > currentSchemaVersion)
            return Error{tr("Das Archiv ist schreibgeschützt und kann nicht auf den aktuellen Stand gebracht "
                            "werden.")};
        schemaVersion = *version;
        db = std::move(opened.value());
        break;
    }
    if (!db)
        return Error{firstError};
    std::unique_ptr<PoemStore> store(new PoemStore(std::move(db), path, schemaVersion));
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
        const auto tables = db->queryInt64(QStringLiteral("SELECT count(*) FROM sqlite_master"));
        if (!tables)
            return tables.error();
        if (*tables > 0)
            return Error{PoemStore::tr("Die Datei ist kein OdeLeaf-Archiv.")};
    }
    if (!path.isEmpty()) {
        if (auto wal = db->execute(QStringLiteral("PRAGMA journal_mode=WAL")); !wal)
            return wal.error();
    }
    if (auto sync = db->execute(QStringLiteral("PRAGMA synchronous=FULL")); !sync)
        return sync.error();

    std::unique_ptr<PoemStore> store(new PoemStore(std::move(db), path, currentSchemaVersion));
    if (*version != currentSchemaVersion) {
        if (auto migrated = store->migrate(); !migrated)
            return migrated.error();
    }
    return store;
}

Result<void> PoemStore::migrate()
{
    SqliteTransaction transaction(*m_db);
    if (auto begun = transaction.begin(); !begun)
        return begun;
    // Read again under the write lock: another process may have migrated the file since.
    const auto version = m_db->userVersion();
    if (!version)
        return version.error();
    if (*version == currentSchemaVersion)
        return {};
    if (*version > currentSchemaVersion)
        return Error{tr("Die Archivdatei stammt aus einer neueren Version von OdeLeaf (Schema %1, diese Version kennt "
                        "Schema %2).")
                         .arg(*version)
                         .arg(currentSchemaVersion)};
    // A new file starts with the tables of schema 3 and takes the steps from there.
    for (int from = *version; from < currentSchemaVersion; from = from == 0 ? 3 : from + 1) {
        if (auto stepped = migrateStep(from); !stepped)
            return stepped;
    }
    if (auto stamped = m_db->execute(QStringLiteral("PRAGMA user_version=%1").arg(currentSchemaVersion)); !stamped)
        return stamped;
    return transaction.commit();
}

Result<void> PoemStore::migrateStep(int fromVersion)
{
    QStringList statements;
    if (fromVersion == 0) {
        statements.append(QString::fromLatin1(createPoemTable));
    } else if (fromVersion == 1) {
        // Version 1 had neither writer's notes nor the podcast flag.
        statements = {QStringLiteral("ALTER TABLE poem ADD COLUMN writer_notes TEXT"),
                      QStringLiteral("ALTER TABLE poem ADD COLUMN in_podcast INTEGER NOT NULL DEFAULT 0")};
    } else if (fromVersion == 2) {
        // Version 2 took its keys from the writer's memory and had no change numbers;
        // every row moves over with its key.
        const QString columns =
            QStringLiteral("pk, ") + QStringList(std::begin(fieldColumns), std::end(fieldColumns)).join(u", ");
        statements = {QString::fromLatin1(createPoemTable)
                          .replace(QStringLiteral("TABLE poem"), QStringLiteral("TABLE poem_next")),
                      QStringLiteral("INSERT INTO poem_next (%1) SELECT %1 FROM poem").arg(columns),
                      QStringLiteral("DROP TABLE poem"), QStringLiteral("ALTER TABLE poem_next RENAME TO poem")};
    }
    if (fromVersion == 0 || fromVersion == 2) {
        for (const char *sql : createChangeTracking)
            statements.append(QString::fromLatin1(sql));
    }
    if (fromVersion == 3) {
        for (const char *sql : createPictureStorage)
            statements.append(QString::fromLatin1(sql));
    }
    if (fromVersion == 4)
        statements.append(PoemVersionStore::schemaStatements());
    for (const QString &sql : statements) {
        if (auto done = m_db->execute(sql); !done)
            return done;
    }
    return {};
}

QString PoemStore::pictureListExpression() const
{
    return m_schemaVersion > firstReadableSchemaVersion ? QStringLiteral("rich_text_pictures") : QStringLiteral("NULL");
}

Result<std::vector<PoemStore::Row>> PoemStore::selectRows(const QString &condition, qint64 parameter, RichText richText)
{
    // Left out, the rich text's column reads empty and the picture list's tells whether
    // there is one (a list without a body is damage that reading it reports).
    QString columns = QString::fromLatin1(selectColumns);
    if (richText == RichText::leftOut) {
        columns.replace(QStringLiteral("rich_text_data"), QStringLiteral("NULL"));
        columns =
            columns.arg(QStringLiteral("rich_text_data IS NOT NULL OR %1 IS NOT NULL").arg(pictureListExpression()));
    } else {
        columns = columns.arg(pictureListExpression());
    }
    auto statement = m_db->prepare(QStringLiteral("SELECT %1 FROM poem %2 ORDER BY pk").arg(columns, condition));
    if (!statement)
        return statement.error();
    if (!condition.isEmpty())
        statement->bind(1, parameter);
    if (richText == RichText::leftOut) {
        return collect(*statement, [](const SqliteStatement &s) {
            PoemStore::Row row = readRow(s);
            row.richTextPending = s.int64(pictureListColumn) != 0;
            return row;
        });
    }
    auto rows = collect(*statement, [](const SqliteStatement &s) {
        return std::make_pair(readRow(s), s.optionalText(pictureListColumn));
    });
    if (!rows)
        return rows.error();
    std::vector<Row> joined;
    joined.reserve(rows->size());
    for (auto &[row, pictureList] : *rows) {
        if (auto done = joinPictures(row, pictureList); !done)
            return done.error();
        joined.push_back(std::move(row));
    }
    return joined;
}

Result<std::optional<QByteArray>> PoemStore::richText(qint64 key)
{
    // One snapshot, so the text never meets pictures another process has replaced meanwhile.
    SqliteTransaction transaction(*m_db, SqliteTransaction::Kind::read);
    if (auto begun = transaction.begin(); !begun)
        return begun.error();
    auto statement = m_db->prepare(
        QStringLiteral("SELECT rich_text_data, %1, title FROM poem WHERE pk = ?1").arg(pictureListExpression()));
    if (!statement)
        return statement.error();
    statement->bind(1, key);
    const auto hasRow = statement->step();
    if (!hasRow)
        return hasRow.error();
    if (!*hasRow)
        return Error{tr("Das Gedicht ist nicht mehr im Archiv; ein anderes Programm hat es gelöscht.")};
    Row row{key, 0, {}};
    row.values.richTextData = statement->optionalBlob(0);
    row.values.title = statement->optionalText(2);
    if (auto done = joinPictures(row, statement->optionalText(1)); !done)
        return done.error();
    if (auto ended = transaction.commit(); !ended)
        return ended.error();
    return std::move(row.values.richTextData);
}

Result<void> PoemStore::joinPictures(Row &row, const std::optional<QString> &pictureList)
{
    if (!pictureList)
        return {};
    std::optional<QByteArray> richText;
    if (row.values.richTextData) {
        auto joined = m_pictures.join(row.key, *row.values.richTextData, *pictureList);
        if (!joined)
            return joined.error();
        richText = std::move(joined.value());
    }
    if (!richText)
        return Error{tr("Das Archiv ist beschädigt: Bilder des Gedichts „%1“ fehlen.")
                         .arg(row.values.title.value_or(QString()))};
    row.values.richTextData = std::move(richText);
    return {};
}

Result<std::vector<PoemStore::Row>> PoemStore::loadAll()
{
    // One snapshot, so no row meets pictures another process has replaced meanwhile.
    SqliteTransaction transaction(*m_db, SqliteTransaction::Kind::read);
    if (auto begun = transaction.begin(); !begun)
        return begun.error();
    auto rows = selectRows(QString(), 0, RichText::leftOut);
    if (!rows)
        return rows.error();
    if (auto ended = transaction.commit(); !ended)
        return ended.error();
    return rows;
}

Result<PoemStore::Changes> PoemStore::changesSince(qint64 changeSeq)
{
    SqliteTransaction transaction(*m_db, SqliteTransaction::Kind::read);
    if (auto begun = transaction.begin(); !begun)
        return begun.error();
    auto rows = selectRows(QStringLiteral("WHERE change_seq > ?1"), changeSeq, RichText::read);
    if (!rows)
        return rows.error();
    const auto count = m_db->queryInt64(QStringLiteral("SELECT count(*) FROM poem"));
    if (!count)
        return count.error();
    if (auto ended = transaction.commit(); !ended)
        return ended.error();
    return Changes{std::move(rows.value()), *count};
}

Result<std::vector<qint64>> PoemStore::allKeys()
{
    auto statement = m_db->prepare(QStringLiteral("SELECT pk FROM poem ORDER BY pk"));
    if (!statement)
        return statement.error();
    return collect(*statement, [](const SqliteStatement &row) { return row.int64(0); });
}

Result<qint64> PoemStore::dataVersion()
{
    return m_db->queryInt64(QStringLiteral("PRAGMA data_version"));
}

Result<SqliteStatement *> PoemStore::cachedStatement(const QString &sql)
{
    if (const auto found = m_statements.find(sql); found != m_statements.end())
        return &found->second;
    auto prepared = m_db->prepare(sql);
    if (!prepared)
        return prepared.error();
    return &m_statements.emplace(sql, std::move(prepared.value())).first->second;
}

Result<std::unique_ptr<PoemStore::Write>> PoemStore::beginWrite()
{
    if (m_readOnly)
        return Error{readOnlyText()};
    auto transaction = std::make_unique<SqliteTransaction>(*m_db);
    if (auto begun = transaction->begin(); !begun)
        return begun.error();
    const auto seq = m_db->queryInt64(QStringLiteral("UPDATE store_change SET seq = seq + 1 RETURNING seq"));
    if (!seq)
        return seq.error();
    return std::unique_ptr<Write>(new Write(*this, std::move(transaction), *seq));
}

PoemStore::Write::Write(PoemStore &store, std::unique_ptr<SqliteTransaction> transaction, qint64 changeSeq)
    : m_store(store), m_transaction(std::move(transaction)), m_changeSeq(changeSeq)
{
}

PoemStore::Write::~Write()
{
    m_store.m_pictures.rollback(); // nothing left to forget after a commit
}

Result<qint64> PoemStore::Write::insert(const PoemValues &values)
{
    static const QString sql = [] {
        const QStringList columns(std::begin(fieldColumns), std::end(fieldColumns));
        QStringList placeholders;
        for (int i = 0; i < poemFieldCount; ++i)
            placeholders.append(QStringLiteral("?%1").arg(i + 2));
        return QStringLiteral("INSERT INTO poem (change_seq, %1) VALUES (?1, %2)")
            .arg(columns.join(u", "), placeholders.join(u", "));
    }();
    auto statement = m_store.cachedStatement(sql);
    if (!statement)
        return statement.error();
    const StoredRichText split = StoredRichText::split(values.richTextData.value_or(QByteArray()));
    SqliteStatement &insert = **statement;
    insert.bind(1, m_changeSeq);
    for (int i = 0; i < poemFieldCount; ++i)
        bindField(insert, i + 2, PoemField(i), values, split);
    if (auto done = insert.run(); !done)
        return done.error();
    const qint64 key = m_store.m_db->lastInsertRowId();
    if (!split.cuts.empty()) {
        if (auto stored = storePictures(key, *values.richTextData, split); !stored)
            return stored.error();
    }
    return key;
}

Result<void> PoemStore::Write::storePictures(qint64 key, const QByteArray &richText, const StoredRichText &split)
{
    const auto list = m_store.m_pictures.store(key, richText, split);
    if (!list)
        return list.error();
    auto statement = m_store.cachedStatement(QStringLiteral("UPDATE poem SET rich_text_pictures=?2 WHERE pk=?1"));
    if (!statement)
        return statement.error();
    (*statement)->bind(1, key);
    (*statement)->bind(2, *list);
    return (*statement)->run();
}

Result<bool> PoemStore::Write::isCurrent(qint64 key, qint64 expectedSeq)
{
    auto statement = m_store.m_db->prepare(QStringLiteral("SELECT change_seq FROM poem WHERE pk=?1"));
    if (!statement)
        return statement.error();
    statement->bind(1, key);
    const auto found = statement->step();
    if (!found)
        return found.error();
    return *found && statement->int64(0) == expectedSeq;
}

Result<bool> PoemStore::Write::update(qint64 key, qint64 expectedSeq, const PoemValues &values, PoemFieldSet fields)
{
    const bool richText = fields[size_t(PoemField::richTextData)];
    StoredRichText split;
    std::optional<QString> pictureList;
    if (richText) {
        // Pictures are written before the row, so the row must be known current first:
        // a refused update may not touch them.
        const auto current = isCurrent(key, expectedSeq);
        if (!current || !*current)
            return current;
        split = StoredRichText::split(values.richTextData.value_or(QByteArray()));
        auto list = m_store.m_pictures.store(key, values.richTextData.value_or(QByteArray()), split);
        if (!list)
            return list.error();
        pictureList = std::move(list.value());
    }
    auto statement = m_store.cachedStatement(updateSql(fields));
    if (!statement)
        return statement.error();
    SqliteStatement &update = **statement;
    update.bind(1, key);
    update.bind(2, expectedSeq);
    update.bind(3, m_changeSeq);
    for (int i = 0; i < poemFieldCount; ++i) {
        if (fields[size_t(i)])
            bindField(update, i + 4, PoemField(i), values, split);
    }
    if (richText)
        update.bind(poemFieldCount + 4, pictureList);
    if (auto done = update.run(); !done)
        return done.error();
    return m_store.m_db->changes() == 1;
}

Result<bool> PoemStore::Write::remove(qint64 key, qint64 expectedSeq)
{
    auto statement = m_store.cachedStatement(QStringLiteral("DELETE FROM poem WHERE pk=?1 AND change_seq=?2"));
    if (!statement)
        return statement.error();
    (*statement)->bind(1, key);
    (*statement)->bind(2, expectedSeq);
    if (auto done = (*statement)->run(); !done)
        return done.error();
    if (m_store.m_db->changes() != 1)
        return false;
    if (auto versions = m_store.m_versions.removeAll(key); !versions)
        return versions.error();
    if (auto cleared = m_store.m_pictures.removeAll(key); !cleared)
        return cleared.error();
    return true;
}

Result<std::optional<PoemStore::Row>> PoemStore::Write::row(qint64 key)
{
    auto rows = m_store.selectRows(QStringLiteral("WHERE pk = ?1"), key, RichText::read);
    if (!rows)
        return rows.error();
    if (rows->empty())
        return std::optional<Row>();
    return std::optional<Row>(std::move(rows->front()));
}

Result<std::optional<qint64>> PoemStore::Write::recordVersion(qint64 key, const QString &reason, const QString &name,
                                                              const QDateTime &now, bool onlyWhenChanged)
{
    return m_store.m_versions.record(key, reason, name, now, onlyWhenChanged);
}

Result<bool> PoemStore::Write::hasVersions(qint64 key)
{
    return m_store.m_versions.hasVersions(key);
}

Result<int> PoemStore::Write::pruneVersions(const QDateTime &now)
{
    return m_store.m_versions.pruneAll(now);
}

Result<std::vector<PoemVersion>> PoemStore::versions(qint64 key)
{
    if (m_schemaVersion < currentSchemaVersion)
        return std::vector<PoemVersion>();
    return m_versions.list(key);
}

Result<std::optional<PoemVersion>> PoemStore::version(qint64 key, qint64 number)
{
    if (m_schemaVersion < currentSchemaVersion)
        return std::optional<PoemVersion>();
    SqliteTransaction transaction(*m_db, SqliteTransaction::Kind::read);
    if (auto begun = transaction.begin(); !begun)
        return begun.error();
    auto found = m_versions.version(key, number);
    if (!found)
        return found;
    if (auto ended = transaction.commit(); !ended)
        return ended.error();
    return found;
}

Result<qint64> PoemStore::versionStorageBytes()
{
    if (m_schemaVersion < currentSchemaVersion)
        return qint64(0);
    return m_versions.storageBytes();
}

Result<void> PoemStore::Write::commit()
{
    if (auto done = m_transaction->commit(); !done)
        return done;
    m_store.m_pictures.commit();
    return {};
}
