#include "StoreFaults.h"
#include "TmpfsMount.h"

#include "archive/ArchiveContext.h"
#include "archive/PersistenceController.h"
#include "archive/PoemEdit.h"
#include "archive/PoemFactory.h"
#include "archive/PoemStore.h"

#include <QCryptographicHash>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

namespace {

QDateTime at(int hour, int minute = 0, int second = 0)
{
    return QDateTime(QDate(2026, 11, 14), QTime(hour, minute, second), Qt::UTC);
}

QByteArray fileHash(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256);
}

} // namespace

class ArchiveStoreTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QString storePath(const char *name) const { return m_dir.filePath(QString::fromLatin1(name)); }

    std::unique_ptr<PersistenceController> openStore(const QString &path)
    {
        auto opened = PersistenceController::open(path);
        if (!opened)
            qWarning() << opened.errorMessage();
        return opened ? std::move(opened.value()) : nullptr;
    }

private Q_SLOTS:
    void everyAttributeSurvivesReopenAsNilEmptyAndValue_data()
    {
        QTest::addColumn<int>("variant");
        QTest::newRow("nil") << 0;
        QTest::newRow("empty") << 1;
        QTest::newRow("value") << 2;
    }

    void everyAttributeSurvivesReopenAsNilEmptyAndValue()
    {
        QFETCH(int, variant);
        const QString path = storePath("roundtrip.sqlite") + QString::number(variant);
        PoemValues values;
        if (variant == 1) {
            values.title = values.titleNormalized = values.text = values.category = QString();
            values.writerNotes = values.externalId = QString();
            values.richTextData = QByteArray();
        } else if (variant == 2) {
            values.id = QUuid::createUuid();
            values.title = QStringLiteral("Über den Fluss");
            values.titleNormalized = QStringLiteral("ueber den fluss");
            values.text = QStringLiteral("Zeile eins\n\nZeile zwei 🌙");
            values.richTextData = QByteArray("{\\rtf1\0binary", 13);
            values.category = QStringLiteral("Lyrik");
            values.date = at(8, 30, 15).addMSecs(250);
            values.writerNotes = QStringLiteral("Notiz");
            values.isPublished = true;
            values.inPodcast = true;
            values.externalId = QStringLiteral("ext-1");
            values.createdAt = at(9);
            values.updatedAt = at(10);
            values.deletedAt = at(11);
        }
        {
            auto controller = openStore(path);
            QVERIFY(controller);
            controller->viewContext().insertPoem()->setValues(values);
            QVERIFY(controller->viewContext().save().ok());
        }
        auto reopened = openStore(path);
        QVERIFY(reopened);
        const auto poems = reopened->viewContext().fetch();
        QCOMPARE(poems.size(), 1);
        const PoemValues &loaded = poems.first()->values();
        QCOMPARE(loaded.title.has_value(), values.title.has_value());
        QCOMPARE(loaded.richTextData.has_value(), values.richTextData.has_value());
        QVERIFY(loaded == values);
        QVERIFY(!reopened->viewContext().hasChanges());
    }

    void fetchSeesUnsavedChangesAndOrdersStably()
    {
        auto controller = PersistenceController::inMemory();
        ArchiveContext &context = controller->viewContext();
        for (const char *title : {"b", "a", "b", "c"})
            context.insertPoem()->setTitle(QString::fromLatin1(title));
        const auto poems = context.fetch([](const Poem &p) { return p.title() != QStringLiteral("c"); },
                                         [](const Poem &a, const Poem &b) { return *a.title() < *b.title(); });
        QCOMPARE(poems.size(), 3);
        QCOMPARE(*poems.at(0)->title(), QStringLiteral("a"));
        QVERIFY(poems.at(1)->storeKey() < poems.at(2)->storeKey());
        QVERIFY(context.hasChanges());
    }

    void rollbackReturnsEveryPoemToItsSavedState()
    {
        auto controller = PersistenceController::inMemory();
        ArchiveContext &context = controller->viewContext();
        PoemPtr kept = context.insertPoem();
        kept->setTitle(QStringLiteral("Saved"));
        PoemPtr doomed = context.insertPoem();
        QVERIFY(context.save().ok());

        kept->setTitle(QStringLiteral("Changed"));
        context.deletePoem(doomed);
        context.insertPoem()->setTitle(QStringLiteral("New"));
        QCOMPARE(context.fetch().size(), 2);
        context.rollback();

        QVERIFY(!context.hasChanges());
        QCOMPARE(*kept->title(), QStringLiteral("Saved"));
        const auto poems = context.fetch();
        QCOMPARE(poems.size(), 2);
        QVERIFY(poems.contains(doomed));
        QVERIFY(context.poemWithObjectID(doomed->objectID()) == doomed);
    }

    void failedSaveWritesNothingAndKeepsTheChanges()
    {
        const QString path = storePath("failing.sqlite");
        auto controller = openStore(path);
        QVERIFY(controller);
        ArchiveContext &context = controller->viewContext();
        PoemPtr first = context.insertPoem();
        first->setTitle(QStringLiteral("Eins"));
        QVERIFY(context.save().ok());

        // The second insert of the transaction fails after the update has run.
        executeOnStore(path, "CREATE TRIGGER refuse BEFORE INSERT ON poem WHEN NEW.title = 'Drei' "
                             "BEGIN SELECT RAISE(ABORT, 'disk says no'); END");
        first->setTitle(QStringLiteral("Eins geändert"));
        context.insertPoem()->setTitle(QStringLiteral("Zwei"));
        context.insertPoem()->setTitle(QStringLiteral("Drei"));
        const auto failed = context.save();
        QVERIFY(!failed.ok());
        QVERIFY(failed.errorMessage().contains(QStringLiteral("disk says no")));
        QVERIFY(context.hasChanges());
        {
            auto other = openStore(path);
            QVERIFY(other);
            const auto stored = other->viewContext().fetch();
            QCOMPARE(stored.size(), 1);
            QCOMPARE(*stored.first()->title(), QStringLiteral("Eins"));
        }

        executeOnStore(path, "DROP TRIGGER refuse");
        QVERIFY(context.save().ok());
        auto reopened = openStore(path);
        QCOMPARE(reopened->viewContext().fetch().size(), 3);
    }

    void deletedPoemIsGoneAfterSave()
    {
        const QString path = storePath("delete.sqlite");
        {
            auto controller = openStore(path);
            ArchiveContext &context = controller->viewContext();
            PoemPtr poem = context.insertPoem();
            QVERIFY(context.save().ok());
            context.deletePoem(poem);
            QVERIFY(context.hasChanges());
            QVERIFY(context.save().ok());
        }
        QCOMPARE(openStore(path)->viewContext().fetch().size(), 0);
    }

    void previousSchemaVersionIsMigratedWithoutLosingRows()
    {
        const QString path = storePath("version1.sqlite");
        executeOnStore(path,
                       "CREATE TABLE poem (pk INTEGER PRIMARY KEY, id TEXT, title TEXT, title_normalized TEXT, "
                       "text TEXT, rich_text_data BLOB, category TEXT, date INTEGER, "
                       "is_published INTEGER NOT NULL DEFAULT 0, external_id TEXT, created_at INTEGER, "
                       "updated_at INTEGER, deleted_at INTEGER);"
                       "INSERT INTO poem (pk, id, title, title_normalized, text, is_published, updated_at) VALUES "
                       "(7, '6F1C2A53-3D0E-4E43-9C7B-0B6E2B4D1A11', 'Herbst', 'herbst', 'Blätter', 1, 1763100000000),"
                       "(9, NULL, '', '', NULL, 0, NULL);"
                       "PRAGMA user_version=1;");
        auto controller = openStore(path);
        QVERIFY(controller);
        const auto poems = controller->viewContext().fetch();
        QCOMPARE(poems.size(), 2);
        const Poem &herbst = *poems.first();
        QCOMPARE(uuidText(*herbst.id()), QStringLiteral("6F1C2A53-3D0E-4E43-9C7B-0B6E2B4D1A11"));
        QCOMPARE(*herbst.text(), QStringLiteral("Blätter"));
        QVERIFY(herbst.isPublished());
        QVERIFY(!herbst.inPodcast());
        QVERIFY(!herbst.writerNotes().has_value());
        QCOMPARE(herbst.updatedAt()->toMSecsSinceEpoch(), 1763100000000);
        QVERIFY(!poems.last()->id().has_value());

        // The migrated file carries the new columns and takes new values.
        poems.last()->setWriterNotes(QStringLiteral("neu"));
        QVERIFY(controller->viewContext().save().ok());
        controller.reset();
        QCOMPARE(*openStore(path)->viewContext().fetch().last()->writerNotes(), QStringLiteral("neu"));
    }

    void unreadableFilesAreRefusedAndLeftUntouched_data()
    {
        QTest::addColumn<QByteArray>("sql");
        QTest::addColumn<QByteArray>("garbage");
        QTest::addColumn<QString>("reason");
        QTest::newRow("not a database") << QByteArray() << QByteArray(8192, 'x')
                                        << QStringLiteral("Die Datenbankdatei ist beschädigt");
        QTest::newRow("newer schema") << QByteArray(
                                             "CREATE TABLE poem (pk INTEGER PRIMARY KEY); PRAGMA user_version=9;")
                                      << QByteArray() << QStringLiteral("neueren Version");
        QTest::newRow("foreign database")
            << QByteArray("CREATE TABLE notes (x TEXT);") << QByteArray() << QStringLiteral("kein OdeLeaf-Archiv");
    }

    void unreadableFilesAreRefusedAndLeftUntouched()
    {
        QFETCH(QByteArray, sql);
        QFETCH(QByteArray, garbage);
        QFETCH(QString, reason);
        const QString path = storePath("bad.sqlite") + QString::fromLatin1(QTest::currentDataTag()).remove(' ');
        if (!garbage.isEmpty()) {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(garbage);
        } else {
            executeOnStore(path, sql.constData());
        }
        const QByteArray before = fileHash(path);
        const auto opened = PersistenceController::open(path);
        QVERIFY(!opened.ok());
        QVERIFY2(opened.errorMessage().startsWith(QStringLiteral("Archiv konnte nicht geöffnet werden: ")),
                 qPrintable(opened.errorMessage()));
        QVERIFY2(opened.errorMessage().contains(reason), qPrintable(opened.errorMessage()));
        QVERIFY(opened.errorMessage().contains(path));
        QCOMPARE(fileHash(path), before);
        QVERIFY(!QFile::exists(path + QStringLiteral("-wal")));
    }

    // SQLite's English must not reach the poet: a full disk is said in German.
    void saveOnAFullDiskSaysSoInGerman()
    {
        TmpfsMount disk(1 << 20);
        if (!disk.isMounted())
            QSKIP(TmpfsMount::skipReason());
        const QString path = disk.filePath(QStringLiteral("OdeLeaf.sqlite"));
        auto controller = openStore(path);
        QVERIFY(controller);
        ArchiveContext &context = controller->viewContext();
        PoemFactory::makeNewPoem(context, at(9))->setText(QStringLiteral("Erste Strophe"));
        QVERIFY(context.save().ok());
        QVERIFY(disk.leaveFree(0));
        PoemFactory::makeNewPoem(context, at(10))->setText(QString(300000, QLatin1Char('w')));
        const auto saved = context.save();
        QVERIFY(!saved.ok());
        QVERIFY2(saved.errorMessage().startsWith(QStringLiteral("Nicht genug Speicherplatz")),
                 qPrintable(saved.errorMessage()));
        QVERIFY(context.hasChanges());
    }

    void newPoemStartsWithEmptyTitleAndNilText()
    {
        auto controller = PersistenceController::inMemory();
        const QDateTime now = at(12);
        PoemPtr poem = PoemFactory::makeNewPoem(controller->viewContext(), now);
        QVERIFY(poem->id().has_value());
        QCOMPARE(poem->title(), std::optional<QString>(QString()));
        QCOMPARE(poem->titleNormalized(), std::optional<QString>(QString()));
        QVERIFY(!poem->text() && !poem->category() && !poem->richTextData() && !poem->writerNotes());
        QVERIFY(!poem->externalId() && !poem->deletedAt());
        QCOMPARE(*poem->date(), now);
        QCOMPARE(*poem->createdAt(), now);
        QCOMPARE(*poem->updatedAt(), now);
        QVERIFY(!poem->isPublished() && !poem->inPodcast());
    }

    void duplicateCopiesTheWorkButNotNotesOrOrigin()
    {
        auto controller = PersistenceController::inMemory();
        ArchiveContext &context = controller->viewContext();
        PoemPtr source = PoemFactory::makeNewPoem(context, at(1));
        PoemEdit::setTitle(*source, QStringLiteral("  Herbst "));
        source->setText(QStringLiteral("Text"));
        source->setRichTextData(QByteArray("rich"));
        source->setCategory(QStringLiteral("Lyrik"));
        source->setWriterNotes(QStringLiteral("privat"));
        source->setExternalId(QStringLiteral("x"));
        source->setPublished(true);

        PoemPtr copy = PoemFactory::makeDuplicate(context, *source, at(2));
        QCOMPARE(*copy->title(), QStringLiteral("Herbst Kopie"));
        QCOMPARE(*copy->titleNormalized(), QStringLiteral("herbst kopie"));
        QVERIFY(copy->id() != source->id());
        QCOMPARE(copy->text(), source->text());
        QCOMPARE(copy->richTextData(), source->richTextData());
        QCOMPARE(copy->category(), source->category());
        QCOMPARE(copy->date(), source->date());
        QVERIFY(copy->isPublished());
        QVERIFY(!copy->writerNotes() && !copy->externalId());
        QCOMPARE(*copy->createdAt(), at(2));

        QCOMPARE(*PoemFactory::makeDuplicate(context, *copy, at(3))->title(), QStringLiteral("Herbst Kopie Kopie"));
        source->setTitle(QStringLiteral(" \n "));
        QCOMPARE(*PoemFactory::makeDuplicate(context, *source, at(3))->title(), QStringLiteral("Gedicht Kopie"));
        source->setTitle(std::nullopt);
        QCOMPARE(*PoemFactory::makeDuplicate(context, *source, at(3))->title(), QStringLiteral("Gedicht Kopie"));
    }

    void editsStampAndSaveButOnlyTitleChangesTheKey()
    {
        const QString path = storePath("edit.sqlite");
        auto controller = openStore(path);
        ArchiveContext &context = controller->viewContext();
        PoemPtr poem = PoemFactory::makeNewPoem(context, at(1));
        QVERIFY(context.save().ok());
        poem->setTitleNormalized(QStringLiteral("stale key"));

        QVERIFY(PoemEdit::apply(
                    context, *poem, [](Poem &p) { p.setPublished(true); }, at(2))
                    .ok());
        QCOMPARE(*poem->titleNormalized(), QStringLiteral("stale key"));
        QCOMPARE(*poem->updatedAt(), at(2));
        QVERIFY(!context.hasChanges());

        QVERIFY(PoemEdit::apply(
                    context, *poem, [](Poem &p) { PoemEdit::setTitle(p, QStringLiteral("Straße_2")); }, at(3))
                    .ok());
        QCOMPARE(*poem->titleNormalized(), QStringLiteral("strasse 2"));
        QCOMPARE(*openStore(path)->viewContext().fetch().first()->updatedAt(), at(3));
    }
};

QTEST_GUILESS_MAIN(ArchiveStoreTest)
#include "tst_archivestore.moc"
