#pragma once

#include "archive/PoemVersion.h"
#include "archive/Result.h"

#include <QCoreApplication>

#include <optional>
#include <vector>

class PictureStore;
class SqliteDatabase;

// The kept versions of the poems, in a table of their own next to the poem rows. A version
// is copied from the poem's row as it stands in the file, inside the caller's write
// transaction, so it is committed together with the change it precedes or not at all, and
// two processes appending to the same poem are serialised by the write lock. Pictures are
// referenced, not copied: a picture named by a version outlives its removal from the poem.
class PoemVersionStore {
    Q_DECLARE_TR_FUNCTIONS(PoemVersionStore)

public:
    PoemVersionStore(SqliteDatabase &db, PictureStore &pictures) : m_db(db), m_pictures(pictures) {}

    static QStringList schemaStatements();

    // Within a write transaction. With onlyWhenChanged, nothing is kept when the poem is as
    // its newest version has it. Answers the new version's number.
    Result<std::optional<qint64>> record(qint64 poemKey, const QString &reason, const QString &name,
                                         const QDateTime &now, bool onlyWhenChanged);
    Result<bool> hasVersions(qint64 poemKey);
    // For a poem deleted for good; the caller removes its pictures.
    Result<void> removeAll(qint64 poemKey);
    // Lets go of what the retention rule no longer keeps; answers how many.
    Result<int> prune(qint64 poemKey, const QDateTime &now);
    Result<int> pruneAll(const QDateTime &now);

    Result<std::vector<PoemVersion>> list(qint64 poemKey);
    Result<std::optional<PoemVersion>> version(qint64 poemKey, qint64 number);
    // What the versions add to the file: their texts and the pictures only they still name.
    Result<qint64> storageBytes();

private:
    // Every this many numbers a version stays whole, so reading one applies few edits.
    static constexpr qint64 wholeEvery = 32;

    static Error damaged();
    Result<QByteArray> contentOf(qint64 poemKey, qint64 number);
    // The stored form of a version's content: the edits from its base when that is smaller,
    // squeezed when that is smaller; and the base it now leans on.
    static std::pair<QByteArray, std::optional<qint64>>
    packed(const QByteArray &bytes, std::optional<qint64> baseNumber, const QByteArray &baseBytes);
    static std::optional<QByteArray> unpacked(const QByteArray &stored);
    // Keeps a version as the edits from its base, or whole when that is not smaller.
    Result<void> storeAgainst(qint64 poemKey, qint64 number, const QByteArray &bytes, std::optional<qint64> baseNumber,
                              const QByteArray &baseBytes);
    Result<void> removeVersion(qint64 poemKey, qint64 number);
    // The versions the condition names (?1 the poem, ?2 the number), with their picture links.
    Result<void> deleteWhere(const char *condition, qint64 poemKey, qint64 number);
    Result<void> dropUnreferencedPictures(qint64 poemKey);

    SqliteDatabase &m_db;
    PictureStore &m_pictures;
};
