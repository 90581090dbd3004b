#include "archive/PoemVersionStore.h"

#include "archive/ByteDelta.h"
#include "archive/PictureStore.h"
#include "archive/SqliteDatabase.h"
#include "archive/SqliteStatement.h"
#include "archive/VerseDiff.h"
#include "archive/VersionRetention.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QIODevice>
#include <QTimeZone>

#include <set>

namespace {

// The user-visible attributes, in the poem table's column names; a version keeps these.
const char *const contentColumns =
    "title, text, rich_text_data, rich_text_pictures, category, date, writer_notes, is_published, in_podcast";

struct Content {
    std::optional<QString> title;
    std::optional<QString> text;
    std::optional<QByteArray> richTextBody;
    std::optional<QString> pictureList;
    std::optional<QString> category;
    std::optional<qint64> date;
    std::optional<QString> writerNotes;
    qint64 isPublished = 0;
    qint64 inPodcast = 0;

    // Picture ids stand for their bytes, which never change under an id.
    QByteArray hash() const
    {
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        const auto put = [&stream](const auto &value) {
            stream << value.has_value();
            if (value)
                stream << *value;
        };
        put(title);
        put(text);
        put(richTextBody);
        put(pictureList);
        put(category);
        put(date);
        put(writerNotes);
        stream << isPublished << inPodcast;
        return QCryptographicHash::hash(bytes, QCryptographicHash::Sha1);
    }
};

Content readContent(const SqliteStatement &s, int first)
{
    return Content{s.optionalText(first),     s.optionalText(first + 1), s.optionalBlob(first + 2),
                   s.optionalText(first + 3), s.optionalText(first + 4), s.optionalInt64(first + 5),
                   s.optionalText(first + 6), s.int64(first + 7),        s.int64(first + 8)};
}

// A version's content as one byte string, texts in UTF-8, so consecutive versions share
// their words and one can be kept as the edits from the other.
class ContentBytes {
public:
    static QByteArray write(const Content &c)
    {
        QByteArray out;
        putText(out, c.title);
        putText(out, c.text);
        putBytes(out, c.richTextBody);
        putText(out, c.pictureList);
        putText(out, c.category);
        putBytes(out, c.date ? std::optional<QByteArray>(QByteArray::number(*c.date)) : std::nullopt);
        putText(out, c.writerNotes);
        out.append(char(c.isPublished ? '1' : '0'));
        out.append(char(c.inPodcast ? '1' : '0'));
        return out;
    }

    static std::optional<Content> read(const QByteArray &in)
    {
        qsizetype at = 0;
        Content c;
        std::optional<QByteArray> date;
        const bool ok = takeText(in, at, c.title) && takeText(in, at, c.text) && takeBytes(in, at, c.richTextBody) &&
                        takeText(in, at, c.pictureList) && takeText(in, at, c.category) && takeBytes(in, at, date) &&
                        takeText(in, at, c.writerNotes) && at + 2 == in.size();
        if (!ok)
            return std::nullopt;
        if (date)
            c.date = date->toLongLong();
        c.isPublished = in.at(at) == '1';
        c.inPodcast = in.at(at + 1) == '1';
        return c;
    }

private:
    // "-" for absent, else the length, a space, and the bytes.
    static void putBytes(QByteArray &out, const std::optional<QByteArray> &value)
    {
        if (!value) {
            out.append('-');
            return;
        }
        out.append(QByteArray::number(value->size()));
        out.append(' ');
        out.append(*value);
    }
    static void putText(QByteArray &out, const std::optional<QString> &value)
    {
        putBytes(out, value ? std::optional<QByteArray>(value->toUtf8()) : std::nullopt);
    }
    static bool takeBytes(const QByteArray &in, qsizetype &at, std::optional<QByteArray> &value)
    {
        if (at < in.size() && in.at(at) == '-') {
            ++at;
            value.reset();
            return true;
        }
        const qsizetype space = in.indexOf(' ', at);
        bool ok = false;
        const qsizetype length = space < 0 ? -1 : in.mid(at, space - at).toLongLong(&ok);
        if (!ok || length < 0 || length > in.size() - space - 1)
            return false;
        value = in.mid(space + 1, length);
        at = space + 1 + length;
        return true;
    }
    static bool takeText(const QByteArray &in, qsizetype &at, std::optional<QString> &value)
    {
        std::optional<QByteArray> bytes;
        if (!takeBytes(in, at, bytes))
            return false;
        value = bytes ? std::optional<QString>(QString::fromUtf8(*bytes)) : std::nullopt;
        return true;
    }
};

PoemVersion readSummary(const SqliteStatement &s)
{
    PoemVersion version;
    version.number = s.int64(0);
    version.createdAt = QDateTime::fromMSecsSinceEpoch(s.int64(1), Qt::UTC);
    version.reason = s.optionalText(2).value_or(QString());
    version.name = s.optionalText(3).value_or(QString());
    version.wordsAdded = int(s.int64(4));
    version.wordsRemoved = int(s.int64(5));
    return version;
}

// Calls read for every row the statement yields.
template <typename Read> Result<void> eachRow(SqliteStatement &statement, Read read)
{
    for (;;) {
        const auto row = statement.step();
        if (!row)
            return row.error();
        if (!*row)
            return {};
        read(statement);
    }
}

const char *const summaryColumns = "number, created_at, reason, name, words_added, words_removed";

} // namespace

