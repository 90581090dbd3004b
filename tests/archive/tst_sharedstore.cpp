#include "StoreFaults.h"

#include "archive/ArchiveContext.h"
#include "archive/PersistenceController.h"
#include "archive/PoemEdit.h"
#include "archive/PoemMerge.h"
#include "backup/Backup.h"
#include "backup/RestorePlanner.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

#include <thread>

// Two controllers on one file are two writers, as a script and the window are: separate
// connections, separate contexts.
namespace {

QDateTime at(int minute)
{
    return QDateTime(QDate(2026, 11, 22), QTime(10, minute), Qt::UTC);
}

PoemValues titled(const QString &title)
{
    PoemValues values;
    values.id = QUuid::createUuid();
    values.title = title;
    values.titleNormalized = title.toLower();
    values.updatedAt = at(0);
    return values;
}

PoemPtr onlyPoemTitled(ArchiveContext &context, const QString &title)
{
    const auto found = context.fetch([&title](const Poem &p) { return p.title() == title; });
    return found.size() == 1 ? found.first() : nullptr;
}

} // namespace

class SharedStoreTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_path;

    std::unique_ptr<PersistenceController> open()
    {
        auto opened = PersistenceController::open(m_path);
        if (!opened)
            qWarning() << opened.errorMessage();
        return opened ? std::move(opened.value()) : nullptr;
    }

    // One saved poem, then two writers that both have it loaded.
    std::pair<std::unique_ptr<PersistenceController>, std::unique_ptr<PersistenceController>>
    twoWritersOn(const PoemValues &values)
    {
        auto first = open();
        first->viewContext().insertPoem()->setValues(values);
        if (!first->viewContext().save())
            return {};
        return {std::move(first), open()};
    }

