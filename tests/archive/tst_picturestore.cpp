#include "StoreFaults.h"

#include "archive/ArchiveContext.h"
#include "archive/PersistenceController.h"
#include "archive/PoemStore.h"
#include "archive/StoredRichText.h"
#include "backup/Backup.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <numeric>

namespace {

// Bytes that look like nothing RTF knows, with every troublesome byte in them.
QByteArray pictureBytes(qsizetype size, quint32 seed)
{
    QByteArray bytes(size, Qt::Uninitialized);
    QRandomGenerator random(seed);
    for (char &byte : bytes)
        byte = char(random.bounded(256));
    bytes.replace(0, 12, QByteArray("}\\bin99 {\\\\"));
    return bytes;
}

QByteArray rtfWith(const QList<QByteArray> &pictures, const QByteArray &verse = "Zeile")
{
    QByteArray rtf = "{\\rtf1\\ansi " + verse + "\\par ";
    for (const QByteArray &picture : pictures)
        rtf += "{\\pict\\jpegblip\\bin" + QByteArray::number(picture.size()) + ' ' + picture + "}\\par ";
    return rtf + "Ende}";
}

PoemValues poemWith(const QByteArray &richText)
{
    PoemValues values;
    values.title = QStringLiteral("Mit Bild");
    values.richTextData = richText;
    return values;
}

} // namespace

class PictureStoreTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    int m_files = 0;

    QString newPath() { return m_dir.filePath(QStringLiteral("store%1.sqlite").arg(++m_files)); }

    static std::unique_ptr<PoemStore> open(const QString &path)
    {
        auto store = PoemStore::open(path);
        if (!store)
            qWarning() << store.errorMessage();
        return store ? std::move(store.value()) : nullptr;
    }

    // Inserts or updates one poem in a write of its own; returns its key.
    static qint64 save(PoemStore &store, qint64 key, const QByteArray &richText)
    {
        auto write = store.beginWrite();
        if (!write)
            return 0;
        if (key == 0) {
            const auto inserted = (*write)->insert(poemWith(richText));
            key = inserted ? *inserted : 0;
        } else {
            const auto row = (*write)->row(key);
            PoemFieldSet fields;
            fields.set(size_t(PoemField::richTextData));
            const auto updated = (*write)->update(key, (*row)->changeSeq, poemWith(richText), fields);
            key = updated && *updated ? key : 0;
        }
        return (*write)->commit() ? key : 0;
    }

    static QByteArray storedRichText(const QString &path, qint64 key)
    {
        auto store = open(path);
        const auto read = store->richText(key);
        return read ? read->value_or(QByteArray("nil")) : QByteArray("missing");
    }