QStringList PoemVersionStore::schemaStatements()
{
    return {
        // A version is kept as the edits from the one before it (base_number), every so often
        // whole, so no chain grows long; a row, once written, keeps its size and its page.
        QStringLiteral("CREATE TABLE poem_version (id INTEGER PRIMARY KEY AUTOINCREMENT, poem_pk INTEGER NOT NULL, "
                       "number INTEGER NOT NULL, created_at INTEGER NOT NULL, reason TEXT, name TEXT, "
                       "words_added INTEGER NOT NULL DEFAULT 0, words_removed INTEGER NOT NULL DEFAULT 0, "
                       "content_hash BLOB, content BLOB NOT NULL, base_number INTEGER)"),
        QStringLiteral("CREATE UNIQUE INDEX poem_version_number ON poem_version (poem_pk, number)"),
        // Which pictures a version needs; a picture named here is not removed with the poem's text.
        QStringLiteral("CREATE TABLE version_picture (version_id INTEGER NOT NULL, picture_id INTEGER NOT NULL)"),
        QStringLiteral("CREATE INDEX version_picture_version ON version_picture (version_id)"),
        QStringLiteral("CREATE INDEX version_picture_picture ON version_picture (picture_id)"),
    };
}

Result<std::optional<qint64>> PoemVersionStore::record(qint64 poemKey, const QString &reason, const QString &name,
                                                       const QDateTime &now, bool onlyWhenChanged)
{
    auto current = m_db.prepare(QStringLiteral("SELECT %1 FROM poem WHERE pk = ?1").arg(QLatin1String(contentColumns)));
    if (!current)
        return current.error();
    current->bind(1, poemKey);
    const auto found = current->step();
    if (!found)
        return found.error();
    if (!*found)
        return std::optional<qint64>();
    const Content content = readContent(*current, 0);
    const QByteArray hash = content.hash();

    auto newest = m_db.prepare(QStringLiteral(
        "SELECT number, content_hash FROM poem_version WHERE poem_pk = ?1 ORDER BY number DESC LIMIT 1"));
    if (!newest)
        return newest.error();
    newest->bind(1, poemKey);
    const auto hasNewest = newest->step();
    if (!hasNewest)
        return hasNewest.error();
    const std::optional<qint64> previous = *hasNewest ? std::optional<qint64>(newest->int64(0)) : std::nullopt;
    if (onlyWhenChanged && previous && newest->optionalBlob(1) == hash)
        return std::optional<qint64>();
    const qint64 number = previous.value_or(0) + 1;
    const QByteArray bytes = ContentBytes::write(content);
    QString previousText;
    QByteArray previousContent;
    if (previous) {
        const auto previousBytes = contentOf(poemKey, *previous);
        if (!previousBytes)
            return previousBytes.error();
        previousText = ContentBytes::read(*previousBytes).value_or(Content{}).text.value_or(QString());
        previousContent = *previousBytes;
    }
    const auto [stored, base] =
        packed(bytes, previous && number % wholeEvery != 0 ? previous : std::nullopt, previousContent);
    const auto [added, removed] = VerseDiff::wordCounts(previousText, content.text.value_or(QString()));

    auto insert = m_db.prepare(
        QStringLiteral("INSERT INTO poem_version (poem_pk, number, created_at, reason, name, words_added, "
                       "words_removed, content_hash, content, base_number) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, "
                       "?9, ?10)"));
    if (!insert)
        return insert.error();
    insert->bind(1, poemKey);
    insert->bind(2, number);
    insert->bind(3, now.toMSecsSinceEpoch());
    insert->bind(4, std::optional<QString>(reason));
    insert->bind(5, name.trimmed().isEmpty() ? std::nullopt : std::optional<QString>(name.trimmed()));
    insert->bind(6, qint64(added));
    insert->bind(7, qint64(removed));
    insert->bind(8, std::optional<QByteArray>(hash));
    insert->bind(9, std::optional<QByteArray>(stored));
    insert->bind(10, base);
    if (auto done = insert->run(); !done)
        return done.error();
    const qint64 versionId = m_db.lastInsertRowId();
    for (const qint64 pictureId : PictureStore::pictureIds(content.pictureList)) {
        auto link =
            m_db.prepare(QStringLiteral("INSERT INTO version_picture (version_id, picture_id) VALUES (?1, ?2)"));
        if (!link)
            return link.error();
        link->bind(1, versionId);
        link->bind(2, pictureId);
        if (auto done = link->run(); !done)
            return done.error();
    }
    if (auto pruned = prune(poemKey, now); !pruned)
        return pruned.error();
    return std::optional<qint64>(number);
}

