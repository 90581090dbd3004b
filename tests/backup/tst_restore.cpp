#include "BackupTestSupport.h"
#include "TmpfsMount.h"

#include "archive/ApplicationSupport.h"
#include "archive/PersistenceController.h"
#include "backup/BackupEncoder.h"
#include "backup/BackupExporter.h"
#include "backup/BackupReader.h"
#include "backup/BackupStatus.h"
#include "backup/RestorePlanner.h"

#include <QBuffer>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace BackupTestSupport;

namespace {

const QDateTime exportTime = utc(2026, 11, 14, 21, 3, 47);

PoemBackup entry(const QString &title, const QString &text, std::optional<QUuid> id = std::nullopt)
{
    PoemBackup result;
    result.id = id;
    result.objectURI = QStringLiteral("x-odeleaf://archive/Poem/p99");
    result.title = title;
    result.titleNormalized = title.toLower();
    result.text = text;
    result.createdAt = utc(2025, 1, 2, 3, 4, 5);
    result.updatedAt = utc(2026, 1, 2, 3, 4, 5);
    return result;
}

Backup backupOf(const QList<PoemBackup> &entries, const QDateTime &exportedAt = exportTime)
{
    Backup backup;
    backup.app = Backup::appName();
    backup.schemaVersion = Backup::currentSchemaVersion;
    backup.exportedAt = exportedAt;
    backup.poems = entries;
    backup.poemCount = entries.size();
    return backup;
}

// A local poem that equals the entry in every field.
PoemPtr localCopy(ArchiveContext &context, const PoemBackup &source)
{
    PoemPtr poem = context.insertPoem();
    source.apply(*poem);
    return poem;
}

} // namespace

class RestoreTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<TestArchive> m_archive;

    ArchiveContext &context() { return m_archive->context(); }

    void saveArchive() { QVERIFY(context().save().ok()); }