private Q_SLOTS:
    void splittingAndJoiningGiveBackEveryByte_data()
    {
        QTest::addColumn<QByteArray>("richText");
        QTest::addColumn<int>("cuts");
        const QByteArray big = pictureBytes(20000, 1);
        QTest::newRow("two pictures") << rtfWith({big, pictureBytes(9000, 2)}) << 2;
        QTest::newRow("small picture stays") << rtfWith({pictureBytes(100, 3)}) << 0;
        QTest::newRow("small one before a big one") << rtfWith({pictureBytes(100, 4), big}) << 1;
        QTest::newRow("escaped backslash") << QByteArray("{\\rtf1 \\\\bin9000 " + big + "}") << 0;
        QTest::newRow("negative length") << QByteArray("{\\rtf1 \\bin-9000 " + big + "}") << 0;
        QTest::newRow("truncated payload") << QByteArray("{\\rtf1 {\\pict\\bin90000 " + big) << 1;
        QTest::newRow("no delimiter") << QByteArray("{\\rtf1 \\bin20000" + big + "}") << 1;
        QTest::newRow("not rtf") << QByteArray("rtfd\\bin20000 " + big) << 0;
        QTest::newRow("empty") << QByteArray() << 0;
    }

    void splittingAndJoiningGiveBackEveryByte()
    {
        QFETCH(QByteArray, richText);
        QFETCH(int, cuts);
        const StoredRichText split = StoredRichText::split(richText);
        QCOMPARE(int(split.cuts.size()), cuts);
        std::vector<StoredRichText::Piece> pieces;
        for (const StoredRichText::Cut &cut : split.cuts)
            pieces.push_back({cut.bodyOffset, richText.mid(cut.sourceOffset, cut.length)});
        QCOMPARE(split.body.size() + std::accumulate(split.cuts.begin(), split.cuts.end(), qsizetype(0),
                                                     [](qsizetype sum, const auto &cut) { return sum + cut.length; }),
                 richText.size());
        QCOMPARE(*StoredRichText::join(split.body, pieces), richText);
    }

    void joinRefusesPiecesThatDoNotFit()
    {
        const QByteArray piece = pictureBytes(10, 5);
        QVERIFY(!StoredRichText::join("abc", {{4, piece}}));
        QVERIFY(!StoredRichText::join("abc", {{2, piece}, {1, piece}}));
        QCOMPARE(*StoredRichText::join("abc", {{3, "X"}, {3, "Y"}}), QByteArray("abcXY"));
    }

    void keystrokesKeepThePictureRowAndTheBytes()
    {
        const QString path = newPath();
        auto store = open(path);
        const QByteArray photo = pictureBytes(300000, 6);
        qint64 key = save(*store, 0, rtfWith({photo}));
        QVERIFY(key);
        const qint64 firstId = queryOnStore(path, "SELECT id FROM picture");
        for (int i = 0; i < 5; ++i)
            QCOMPARE(save(*store, key, rtfWith({photo}, "Zeile" + QByteArray(i + 1, 'a'))), key);
        QCOMPARE(queryOnStore(path, "SELECT count(*) FROM picture"), 1);
        QCOMPARE(queryOnStore(path, "SELECT id FROM picture"), firstId);
        QVERIFY(queryOnStore(path, "SELECT length(rich_text_data) FROM poem") < 1000);

        // A second process sees the same bytes, and a store that forgot what it wrote
        // recognises the picture in the file instead of writing it again.
        QCOMPARE(storedRichText(path, key), rtfWith({photo}, "Zeileaaaaa"));
        store = open(path);
        QCOMPARE(save(*store, key, rtfWith({photo, photo}, "neu")), key);
        QCOMPARE(queryOnStore(path, "SELECT count(*) FROM picture"), 1);
        QCOMPARE(storedRichText(path, key), rtfWith({photo, photo}, "neu"));
    }

    void replacedAndRemovedPicturesLeaveNoRows()
    {
        const QString path = newPath();
        auto store = open(path);
        const qint64 key = save(*store, 0, rtfWith({pictureBytes(50000, 7), pictureBytes(50000, 8)}));
        const qint64 other = save(*store, 0, rtfWith({pictureBytes(50000, 9)}));
        const QByteArray replaced = rtfWith({pictureBytes(50000, 8), pictureBytes(60000, 10)});
        QCOMPARE(save(*store, key, replaced), key);
        QCOMPARE(queryOnStore(path, "SELECT count(*) FROM picture"), 3);
        QCOMPARE(storedRichText(path, key), replaced);

        QCOMPARE(save(*store, key, rtfWith({})), key);
        QCOMPARE(queryOnStore(path, "SELECT count(*) FROM picture"), 1);
        auto write = store->beginWrite();
        QVERIFY(*(*write)->remove(other, (*(*write)->row(other))->changeSeq));
        QVERIFY((*write)->commit());
        QCOMPARE(queryOnStore(path, "SELECT count(*) FROM picture"), 0);
    }

    // A rolled-back write's picture ids are handed out again, here by another process: what
    // the rolled-back write stored under them must not be taken for what is there now.
    void rolledBackPicturesAreNotRemembered()
    {
        const QString path = newPath();
        auto store = open(path);
        const QByteArray first = pictureBytes(40000, 11);
        const QByteArray undone = pictureBytes(40000, 12);
        const QByteArray other = pictureBytes(40000, 13);
        const qint64 key = save(*store, 0, rtfWith({first}));
        {
            auto write = store->beginWrite();
            PoemFieldSet fields;
            fields.set(size_t(PoemField::richTextData));
            QVERIFY(*(*write)->update(key, (*(*write)->row(key))->changeSeq, poemWith(rtfWith({undone})), fields));
        }
        QCOMPARE(storedRichText(path, key), rtfWith({first}));
        auto otherProcess = open(path);
        QCOMPARE(save(*otherProcess, key, rtfWith({other})), key);
        QCOMPARE(save(*store, key, rtfWith({undone})), key);
        QCOMPARE(storedRichText(path, key), rtfWith({undone}));
    }

    void staleUpdateLeavesThePicturesAlone()
    {
        const QString path = newPath();
        auto store = open(path);
        const QByteArray kept = rtfWith({pictureBytes(30000, 14)});
        const qint64 key = save(*store, 0, kept);
        auto write = store->beginWrite();
        const qint64 seq = (*(*write)->row(key))->changeSeq;
        PoemFieldSet fields;
        fields.set(size_t(PoemField::richTextData));
        QCOMPARE(*(*write)->update(key, seq + 1, poemWith(rtfWith({pictureBytes(30000, 15)})), fields), false);
        QVERIFY((*write)->commit());
        QCOMPARE(storedRichText(path, key), kept);
        QCOMPARE(queryOnStore(path, "SELECT count(*) FROM picture"), 1);
    }

    void olderFilesKeepTheirPicturesInline()
    {
        const QString path = newPath();
        const QByteArray inline_ = rtfWith({pictureBytes(30000, 16)});
        {
            auto store = open(path);
            QVERIFY(save(*store, 0, QByteArray("{\\rtf1 placeholder}")));
        }
        // What the previous schema held: the whole rich text in the row.
        executeOnStore(path, "DROP TABLE picture; ALTER TABLE poem DROP COLUMN rich_text_pictures; "
                             "DROP TABLE poem_version; DROP TABLE version_picture; PRAGMA user_version=3;");
        sqlite3 *db = nullptr;
        QCOMPARE(sqlite3_open(path.toUtf8().constData(), &db), SQLITE_OK);
        sqlite3_stmt *statement = nullptr;
        sqlite3_prepare_v2(db, "UPDATE poem SET rich_text_data = ?1", -1, &statement, nullptr);
        sqlite3_bind_blob(statement, 1, inline_.constData(), int(inline_.size()), SQLITE_TRANSIENT);
        QCOMPARE(sqlite3_step(statement), SQLITE_DONE);
        sqlite3_finalize(statement);
        sqlite3_close(db);

        const auto readOnly = PoemStore::openReadOnly(path);
        QVERIFY2(readOnly, qPrintable(readOnly.errorMessage()));
        QCOMPARE((*readOnly)->richText(1)->value_or(QByteArray()), inline_);

        QCOMPARE(storedRichText(path, 1), inline_); // migrates
        QCOMPARE(queryOnStore(path, "PRAGMA user_version"), PoemStore::currentSchemaVersion);
        auto store = open(path);
        QCOMPARE(save(*store, 1, inline_ + " "), 1);
        QCOMPARE(queryOnStore(path, "SELECT count(*) FROM picture"), 1);
        QCOMPARE(storedRichText(path, 1), inline_ + " ");
    }

    void damagedPictureListIsRefusedWithAMessage_data()
    {
        QTest::addColumn<QByteArray>("damage");
        QTest::newRow("picture missing") << QByteArray("DELETE FROM picture");
        QTest::newRow("list garbled") << QByteArray("UPDATE poem SET rich_text_pictures = 'x:y'");
        QTest::newRow("offset past the body") << QByteArray("UPDATE poem SET rich_text_pictures = '999999:1'");
        QTest::newRow("body gone") << QByteArray("UPDATE poem SET rich_text_data = NULL");
    }

    void damagedPictureListIsRefusedWithAMessage()
    {
        QFETCH(QByteArray, damage);
        const QString path = newPath();
        {
            auto store = open(path);
            QVERIFY(save(*store, 0, rtfWith({pictureBytes(30000, 17)})));
        }
        executeOnStore(path, damage.constData());
        // The archive opens; the poem's text says what is wrong when it is read.
        auto store = open(path);
        QVERIFY(store->loadAll());
        const auto read = store->richText(1);
        QVERIFY(!read);
        QVERIFY2(read.errorMessage().contains(QStringLiteral("„Mit Bild“")), qPrintable(read.errorMessage()));
        store.reset();

        // What was shown in its place never replaces it, and no backup leaves it out.
        const qint64 bodyBefore = queryOnStore(path, "SELECT length(rich_text_data) FROM poem");
        auto opened = PersistenceController::open(path);
        QVERIFY2(opened, qPrintable(opened.errorMessage()));
        ArchiveContext &context = (*opened)->viewContext();
        const PoemPtr poem = context.fetch().constFirst();
        QVERIFY(!poem->readFully());
        QVERIFY(!Backup::make(context.fetch(), QDateTime::currentDateTimeUtc()));
        poem->setTitle(QStringLiteral("Mit Bild, umbenannt"));
        QVERIFY(context.save());
        poem->setRichTextData(rtfWith({}, "Neu"));
        QVERIFY(!context.save());
        QCOMPARE(queryOnStore(path, "SELECT length(rich_text_data) FROM poem"), bodyBefore);
    }

    // The list never needs rich text, so an opened archive reads a poem's when it is first
    // asked for; a backup lets go of it again, and a save of other fields leaves it as it is.
    void richTextIsReadWhenFirstAskedFor()
    {
        const QString path = newPath();
        const QByteArray richText = rtfWith({pictureBytes(30000, 9)});
        {
            auto opened = PersistenceController::open(path);
            QVERIFY(opened);
            const PoemPtr poem = (*opened)->viewContext().insertPoem();
            poem->setValues(poemWith(richText));
            QVERIFY((*opened)->viewContext().save());
        }
        for (int round = 0; round < 2; ++round) {
            auto opened = PersistenceController::open(path);
            QVERIFY(opened);
            const PoemPtr poem = (*opened)->viewContext().fetch().constFirst();
            // A backup reads it whole and lets go of it again.
            const auto backup = Backup::make({poem}, QDateTime::currentDateTimeUtc());
            QCOMPARE(backup->poems.constFirst().richTextData, std::optional<QByteArray>(richText));
            QVERIFY(poem->richTextWaiting());
            poem->setTitle(QStringLiteral("Runde %1").arg(round));
            QVERIFY((*opened)->viewContext().save());
            QCOMPARE(poem->richTextData(), std::optional<QByteArray>(richText));
            QVERIFY(poem->readFully());
        }
    }
};

QTEST_GUILESS_MAIN(PictureStoreTest)
#include "tst_picturestore.moc"