Error PoemVersionStore::damaged()
{
    return Error{tr("Die Fassung ist beschädigt.")};
}

Result<QByteArray> PoemVersionStore::contentOf(qint64 poemKey, qint64 number)
{
    auto select = m_db.prepare(
        QStringLiteral("SELECT content, base_number FROM poem_version WHERE poem_pk = ?1 AND number = ?2"));
    if (!select)
        return select.error();
    std::vector<QByteArray> deltas;
    for (qint64 at = number;;) {
        select->reset();
        select->bind(1, poemKey);
        select->bind(2, at);
        const auto found = select->step();
        if (!found)
            return found.error();
        const std::optional<qint64> base = *found ? select->optionalInt64(1) : std::nullopt;
        if (!*found || (base && *base >= at))
            return damaged();
        auto unpackedBytes = unpacked(select->optionalBlob(0).value_or(QByteArray()));
        if (!unpackedBytes)
            return damaged();
        QByteArray bytes = std::move(*unpackedBytes);
        if (!base) {
            for (auto delta = deltas.rbegin(); delta != deltas.rend(); ++delta) {
                auto applied = ByteDelta::apply(bytes, *delta);
                if (!applied)
                    return damaged();
                bytes = std::move(*applied);
            }
            return bytes;
        }
        deltas.push_back(std::move(bytes));
        at = *base;
    }
}

std::pair<QByteArray, std::optional<qint64>>
PoemVersionStore::packed(const QByteArray &bytes, std::optional<qint64> baseNumber, const QByteArray &baseBytes)
{
    const std::optional<QByteArray> delta = baseNumber ? ByteDelta::encode(baseBytes, bytes) : std::nullopt;
    const QByteArray &payload = delta ? *delta : bytes;
    // The first byte says how the rest is kept: 'z' squeezed by zlib, 'r' as it is.
    const QByteArray squeezed = qCompress(payload, 9);
    const QByteArray stored = squeezed.size() < payload.size() ? QByteArray("z") + squeezed : QByteArray("r") + payload;
    return {stored, delta ? baseNumber : std::nullopt};
}

std::optional<QByteArray> PoemVersionStore::unpacked(const QByteArray &stored)
{
    if (stored.startsWith('r'))
        return stored.mid(1);
    if (!stored.startsWith('z'))
        return std::nullopt;
    QByteArray bytes = qUncompress(stored.mid(1));
    // qUncompress answers an empty array for damaged input as for an empty one.
    if (bytes.isEmpty() && stored.size() > 1 + 4 + 8)
        return std::nullopt;
    return bytes;
}

Result<void> PoemVersionStore::storeAgainst(qint64 poemKey, qint64 number, const QByteArray &bytes,
                                            std::optional<qint64> baseNumber, const QByteArray &baseBytes)
{
    const auto [stored, base] = packed(bytes, baseNumber, baseBytes);
    auto update = m_db.prepare(
        QStringLiteral("UPDATE poem_version SET content = ?3, base_number = ?4 WHERE poem_pk = ?1 AND number = ?2"));
    if (!update)
        return update.error();
    update->bind(1, poemKey);
    update->bind(2, number);
    update->bind(3, std::optional<QByteArray>(stored));
    update->bind(4, base);
    return update->run();
}

Result<bool> PoemVersionStore::hasVersions(qint64 poemKey)
{
    auto statement = m_db.prepare(QStringLiteral("SELECT 1 FROM poem_version WHERE poem_pk = ?1 LIMIT 1"));
    if (!statement)
        return statement.error();
    statement->bind(1, poemKey);
    return statement->step();
}