private Q_SLOTS:
    void init() { m_archive = std::make_unique<TestArchive>(); }

    void backupOfTheSameArchivePreviewsAsNoChanges()
    {
        const QDateTime now = utc(2026, 11, 14, 21, 3, 47, 700);
        addPoem(context(), QStringLiteral("Herbst"), now.addMSecs(-400));
        addPoem(context(), QStringLiteral("Winter"), now.addMSecs(-900))->setDeletedAt(now.addMSecs(-900));
        PoemPtr withoutId = addPoem(context(), QStringLiteral("Ohne Kennung"), now.addDays(-1));
        withoutId->setId(std::nullopt);
        saveArchive();
        const QString path = m_archive->path(QStringLiteral("jetzt.json"));
        QVERIFY(BackupExporter::writeBackup(context().fetch(), path, now).ok());

        const auto preview = RestorePlanner::previewRestore(path, context().fetch());
        QVERIFY2(preview.ok(), qPrintable(preview.errorMessage()));
        QCOMPARE(preview->localCount, 3);
        QCOMPARE(preview->identicalCount, 3);
        QCOMPARE(preview->createCount, 0);
        QCOMPARE(preview->updateCount, 0);
        QCOMPARE(preview->localOnlyCount, 0);
        QCOMPARE(preview->backupDeletedCount, 1);
        QCOMPARE(preview->localDeletedCount, 1);
        QVERIFY(!preview->hasChanges());
        QCOMPARE(preview->statusTitle(), QStringLiteral("Keine Änderungen nötig"));
        QCOMPARE(preview->statusText(), QStringLiteral("Dieses Backup entspricht bereits deinem aktuellen Archiv."));

        // "Sicherheitskopie erstellen": the restore writes only the safety copy.
        const auto restored =
            RestorePlanner::restoreWithSafetyBackup(preview->backup, context(), RestoreMode::addMissingAndUpdate, now);
        QVERIFY(restored.ok());
        QCOMPARE(restored->counts.created + restored->counts.updated, 0);
        QVERIFY(QFileInfo(restored->safetyBackupPath).fileName().startsWith(QStringLiteral("pre-restore-")));
        QCOMPARE(context().fetch().size(), 3);
    }

    void datesLessThanASecondApartAreTheSame()
    {
        const QDateTime t = utc(2026, 1, 1, 12, 0, 0);
        QVERIFY(PoemBackup::sameDate(t, t.addMSecs(900)));
        QVERIFY(PoemBackup::sameDate(t.addMSecs(900), t));
        QVERIFY(!PoemBackup::sameDate(t, t.addMSecs(1000)));
        QVERIFY(!PoemBackup::sameDate(t.addMSecs(-1000), t));
        QVERIFY(PoemBackup::sameDate(std::nullopt, std::nullopt));
        QVERIFY(!PoemBackup::sameDate(t, std::nullopt));

        const PoemBackup source = entry(QStringLiteral("Herbst"), QStringLiteral("Laub"), QUuid::createUuid());
        PoemPtr local = localCopy(context(), source);
        local->setUpdatedAt(source.updatedAt->addMSecs(900));
        QCOMPARE(RestorePlanner::preview(backupOf({source}), context().fetch()).identicalCount, 1);
        local->setUpdatedAt(source.updatedAt->addMSecs(1000));
        QCOMPARE(RestorePlanner::preview(backupOf({source}), context().fetch()).updateCount, 1);
    }

    void matchKeys()
    {
        const QUuid id = QUuid::fromString(QStringLiteral("6f1c2a53-3d0e-4e43-9c7b-0b6e2b4d1a11"));
        PoemBackup source = entry(QStringLiteral("Herbst"), QString(), id);
        QCOMPARE(RestorePlanner::matchKey(source), QStringLiteral("id:6F1C2A53-3D0E-4E43-9C7B-0B6E2B4D1A11"));
        source.id.reset();
        source.titleNormalized = QStringLiteral(" herbst wind \n");
        QCOMPARE(RestorePlanner::matchKey(source), QStringLiteral("title:herbst wind"));
        source.titleNormalized = QStringLiteral("  ");
        source.title = QStringLiteral("  Herbst WIND ");
        QCOMPARE(RestorePlanner::matchKey(source), QStringLiteral("title:herbst wind"));
        source.title.reset();
        QCOMPARE(RestorePlanner::matchKey(source), std::nullopt);

        PoemPtr local = context().insertPoem();
        local->setTitle(QStringLiteral("Herbst Wind"));
        QCOMPARE(RestorePlanner::matchKey(*local), QStringLiteral("title:herbst wind"));
    }

    void aPoemWithAnIdNeverMatchesByTitle()
    {
        PoemPtr local = context().insertPoem();
        local->setTitle(QStringLiteral("Herbst"));
        local->setTitleNormalized(QStringLiteral("herbst"));
        local->setText(QStringLiteral("lokal"));
        saveArchive();
        const PoemBackup byTitle = entry(QStringLiteral("Herbst"), QStringLiteral("aus dem Backup"));
        const PoemBackup withId =
            entry(QStringLiteral("Herbst"), QStringLiteral("anderes Gedicht"), QUuid::createUuid());
        const Backup backup = backupOf({byTitle, withId});

        const RestorePreview preview = RestorePlanner::preview(backup, context().fetch());
        QCOMPARE(preview.updateCount, 1);
        QCOMPARE(preview.createCount, 1);

        const auto restored = RestorePlanner::restore(backup, context(), RestoreMode::addMissingAndUpdate);
        QCOMPARE(restored->created, 1);
        QCOMPARE(restored->updated, 1);
        QCOMPARE(local->text(), std::optional<QString>(QStringLiteral("aus dem Backup")));
        // Neither side had an id, so the updated poem gets a new one.
        QVERIFY(local->id().has_value());
        QVERIFY(context().poemWithID(*withId.id));
        QVERIFY(!context().hasChanges());
    }

    void onlyTheFirstOfTwoLocalPoemsWithOneKeyIsUpdated()
    {
        const PoemBackup source = entry(QStringLiteral("Herbst"), QStringLiteral("neu"));
        PoemPtr first = localCopy(context(), source);
        PoemPtr second = localCopy(context(), source);
        for (const PoemPtr &poem : {first, second})
            poem->setId(std::nullopt);
        first->setText(QStringLiteral("erste"));
        second->setText(QStringLiteral("zweite"));
        saveArchive();

        const RestorePreview preview = RestorePlanner::preview(backupOf({source}), context().fetch());
        QCOMPARE(preview.updateCount, 1);
        QCOMPARE(preview.localOnlyCount, 0);
        const auto restored = RestorePlanner::restore(backupOf({source}), context(), RestoreMode::addMissingAndUpdate);
        QCOMPARE(restored->updated, 1);
        QCOMPARE(first->text(), std::optional<QString>(QStringLiteral("neu")));
        QCOMPARE(second->text(), std::optional<QString>(QStringLiteral("zweite")));
    }

    void twoEntriesWithOneId_data()
    {
        QTest::addColumn<RestoreMode>("mode");
        QTest::addColumn<QString>("secondText");
        QTest::addColumn<int>("updated");
        QTest::addColumn<QString>("finalText");
        QTest::newRow("add missing") << RestoreMode::addMissing << QStringLiteral("zweite Fassung") << 0
                                     << QStringLiteral("erste Fassung");
        QTest::newRow("update, differing") << RestoreMode::addMissingAndUpdate << QStringLiteral("zweite Fassung") << 1
                                           << QStringLiteral("zweite Fassung");
        QTest::newRow("update, identical") << RestoreMode::addMissingAndUpdate << QStringLiteral("erste Fassung") << 0
                                           << QStringLiteral("erste Fassung");
    }

    void twoEntriesWithOneId()
    {
        QFETCH(RestoreMode, mode);
        QFETCH(QString, secondText);
        QFETCH(int, updated);
        QFETCH(QString, finalText);
        const QUuid id = QUuid::createUuid();
        const Backup backup = backupOf({entry(QStringLiteral("Herbst"), QStringLiteral("erste Fassung"), id),
                                        entry(QStringLiteral("Herbst"), secondText, id)});
        // The preview works on the unchanged archive and counts both as additions.
        QCOMPARE(RestorePlanner::preview(backup, context().fetch()).createCount, 2);

        const auto restored = RestorePlanner::restore(backup, context(), mode);
        QVERIFY(restored.ok());
        QCOMPARE(restored->created, 1);
        QCOMPARE(restored->updated, updated);
        QCOMPARE(context().fetch().size(), 1);
        QCOMPARE(context().poemWithID(id)->text(), std::optional<QString>(finalText));
    }

    void addMissingLeavesDifferingPoemsAlone()
    {
        const PoemBackup known =
            entry(QStringLiteral("Herbst"), QStringLiteral("Fassung im Backup"), QUuid::createUuid());
        PoemPtr local = localCopy(context(), known);
        local->setText(QStringLiteral("lokale Fassung"));
        saveArchive();
        const PoemBackup missing = entry(QStringLiteral("Winter"), QStringLiteral("Schnee"), QUuid::createUuid());
        const Backup backup = backupOf({known, missing});

        const RestorePreview preview = RestorePlanner::preview(backup, context().fetch());
        QCOMPARE(preview.updateCount, 1);
        QCOMPARE(preview.createCount, 1);
        const auto restored = RestorePlanner::restore(backup, context(), RestoreMode::addMissing);
        QCOMPARE(restored->created, 1);
        QCOMPARE(restored->updated, 0);
        QCOMPARE(local->text(), std::optional<QString>(QStringLiteral("lokale Fassung")));
    }

    void trashedEntryRestoredAsNewLandsInTheTrash()
    {
        PoemBackup trashed = entry(QStringLiteral("Verworfen"), QStringLiteral("alt"), QUuid::createUuid());
        trashed.deletedAt = utc(2026, 2, 3, 4, 5, 6);
        const RestorePreview preview = RestorePlanner::preview(backupOf({trashed}), context().fetch());
        QCOMPARE(preview.backupDeletedCount, 1);
        QCOMPARE(preview.localDeletedCount, 0);
        QVERIFY(RestorePlanner::restore(backupOf({trashed}), context(), RestoreMode::addMissing).ok());
        const PoemPtr created = context().poemWithID(*trashed.id);
        QVERIFY(created);
        QVERIFY(created->isInTrash());
        QCOMPARE(created->deletedAt(), trashed.deletedAt);
    }

    void updateCopiesEveryFieldAndClearsWhatTheEntryLacks()
    {
        const QUuid id = QUuid::createUuid();
        PoemPtr local = addPoem(context(), QStringLiteral("Herbst"), utc(2026, 6, 1, 8, 0, 0));
        local->setId(id);
        local->setWriterNotes(QStringLiteral("Notiz"));
        local->setRichTextData(QByteArray("{\\rtf1 x}"));
        local->setExternalId(QStringLiteral("ext"));
        local->setPublished(true);
        saveArchive();
        PoemBackup sparse;
        sparse.id = id;
        sparse.objectURI = QStringLiteral("x-odeleaf://archive/Poem/p7");
        sparse.title = QStringLiteral("Herbst");
        sparse.inPodcast = true;
        sparse.updatedAt = utc(2020, 1, 1, 0, 0, 0);

        const auto restored = RestorePlanner::restore(backupOf({sparse}), context(), RestoreMode::addMissingAndUpdate);
        QCOMPARE(restored->updated, 1);
        QCOMPARE(local->id(), std::optional<QUuid>(id));
        QVERIFY(!local->text() && !local->writerNotes() && !local->richTextData() && !local->externalId());
        QVERIFY(!local->category() && !local->date() && !local->createdAt() && !local->titleNormalized());
        QVERIFY(local->inPodcast() && !local->isPublished());
        // The backup's time is taken over, not the time of the restore.
        QCOMPARE(local->updatedAt(), sparse.updatedAt);
        QVERIFY(sparse.matches(*local));
    }

    void restoringNeverReducesTheArchive()
    {
        for (int i = 0; i < 6; ++i)
            addPoem(context(), QStringLiteral("Gedicht %1").arg(i), utc(2026, 3, 1, 9, i, 0));
        saveArchive();
        const QList<PoemPtr> local = context().fetch();
        QList<PoemBackup> entries;
        entries.append(PoemBackup::fromPoem(*local.at(0)));
        entries.append(PoemBackup::fromPoem(*local.at(1)));
        entries.last().text = QStringLiteral("geändert");
        entries.append(entry(QStringLiteral("Neu"), QStringLiteral("neu")));
        entries.append(PoemBackup()); // no key at all: always added
        entries.last().objectURI = QStringLiteral("x");

        const RestorePreview preview = RestorePlanner::preview(backupOf(entries), local);
        QCOMPARE(preview.identicalCount, 1);
        QCOMPARE(preview.updateCount, 1);
        QCOMPARE(preview.createCount, 2);
        QCOMPARE(preview.localOnlyCount, 4);
        for (const RestoreMode mode : {RestoreMode::addMissing, RestoreMode::addMissingAndUpdate}) {
            const qsizetype before = context().fetch().size();
            QVERIFY(RestorePlanner::restore(backupOf(entries), context(), mode).ok());
            QVERIFY(context().fetch().size() >= before);
            QVERIFY(!context().hasChanges());
        }
        // Entries without an id are added again by the second restore: the poems the first one
        // created were given an id, so they no longer meet the entries by title.
        QCOMPARE(context().fetch().size(), 6 + 2 + 2);
    }

    void backupOlderThanLocalChangesAsksForAReview()
    {
        PoemPtr local = addPoem(context(), QStringLiteral("Herbst"), exportTime.addSecs(60));
        const Backup backup = backupOf({entry(QStringLiteral("Winter"), QStringLiteral("Schnee"))});
        RestorePreview preview = RestorePlanner::preview(backup, context().fetch());
        QVERIFY(preview.isOlderThanLocalData);
        QCOMPARE(preview.statusTitle(), QStringLiteral("Backup prüfen"));
        QCOMPARE(
            preview.statusText(),
            QStringLiteral("Das Backup ist älter als mindestens eine lokale Änderung. Lokale Gedichte werden nicht "
                           "gelöscht."));
        local->setUpdatedAt(exportTime);
        QVERIFY(!RestorePlanner::preview(backup, context().fetch()).isOlderThanLocalData);
        local->setUpdatedAt(std::nullopt);
        preview = RestorePlanner::preview(backup, context().fetch());
        QVERIFY(!preview.isOlderThanLocalData);
        QCOMPARE(preview.statusTitle(), QStringLiteral("Wiederherstellung bereit"));
        QCOMPARE(preview.statusText(),
                 QStringLiteral("OdeLeaf kann fehlende Gedichte ergänzen und vorhandene Einträge aktualisieren."));
    }

    void failingSafetyBackupLeavesTheArchiveUntouched()
    {
        const QString storePath = m_archive->path(QStringLiteral("OdeLeaf.sqlite"));
        PoemBackup changed;
        {
            auto store = PersistenceController::open(storePath);
            ArchiveContext &archive = store.value()->viewContext();
            PoemPtr poem = addPoem(archive, QStringLiteral("Herbst"), exportTime);
            QVERIFY(archive.save().ok());
            changed = PoemBackup::fromPoem(*poem);
            changed.text = QStringLiteral("überschrieben");

            // A file where the safety-backup folder belongs: the folder cannot be made.
            QVERIFY(QDir().mkpath(ApplicationSupport::directory()));
            QVERIFY(writeFile(BackupExporter::automaticBackupDirectory(), "kein Ordner"));
            const Backup backup = backupOf({changed, entry(QStringLiteral("Neu"), QStringLiteral("neu"))});
            const auto restored =
                RestorePlanner::restoreWithSafetyBackup(backup, archive, RestoreMode::addMissingAndUpdate);
            QVERIFY(!restored.ok());
            QVERIFY(!archive.hasChanges());
            QCOMPARE(archive.fetch().size(), 1);
            QCOMPARE(poem->text(), std::optional<QString>(QStringLiteral("Text von Herbst")));
            QVERIFY(BackupStatus::restoreAborted(restored.errorMessage())
                        .startsWith(QStringLiteral("Wiederherstellung abgebrochen: Die Sicherheitskopie oder das "
                                                   "Einspielen ist fehlgeschlagen (Der Ordner")));
        }
        auto reopened = PersistenceController::open(storePath);
        const QList<PoemPtr> stored = reopened.value()->viewContext().fetch();
        QCOMPARE(stored.size(), 1);
        QCOMPARE(stored.first()->text(), std::optional<QString>(QStringLiteral("Text von Herbst")));
    }

    // The disk fills up during the last block of the safety backup: nothing is restored.
    void safetyBackupOnAFullDiskLeavesTheArchiveUntouched()
    {
        TmpfsMount disk(2 << 20);
        if (!disk.isMounted())
            QSKIP(TmpfsMount::skipReason());
        ApplicationSupport::setDirectory(disk.filePath(QStringLiteral("OdeLeaf")));
        QVERIFY(ApplicationSupport::ensureDirectory().ok());
        ArchiveContext &archive = context();
        for (int i = 0; i < 40; ++i)
            addPoem(archive, QStringLiteral("Gedicht %1").arg(i), exportTime)
                ->setText(QString(3000, QChar(u'a' + i % 26)));
        saveArchive();
        QBuffer encoded;
        encoded.open(QIODevice::WriteOnly);
        QVERIFY(BackupEncoder::write(Backup::make(archive.fetch(), exportTime).value(), encoded).ok());
        const qint64 pages = (encoded.size() + 4095) / 4096;
        QVERIFY(disk.leaveFree((pages - 1) * 4096));

        const Backup backup = backupOf({entry(QStringLiteral("Neu"), QStringLiteral("neu"))});
        const auto restored =
            RestorePlanner::restoreWithSafetyBackup(backup, archive, RestoreMode::addMissingAndUpdate, exportTime);
        QVERIFY(!restored.ok());
        QVERIFY2(restored.errorMessage().endsWith(QStringLiteral("Nicht genug Speicherplatz")),
                 qPrintable(restored.errorMessage()));
        QCOMPARE(archive.fetch().size(), 40);
        QVERIFY(!archive.hasChanges());
        QCOMPARE(QDir(BackupExporter::automaticBackupDirectory()).entryList(QDir::Files | QDir::Hidden), QStringList());
    }
};

QTEST_GUILESS_MAIN(RestoreTest)
#include "tst_restore.moc"
