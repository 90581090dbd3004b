#include "archive/PictureStore.h"

#include "archive/SqliteDatabase.h"
#include "archive/SqliteStatement.h"

#include <QStringList>

#include <algorithm>
#include <cstring>

namespace {

bool sameBytes(const QByteArrayView &a, const char *b, qsizetype length)
{
    return a.size() == length && std::memcmp(a.data(), b, size_t(length)) == 0;
}

// "bodyOffset:id" pairs, as store() writes them.
std::optional<std::vector<std::pair<qsizetype, qint64>>> parseList(const QString &list)
{
    std::vector<std::pair<qsizetype, qint64>> places;
    for (const QString &entry : list.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const qsizetype colon = entry.indexOf(QLatin1Char(':'));
        bool offsetOk = false;
        bool idOk = false;
        const qint64 offset = entry.left(colon).toLongLong(&offsetOk);
        const qint64 id = entry.mid(colon + 1).toLongLong(&idOk);
        if (colon < 0 || !offsetOk || !idOk || offset < 0)
            return std::nullopt;
        places.emplace_back(qsizetype(offset), id);
    }
    if (places.empty())
        return std::nullopt;
    return places;
}

} // namespace

Result<std::optional<QString>> PictureStore::store(qint64 key, const QByteArray &richText, const StoredRichText &split)
{
    const auto existing = lengthsOf(key);
    if (!existing)
        return existing.error();
    std::vector<Placed> placed;
    QStringList list;
    for (const StoredRichText::Cut &cut : split.cuts) {
        const QByteArrayView bytes(richText.constData() + cut.sourceOffset, cut.length);
        std::optional<qint64> id = rememberedMatch(key, bytes, *existing);
        for (const Placed &earlier : placed) {
            if (!id && sameBytes(bytes, richText.constData() + earlier.offset, earlier.length))
                id = earlier.id;
        }
        if (!id) {
            const auto stored = storedMatch(key, bytes, *existing);
            if (!stored)
                return stored.error();
            id = *stored;
        }
        if (!id) {
            const auto inserted = insert(key, bytes);
            if (!inserted)
                return inserted.error();
            id = *inserted;
        }
        placed.push_back({*id, cut.sourceOffset, cut.length});
        list.append(QStringLiteral("%1:%2").arg(cut.bodyOffset).arg(*id));
    }
    for (const auto &[id, length] : *existing) {
        if (std::any_of(placed.begin(), placed.end(), [id = id](const Placed &p) { return p.id == id; }))
            continue;
        // A version still showing the picture keeps it.
        auto remove = m_db.prepare(QStringLiteral(
            "DELETE FROM picture WHERE id = ?1 AND NOT EXISTS (SELECT 1 FROM version_picture WHERE picture_id = ?1)"));
        if (!remove)
            return remove.error();
        remove->bind(1, id);
        if (auto done = remove->run(); !done)
            return done.error();
    }
    if (placed.empty()) {
        m_pending[key] = std::nullopt;
        return std::optional<QString>();
    }
    m_pending[key] = Written{richText, std::move(placed)};
    return std::optional<QString>(list.join(QLatin1Char(' ')));
}

Result<void> PictureStore::removeAll(qint64 key)
{
    auto remove = m_db.prepare(QStringLiteral("DELETE FROM picture WHERE poem_pk = ?1"));
    if (!remove)
        return remove.error();
    remove->bind(1, key);
    if (auto done = remove->run(); !done)
        return done;
    m_pending[key] = std::nullopt;
    return {};
}

std::vector<qint64> PictureStore::pictureIds(const std::optional<QString> &list)
{
    std::vector<qint64> ids;
    if (!list)
        return ids;
    for (const auto &[offset, id] : parseList(*list).value_or(std::vector<std::pair<qsizetype, qint64>>()))
        ids.push_back(id);
    return ids;
}

Result<std::optional<QByteArray>> PictureStore::join(qint64 key, const QByteArray &body, const QString &list)
{
    const auto places = parseList(list);
    if (!places)
        return std::optional<QByteArray>();
    std::vector<StoredRichText::Piece> pieces;
    for (const auto &[offset, id] : *places) {
        const auto bytes = storedBytes(key, id);
        if (!bytes)
            return bytes.error();
        if (!*bytes)
            return std::optional<QByteArray>();
        pieces.push_back({offset, **bytes});
    }
    return StoredRichText::join(body, pieces);
}

void PictureStore::commit()
{
    for (auto &[key, written] : m_pending) {
        if (!written) {
            m_remembered.erase(key);
            continue;
        }
        written->age = ++m_commits;
        m_remembered[key] = std::move(*written);
    }
    m_pending.clear();
    while (m_remembered.size() > rememberedRows) {
        const auto oldest = std::min_element(m_remembered.begin(), m_remembered.end(),
                                             [](const auto &a, const auto &b) { return a.second.age < b.second.age; });
        m_remembered.erase(oldest);
    }
}

Result<std::map<qint64, qsizetype>> PictureStore::lengthsOf(qint64 key)
{
    auto select = m_db.prepare(QStringLiteral("SELECT id, length(bytes) FROM picture WHERE poem_pk = ?1"));
    if (!select)
        return select.error();
    select->bind(1, key);
    std::map<qint64, qsizetype> lengths;
    for (;;) {
        const auto row = select->step();
        if (!row)
            return row.error();
        if (!*row)
            return lengths;
        lengths.emplace(select->int64(0), qsizetype(select->int64(1)));
    }
}

std::optional<qint64> PictureStore::rememberedMatch(qint64 key, const QByteArrayView &bytes,
                                                    const std::map<qint64, qsizetype> &existing) const
{
    const auto written = m_remembered.find(key);
    if (written == m_remembered.end())
        return std::nullopt;
    for (const Placed &picture : written->second.pictures) {
        const auto stored = existing.find(picture.id);
        if (stored == existing.end() || stored->second != picture.length)
            continue; // removed meanwhile, by another process
        if (sameBytes(bytes, written->second.richText.constData() + picture.offset, picture.length))
            return picture.id;
    }
    return std::nullopt;
}

Result<std::optional<qint64>> PictureStore::storedMatch(qint64 key, const QByteArrayView &bytes,
                                                        const std::map<qint64, qsizetype> &candidates)
{
    for (const auto &[id, length] : candidates) {
        if (length != bytes.size())
            continue;
        const auto stored = storedBytes(key, id);
        if (!stored)
            return stored.error();
        if (*stored && sameBytes(bytes, (*stored)->constData(), (*stored)->size()))
            return std::optional<qint64>(id);
    }
    return std::optional<qint64>();
}

Result<std::optional<QByteArray>> PictureStore::storedBytes(qint64 key, qint64 id)
{
    auto select = m_db.prepare(QStringLiteral("SELECT bytes FROM picture WHERE id = ?1 AND poem_pk = ?2"));
    if (!select)
        return select.error();
    select->bind(1, id);
    select->bind(2, key);
    const auto found = select->step();
    if (!found)
        return found.error();
    return *found ? select->optionalBlob(0) : std::nullopt;
}

Result<qint64> PictureStore::insert(qint64 key, const QByteArrayView &bytes)
{
    auto insert = m_db.prepare(QStringLiteral("INSERT INTO picture (poem_pk, bytes) VALUES (?1, ?2)"));
    if (!insert)
        return insert.error();
    insert->bind(1, key);
    insert->bind(2, std::optional<QByteArray>(QByteArray::fromRawData(bytes.data(), bytes.size())));
    if (auto done = insert->run(); !done)
        return done.error();
    return m_db.lastInsertRowId();
}