Result<void> PoemVersionStore::deleteWhere(const char *condition, qint64 poemKey, qint64 number)
{
    for (const char *sql : {"DELETE FROM version_picture WHERE version_id IN (SELECT id FROM poem_version WHERE %1)",
                            "DELETE FROM poem_version WHERE %1"}) {
        auto statement = m_db.prepare(QString::fromLatin1(sql).arg(QLatin1String(condition)));
        if (!statement)
            return statement.error();
        statement->bind(1, poemKey);
        statement->bind(2, number); // ignored by a condition without ?2
        if (auto done = statement->run(); !done)
            return done;
    }
    return {};
}

Result<void> PoemVersionStore::removeAll(qint64 poemKey)
{
    return deleteWhere("poem_pk = ?1", poemKey, 0);
}

Result<int> PoemVersionStore::prune(qint64 poemKey, const QDateTime &now)
{
    auto select = m_db.prepare(
        QStringLiteral("SELECT number, created_at, coalesce(name, '') != '' FROM poem_version WHERE poem_pk = ?1"));
    if (!select)
        return select.error();
    select->bind(1, poemKey);
    std::vector<VersionRetention::Entry> entries;
    if (auto read = eachRow(*select,
                            [&entries](const SqliteStatement &row) {
                                entries.push_back({row.int64(0), QDateTime::fromMSecsSinceEpoch(row.int64(1), Qt::UTC),
                                                   row.int64(2) != 0});
                            });
        !read)
        return read.error();
    const std::vector<qint64> expired = VersionRetention::expired(std::move(entries), now);
    for (const qint64 number : expired) {
        if (auto removed = removeVersion(poemKey, number); !removed)
            return removed.error();
    }
    if (!expired.empty()) {
        if (auto dropped = dropUnreferencedPictures(poemKey); !dropped)
            return dropped.error();
    }
    return int(expired.size());
}

Result<int> PoemVersionStore::pruneAll(const QDateTime &now)
{
    auto select = m_db.prepare(QStringLiteral("SELECT DISTINCT poem_pk FROM poem_version"));
    if (!select)
        return select.error();
    std::vector<qint64> poems;
    if (auto read = eachRow(*select, [&poems](const SqliteStatement &row) { poems.push_back(row.int64(0)); }); !read)
        return read.error();
    int removed = 0;
    for (const qint64 poemKey : poems) {
        const auto pruned = prune(poemKey, now);
        if (!pruned)
            return pruned.error();
        removed += *pruned;
    }
    return removed;
}

Result<void> PoemVersionStore::removeVersion(qint64 poemKey, qint64 number)
{
    // A version kept as the edits from this one is rewritten against the next older one first.
    auto dependents = m_db.prepare(
        QStringLiteral("SELECT number, content FROM poem_version WHERE poem_pk = ?1 AND base_number = ?2"));
    if (!dependents)
        return dependents.error();
    dependents->bind(1, poemKey);
    dependents->bind(2, number);
    std::vector<std::pair<qint64, QByteArray>> rebase;
    if (auto read = eachRow(*dependents,
                            [&rebase](const SqliteStatement &row) {
                                rebase.emplace_back(row.int64(0), row.optionalBlob(1).value_or(QByteArray()));
                            });
        !read)
        return read.error();
    if (!rebase.empty()) {
        const auto bytes = contentOf(poemKey, number);
        if (!bytes)
            return bytes.error();
        auto next =
            m_db.prepare(QStringLiteral("SELECT max(number) FROM poem_version WHERE poem_pk = ?1 AND number < ?2"));
        if (!next)
            return next.error();
        next->bind(1, poemKey);
        next->bind(2, number);
        const auto found = next->step();
        if (!found)
            return found.error();
        const std::optional<qint64> baseNumber = *found ? next->optionalInt64(0) : std::nullopt;
        QByteArray baseBytes;
        if (baseNumber) {
            auto read = contentOf(poemKey, *baseNumber);
            if (!read)
                return read.error();
            baseBytes = std::move(read.value());
        }
        for (const auto &[dependent, stored] : rebase) {
            const auto delta = unpacked(stored);
            const auto own = delta ? ByteDelta::apply(*bytes, *delta) : std::nullopt;
            if (!own)
                return damaged();
            const bool whole = dependent % wholeEvery == 0;
            if (auto stored = storeAgainst(poemKey, dependent, *own, whole ? std::nullopt : baseNumber, baseBytes);
                !stored)
                return stored;
        }
    }
    return deleteWhere("poem_pk = ?1 AND number = ?2", poemKey, number);
}