private Q_SLOTS:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        m_path = m_dir->filePath(QStringLiteral("OdeLeaf.sqlite"));
    }

    void newPoemsOfTwoWritersAreAllKept()
    {
        auto [a, b] = twoWritersOn(titled(QStringLiteral("Alt")));
        QVERIFY(a && b);
        PoemPtr fromA = a->viewContext().insertPoem();
        fromA->setTitle(QStringLiteral("Von A"));
        const QString idBeforeSave = fromA->objectID();
        b->viewContext().insertPoem()->setTitle(QStringLiteral("Von B"));
        QVERIFY(a->viewContext().save().ok());
        const auto savedB = b->viewContext().save();
        QVERIFY2(savedB.ok(), qPrintable(savedB.errorMessage()));

        // Views hold a poem by its object id: saving must not change it.
        QCOMPARE(fromA->objectID(), idBeforeSave);
        QVERIFY(a->viewContext().poemWithObjectID(idBeforeSave) == fromA);
        QCOMPARE(open()->viewContext().fetch().size(), 3);
    }

    void changesOfDifferentAttributesAreMerged()
    {
        auto [a, b] = twoWritersOn(titled(QStringLiteral("Herbst")));
        QVERIFY(a && b);
        PoemPtr inA = a->viewContext().fetch().first();
        PoemPtr inB = b->viewContext().fetch().first();
        QVERIFY(PoemEdit::apply(
                    a->viewContext(), *inA, [](Poem &p) { PoemEdit::setTitle(p, QStringLiteral("Winter")); }, at(5))
                    .ok());
        // B's edit is stamped earlier than A's although it is saved later.
        const auto saved = PoemEdit::apply(
            b->viewContext(), *inB, [](Poem &p) { p.setWriterNotes(QStringLiteral("Notiz von B")); }, at(3));
        QVERIFY2(saved.ok(), qPrintable(saved.errorMessage()));

        QCOMPARE(*inB->title(), QStringLiteral("Winter"));
        QVERIFY(!b->viewContext().hasChanges());
        const PoemPtr stored = open()->viewContext().fetch().first();
        QCOMPARE(*stored->title(), QStringLiteral("Winter"));
        QCOMPARE(*stored->titleNormalized(), QStringLiteral("winter"));
        QCOMPARE(*stored->writerNotes(), QStringLiteral("Notiz von B"));
        QCOMPARE(*stored->updatedAt(), at(5));
    }

    void sameAttributeChangedTwiceIsReportedNotOverwritten()
    {
        auto [a, b] = twoWritersOn(titled(QStringLiteral("Herbst")));
        QVERIFY(a && b);
        PoemPtr inA = a->viewContext().fetch().first();
        PoemPtr inB = b->viewContext().fetch().first();
        inA->setText(QStringLiteral("Fassung A"));
        QVERIFY(a->viewContext().save().ok());
        inB->setText(QStringLiteral("Fassung B"));
        inB->setCategory(QStringLiteral("Lyrik"));

        const auto failed = b->viewContext().save();
        QVERIFY(!failed.ok());
        QVERIFY2(failed.errorMessage().contains(QStringLiteral("„Herbst“")), qPrintable(failed.errorMessage()));
        QVERIFY(failed.errorMessage().contains(QStringLiteral("(Text)")));
        QCOMPARE(*open()->viewContext().fetch().first()->text(), QStringLiteral("Fassung A"));
        QCOMPARE(*inB->text(), QStringLiteral("Fassung B"));
        QVERIFY(b->viewContext().hasChanges());

        // Told once, the writer who saves again keeps their version.
        QVERIFY(b->viewContext().save().ok());
        const PoemPtr stored = open()->viewContext().fetch().first();
        QCOMPARE(*stored->text(), QStringLiteral("Fassung B"));
        QCOMPARE(*stored->category(), QStringLiteral("Lyrik"));

        // Rolling back after such a failure returns to the other writer's version.
        inA->setText(QStringLiteral("Fassung A2"));
        QVERIFY(!a->viewContext().save().ok());
        a->viewContext().rollback();
        QCOMPARE(*inA->text(), QStringLiteral("Fassung B"));
    }

    void equalChangesOnBothSidesAreNoConflict()
    {
        const PoemValues base = titled(QStringLiteral("Herbst"));
        PoemValues local = base;
        local.isPublished = true;
        local.updatedAt = at(2);
        PoemValues stored = base;
        stored.isPublished = true;
        stored.category = QStringLiteral("Lyrik");
        stored.updatedAt = at(4);
        const PoemMerge::Outcome merged = PoemMerge::merge(base, local, stored);
        QVERIFY(merged.conflicts.none());
        QVERIFY(merged.toWrite.none());
        QCOMPARE(merged.merged, stored);

        local.updatedAt = at(6);
        local.deletedAt = at(6);
        const PoemMerge::Outcome later = PoemMerge::merge(base, local, stored);
        QVERIFY(later.conflicts.none());
        QCOMPARE(later.toWrite.count(), size_t(2));
        QCOMPARE(*later.merged.category, QStringLiteral("Lyrik"));
        QCOMPARE(*later.merged.updatedAt, at(6));
    }

    void poemDeletedElsewhereIsReportedThenCreatedAgain()
    {
        auto [a, b] = twoWritersOn(titled(QStringLiteral("Herbst")));
        QVERIFY(a && b);
        a->viewContext().deletePoem(a->viewContext().fetch().first());
        QVERIFY(a->viewContext().save().ok());

        PoemPtr inB = b->viewContext().fetch().first();
        inB->setText(QStringLiteral("noch gebraucht"));
        const auto failed = b->viewContext().save();
        QVERIFY(!failed.ok());
        QVERIFY2(failed.errorMessage().contains(QStringLiteral("endgültig gelöscht")),
                 qPrintable(failed.errorMessage()));
        QCOMPARE(open()->viewContext().fetch().size(), 0);

        QVERIFY(b->viewContext().save().ok());
        const auto stored = open()->viewContext().fetch();
        QCOMPARE(stored.size(), 1);
        QCOMPARE(*stored.first()->text(), QStringLiteral("noch gebraucht"));
        QCOMPARE(stored.first()->id(), inB->id());
    }

    void finalDeletionOfAPoemChangedElsewhereWaitsForASecondTry()
    {
        auto [a, b] = twoWritersOn(titled(QStringLiteral("Herbst")));
        QVERIFY(a && b);
        PoemPtr inA = a->viewContext().fetch().first();
        inA->setText(QStringLiteral("gerettet"));
        QVERIFY(a->viewContext().save().ok());

        b->viewContext().deletePoem(b->viewContext().fetch().first());
        QVERIFY(!b->viewContext().save().ok());
        QCOMPARE(open()->viewContext().fetch().size(), 1);
        QVERIFY(b->viewContext().save().ok());
        QCOMPARE(open()->viewContext().fetch().size(), 0);
    }

    void refreshTakesOverWhatAnotherWriterStored()
    {
        auto [a, b] = twoWritersOn(titled(QStringLiteral("Herbst")));
        QVERIFY(a && b);
        a->viewContext().insertPoem()->setValues(titled(QStringLiteral("Gone")));
        QVERIFY(a->viewContext().save().ok());
        QVERIFY(b->viewContext().refreshFromStore().ok());
        PoemPtr goneInB = onlyPoemTitled(b->viewContext(), QStringLiteral("Gone"));
        QVERIFY(goneInB);

        PoemPtr edited = b->viewContext().fetch().first();
        PoemPtr typing = b->viewContext().insertPoem(); // unsaved here, keeps its key
        typing->setTitle(QStringLiteral("Entwurf"));
        const QString typingID = typing->objectID();

        ArchiveContext &inA = a->viewContext();
        onlyPoemTitled(inA, QStringLiteral("Herbst"))->setCategory(QStringLiteral("Lyrik"));
        inA.deletePoem(onlyPoemTitled(inA, QStringLiteral("Gone")));
        inA.insertPoem()->setValues(titled(QStringLiteral("Neu")));
        QVERIFY(inA.save().ok());

        QSignalSpy changed(&b->viewContext(), &ArchiveContext::contextDidChange);
        const auto refreshed = b->viewContext().refreshFromStore();
        QVERIFY2(refreshed.ok(), qPrintable(refreshed.errorMessage()));
        QVERIFY(*refreshed);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(*edited->category(), QStringLiteral("Lyrik"));
        const PoemPtr added = onlyPoemTitled(b->viewContext(), QStringLiteral("Neu"));
        QVERIFY(added);
        QCOMPARE(changed.at(0).at(0).value<QSet<qint64>>(),
                 (QSet<qint64>{edited->storeKey(), added->storeKey(), goneInB->storeKey()}));
        QVERIFY(!onlyPoemTitled(b->viewContext(), QStringLiteral("Gone")));
        QVERIFY(goneInB->context() == nullptr);
        QVERIFY(b->viewContext().poemWithObjectID(typingID) == typing);
        QVERIFY(b->viewContext().hasChanges());

        // Nothing new: no second signal.
        QCOMPARE(*b->viewContext().refreshFromStore(), false);
        QVERIFY(b->viewContext().save().ok());
        QCOMPARE(*b->viewContext().refreshFromStore(), false);
        QCOMPARE(changed.count(), 2); // the save's own
        QCOMPARE(open()->viewContext().fetch().size(), 3);
    }

    void refreshLeavesAPoemWithUnsavedChangesToItsSave()
    {
        auto [a, b] = twoWritersOn(titled(QStringLiteral("Herbst")));
        QVERIFY(a && b);
        PoemPtr inB = b->viewContext().fetch().first();
        inB->setWriterNotes(QStringLiteral("ungespeichert"));
        a->viewContext().fetch().first()->setWriterNotes(QStringLiteral("von A"));
        a->viewContext().fetch().first()->setPublished(true);
        QVERIFY(a->viewContext().save().ok());

        QVERIFY(b->viewContext().refreshFromStore().ok());
        QCOMPARE(*inB->writerNotes(), QStringLiteral("ungespeichert"));
        QVERIFY(!inB->isPublished());
        QVERIFY(!b->viewContext().save().ok()); // both changed the notes
        QVERIFY(inB->isPublished());
    }

    void migratedStoreNeverHandsOutAKeyTwice()
    {
        executeOnStore(m_path, "CREATE TABLE poem (pk INTEGER PRIMARY KEY, id TEXT, title TEXT, title_normalized TEXT, "
                               "text TEXT, rich_text_data BLOB, category TEXT, date INTEGER, writer_notes TEXT, "
                               "is_published INTEGER NOT NULL DEFAULT 0, in_podcast INTEGER NOT NULL DEFAULT 0, "
                               "external_id TEXT, created_at INTEGER, updated_at INTEGER, deleted_at INTEGER);"
                               "INSERT INTO poem (pk, title, text, writer_notes, in_podcast) VALUES "
                               "(3, 'Drei', 'Text drei', 'Notiz', 1), (8, 'Acht', NULL, NULL, 0);"
                               "PRAGMA user_version=2;");
        {
            auto controller = open();
            QVERIFY(controller);
            const auto poems = controller->viewContext().fetch();
            QCOMPARE(poems.size(), 2);
            QCOMPARE(poems.first()->storeKey(), 3);
            QCOMPARE(*poems.first()->writerNotes(), QStringLiteral("Notiz"));
            QVERIFY(poems.first()->inPodcast());
            controller->viewContext().deletePoem(poems.last());
            QVERIFY(controller->viewContext().save().ok());
        }
        {
            auto controller = open();
            controller->viewContext().insertPoem()->setTitle(QStringLiteral("Neu"));
            QVERIFY(controller->viewContext().save().ok());
        }
        const auto poems = open()->viewContext().fetch();
        QCOMPARE(poems.size(), 2);
        QCOMPARE(*poems.last()->title(), QStringLiteral("Neu"));
        QVERIFY(poems.last()->storeKey() > 8);
    }

    void writerWaitsForAnotherWritersBatch()
    {
        auto controller = open();
        QVERIFY(controller);
        sqlite3 *other = nullptr;
        QCOMPARE(sqlite3_open(m_path.toUtf8().constData(), &other), SQLITE_OK);
        QCOMPARE(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
        // A long batch elsewhere: longer than a short busy timeout would wait.
        std::thread batch([other] {
            std::this_thread::sleep_for(std::chrono::milliseconds(3500));
            sqlite3_exec(other, "COMMIT", nullptr, nullptr, nullptr);
        });
        controller->viewContext().insertPoem()->setTitle(QStringLiteral("wartet"));
        const auto saved = controller->viewContext().save();
        batch.join();
        sqlite3_close(other);
        QVERIFY2(saved.ok(), qPrintable(saved.errorMessage()));
    }

    void aRestoreIsStoredWholeOrNotAtAll()
    {
        auto controller = open();
        QVERIFY(controller);
        const int total = 1100;
        Backup backup;
        for (int i = 0; i < total; ++i) {
            PoemBackup entry;
            entry.id = QUuid::createUuid();
            entry.title = QStringLiteral("Gedicht %1").arg(i);
            backup.poems.append(entry);
        }
        // The disk gives out near the end: not one poem of the restore may be stored.
        executeOnStore(m_path, "CREATE TRIGGER refuse BEFORE INSERT ON poem WHEN NEW.title = 'Gedicht 1050' "
                               "BEGIN SELECT RAISE(ABORT, 'voll'); END");
        const auto restored = RestorePlanner::restore(backup, controller->viewContext(), RestoreMode::addMissing);
        QVERIFY(!restored.ok());
        QCOMPARE(open()->viewContext().fetch().size(), 0);

        executeOnStore(m_path, "DROP TRIGGER refuse");
        QVERIFY(controller->viewContext().save().ok());
        QCOMPARE(open()->viewContext().fetch().size(), total);
    }
};

QTEST_GUILESS_MAIN(SharedStoreTest)
#include "tst_sharedstore.moc"