Result<void> PoemVersionStore::dropUnreferencedPictures(qint64 poemKey)
{
    auto current = m_db.prepare(QStringLiteral("SELECT rich_text_pictures FROM poem WHERE pk = ?1"));
    if (!current)
        return current.error();
    current->bind(1, poemKey);
    const auto found = current->step();
    if (!found)
        return found.error();
    const std::vector<qint64> inUse = PictureStore::pictureIds(*found ? current->optionalText(0) : std::nullopt);
    QStringList kept;
    for (const qint64 id : inUse)
        kept.append(QString::number(id));
    auto drop = m_db.prepare(QStringLiteral("DELETE FROM picture WHERE poem_pk = ?1 AND id NOT IN (%1) AND NOT "
                                            "EXISTS (SELECT 1 FROM version_picture WHERE picture_id = picture.id)")
                                 .arg(kept.isEmpty() ? QStringLiteral("0") : kept.join(QLatin1Char(','))));
    if (!drop)
        return drop.error();
    drop->bind(1, poemKey);
    return drop->run();
}

Result<std::vector<PoemVersion>> PoemVersionStore::list(qint64 poemKey)
{
    auto select = m_db.prepare(QStringLiteral("SELECT %1 FROM poem_version WHERE poem_pk = ?1 ORDER BY number DESC")
                                   .arg(QLatin1String(summaryColumns)));
    if (!select)
        return select.error();
    select->bind(1, poemKey);
    std::vector<PoemVersion> versions;
    if (auto read = eachRow(*select, [&versions](const SqliteStatement &row) { versions.push_back(readSummary(row)); });
        !read)
        return read.error();
    return versions;
}

Result<std::optional<PoemVersion>> PoemVersionStore::version(qint64 poemKey, qint64 number)
{
    auto select = m_db.prepare(QStringLiteral("SELECT %1 FROM poem_version WHERE poem_pk = ?1 AND number = ?2")
                                   .arg(QLatin1String(summaryColumns)));
    if (!select)
        return select.error();
    select->bind(1, poemKey);
    select->bind(2, number);
    const auto found = select->step();
    if (!found)
        return found.error();
    if (!*found)
        return std::optional<PoemVersion>();
    PoemVersion version = readSummary(*select);
    const auto bytes = contentOf(poemKey, number);
    if (!bytes)
        return bytes.error();
    const std::optional<Content> content = ContentBytes::read(*bytes);
    if (!content)
        return damaged();
    PoemValues &values = version.values;
    values.title = content->title;
    values.text = content->text;
    values.richTextData = content->richTextBody;
    if (content->pictureList && content->richTextBody) {
        auto joined = m_pictures.join(poemKey, *content->richTextBody, *content->pictureList);
        if (!joined)
            return joined.error();
        if (!*joined)
            return Error{tr("Die Fassung ist beschädigt: Bilder fehlen.")};
        values.richTextData = std::move(**joined);
    }
    values.category = content->category;
    if (content->date)
        values.date = QDateTime::fromMSecsSinceEpoch(*content->date, Qt::UTC);
    values.writerNotes = content->writerNotes;
    values.isPublished = content->isPublished != 0;
    values.inPodcast = content->inPodcast != 0;
    return std::optional<PoemVersion>(std::move(version));
}

Result<qint64> PoemVersionStore::storageBytes()
{
    const auto texts = m_db.queryInt64(
        QStringLiteral("SELECT coalesce(sum(length(content) + coalesce(length(CAST(reason AS BLOB)), 0) + "
                       "coalesce(length(CAST(name AS BLOB)), 0) + 64), 0) FROM poem_version"));
    if (!texts)
        return texts.error();
    auto lists =
        m_db.prepare(QStringLiteral("SELECT rich_text_pictures FROM poem WHERE rich_text_pictures IS NOT NULL"));
    if (!lists)
        return lists.error();
    std::set<qint64> inUse;
    if (auto read = eachRow(*lists,
                            [&inUse](const SqliteStatement &row) {
                                for (const qint64 id : PictureStore::pictureIds(row.optionalText(0)))
                                    inUse.insert(id);
                            });
        !read)
        return read.error();
    auto pictures = m_db.prepare(
        QStringLiteral("SELECT id, length(bytes) FROM picture WHERE id IN (SELECT picture_id FROM version_picture)"));
    if (!pictures)
        return pictures.error();
    qint64 total = *texts;
    if (auto read = eachRow(*pictures,
                            [&](const SqliteStatement &row) {
                                if (!inUse.count(row.int64(0)))
                                    total += row.int64(1);
                            });
        !read)
        return read.error();
    return total;
}
