#include "BackupTestSupport.h"

#include "archive/PersistenceController.h"
#include "archive/PoemVersions.h"
#include "backup/BackupExporter.h"
#include "backup/BackupReader.h"

#include <QDir>
#include <QElapsedTimer>
#include <QMap>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace BackupTestSupport;

namespace {

constexpr int poemCount = 3000;
constexpr int trials = 50;
constexpr int restoredPoems = 5000;

// Each kill costs a restore's run; CI keeps to a few, ODELEAF_RESTORE_KILLS asks for more.
int restoreKills()
{
    bool ok = false;
    const int asked = qEnvironmentVariableIntValue("ODELEAF_RESTORE_KILLS", &ok);
    return ok && asked > 0 ? asked : 3;
}

// The archive as id and text of every poem; empty when the store cannot be opened.
QMap<QString, QString> archiveState(const QString &dataDir)
{
    QMap<QString, QString> state;
    auto store = PersistenceController::open(dataDir + QStringLiteral("/OdeLeaf.sqlite"));
    if (!store)
        return state;
    for (const PoemPtr &poem : store.value()->viewContext().fetch())
        state.insert(poem->id()->toString(), poem->text().value_or(QString()));
    return state;
}

} // namespace

// A backup process killed at any moment leaves at its destination either the complete old
// file or the complete new one, never a torn mixture.
class BackupKillTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QString m_dataDir;
    QString m_destination;
    QByteArray m_oldBackup;

    // Per mode: a data folder as before the restore, and the backup to restore.
    QString restoreFolder(const QString &mode) const { return m_dir.filePath(QStringLiteral("restore-") + mode); }

    // addMissing brings 5,000 poems the archive lacks; addMissingAndUpdate gives 5,000
    // poems of the archive new texts.
    void prepareRestore(const QString &mode)
    {
        const QString folder = restoreFolder(mode);
        QVERIFY(QDir().mkpath(folder + QStringLiteral("/before")));
        auto store = PersistenceController::open(folder + QStringLiteral("/before/OdeLeaf.sqlite"));
        QVERIFY(store.ok());
        ArchiveContext &archive = store.value()->viewContext();
        const bool update = mode == QLatin1String("addMissingAndUpdate");
        for (int i = 0; i < (update ? restoredPoems : 50); ++i)
            addPoem(archive, QStringLiteral("Gedicht %1").arg(i), utc(2026, 1, 1, 0, 0, 0).addSecs(i));
        QVERIFY(archive.save().ok());
        auto scratch = PersistenceController::inMemory();
        ArchiveContext &other = scratch->viewContext();
        QList<PoemPtr> restored;
        if (update) {
            restored = archive.fetch();
            for (const PoemPtr &poem : std::as_const(restored))
                poem->setText(QStringLiteral("Neue Fassung von ") + poem->title().value_or(QString()));
        } else {
            for (int i = 0; i < restoredPoems; ++i)
                restored.append(addPoem(other, QStringLiteral("Neu %1").arg(i), utc(2026, 2, 1, 0, 0, 0).addSecs(i)));
        }
        QVERIFY(BackupExporter::writeBackup(restored, folder + QStringLiteral("/backup.json")).ok());
        archive.rollback();
    }

    QString trialFolder(const QString &mode, int trial) const
    {
        const QString dataDir = restoreFolder(mode) + QStringLiteral("/trial-%1").arg(trial);
        QDir().mkpath(dataDir);
        const QDir before(restoreFolder(mode) + QStringLiteral("/before"));
        for (const QString &name : before.entryList(QDir::Files))
            QFile::copy(before.filePath(name), dataDir + QLatin1Char('/') + name);
        return dataDir;
    }

    QProcess *startRestore(const QString &dataDir, const QString &mode)
    {
        auto *process = new QProcess(this);
        process->start(QStringLiteral(ODELEAF_CLI),
                       {QStringLiteral("--data-dir"), dataDir, QStringLiteral("restore"),
                        restoreFolder(mode) + QStringLiteral("/backup.json"), QStringLiteral("--mode"), mode});
        process->waitForStarted();
        return process;
    }

    // The restore writes the store only after its safety backup is complete.
    static bool waitForSafetyBackup(const QString &dataDir, const QProcess &process)
    {
        const QDir folder(dataDir + QStringLiteral("/Safety Backups"));
        while (process.state() == QProcess::Running) {
            if (!folder.entryList({QStringLiteral("pre-restore-*.json")}, QDir::Files).isEmpty())
                return true;
            QTest::qSleep(1);
        }
        return false;
    }

    QProcess *startBackup()
    {
        auto *process = new QProcess(this);
        process->start(QStringLiteral(ODELEAF_CLI),
                       {QStringLiteral("--data-dir"), m_dataDir, QStringLiteral("backup"), m_destination});
        process->waitForStarted();
        return process;
    }

    // Whether the process holds a file open next to the destination: the unnamed
    // temporary file of the atomic write.
    bool isWriting(const QProcess &process) const
    {
        const QDir descriptors(QStringLiteral("/proc/%1/fd").arg(process.processId()));
        const QString folder = m_dir.path() + QLatin1Char('/');
        const QStringList entries = descriptors.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
        return std::any_of(entries.begin(), entries.end(), [&](const QString &entry) {
            const QString target = QFile::symLinkTarget(descriptors.filePath(entry));
            return target.startsWith(folder) && !target.startsWith(m_dataDir);
        });
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_dataDir = m_dir.filePath(QStringLiteral("data"));
        m_destination = m_dir.filePath(QStringLiteral("OdeLeaf-Backup.json"));
        QVERIFY(QDir().mkpath(m_dataDir));
        auto store = PersistenceController::open(m_dataDir + QStringLiteral("/OdeLeaf.sqlite"));
        QVERIFY(store.ok());
        ArchiveContext &archive = store.value()->viewContext();
        QRandomGenerator random(11);
        for (int i = 0; i < poemCount; ++i) {
            PoemPtr poem = addPoem(archive, QStringLiteral("Gedicht %1").arg(i), utc(2026, 1, 1, 0, 0, 0).addSecs(i));
            poem->setText(QString(600, QChar(u'a' + i % 26)));
            if (i % 10 == 0) {
                QByteArray rich(50 << 10, Qt::Uninitialized);
                random.fillRange(reinterpret_cast<quint32 *>(rich.data()), rich.size() / 4);
                poem->setRichTextData(rich);
            }
        }
        QVERIFY(archive.save().ok());

        const QString oldPath = m_dir.filePath(QStringLiteral("old.json"));
        QVERIFY(BackupExporter::writeBackup(archive.fetch().mid(0, 1), oldPath).ok());
        m_oldBackup = fileBytes(oldPath);
        QVERIFY(QFile::remove(oldPath));
    }

    void killedWriterLeavesTheOldOrTheNewFile()
    {
        // One watched run finds when the writing happens; half of the kills aim there.
        QElapsedTimer clock;
        clock.start();
        QProcess *watched = startBackup();
        qint64 writeStart = -1;
        qint64 writeEnd = -1;
        while (!watched->waitForFinished(1) && clock.elapsed() < 60000) {
            if (!isWriting(*watched))
                continue;
            writeEnd = clock.elapsed();
            if (writeStart < 0)
                writeStart = writeEnd;
        }
        const qint64 fullRun = clock.elapsed();
        QCOMPARE(watched->exitCode(), 0);
        QCOMPARE(BackupReader::read(m_destination)->poems.size(), poemCount);
        QVERIFY2(writeStart >= 0, "the writing process was never seen writing");

        int old = 0;
        int complete = 0;
        int killedWhileWriting = 0;
        QRandomGenerator random(23);
        for (int trial = 0; trial < trials; ++trial) {
            QVERIFY(writeFile(m_destination, m_oldBackup));
            const qint64 delay = trial % 2 == 0 ? random.bounded(fullRun * 12 / 10)
                                                : writeStart + random.bounded(writeEnd - writeStart + 5);
            QElapsedTimer sinceStart;
            sinceStart.start();
            QProcess *process = startBackup();
            QTest::qSleep(int(std::max<qint64>(0, delay - sinceStart.elapsed())));
            killedWhileWriting += isWriting(*process) ? 1 : 0;
            process->kill();
            process->waitForFinished(10000);
            delete process;

            const QByteArray found = fileBytes(m_destination);
            if (found == m_oldBackup) {
                ++old;
                continue;
            }
            const auto decoded = BackupReader::decode(found);
            QVERIFY2(decoded.ok(), qPrintable(QStringLiteral("trial %1: %2").arg(trial).arg(decoded.errorMessage())));
            QCOMPARE(decoded->poems.size(), poemCount);
            ++complete;
        }
        qInfo("%d trials, runs of %lld ms writing from %lld to %lld ms: %d old, %d new, %d killed while writing",
              trials, fullRun, writeStart, writeEnd, old, complete, killedWhileWriting);
        QCOMPARE(old + complete, trials);
        // Otherwise the test would only have watched processes that were not writing.
        QVERIFY(killedWhileWriting > 0);
    }

    // A restore killed at any moment leaves the archive as it was before or as it is
    // after, never with part of the backup in it.
    void killedRestoreLeavesTheArchiveBeforeOrAfter_data()
    {
        QTest::addColumn<QString>("mode");
        QTest::newRow("addMissing") << QStringLiteral("addMissing");
        QTest::newRow("addMissingAndUpdate") << QStringLiteral("addMissingAndUpdate");
    }

    void killedRestoreLeavesTheArchiveBeforeOrAfter()
    {
        QFETCH(QString, mode);
        prepareRestore(mode);
        const QString pristine = trialFolder(mode, 0);
        const QMap<QString, QString> before = archiveState(pristine);
        QElapsedTimer clock;
        clock.start();
        QProcess *complete = startRestore(pristine, mode);
        QVERIFY(waitForSafetyBackup(pristine, *complete));
        const qint64 untilBackup = clock.elapsed();
        QVERIFY(complete->waitForFinished(120000));
        const qint64 duration = clock.elapsed();
        QCOMPARE(complete->exitCode(), 0);
        const QMap<QString, QString> after = archiveState(pristine);
        QVERIFY(after != before);
        QCOMPARE(after.size(), mode == QLatin1String("addMissing") ? before.size() + restoredPoems : before.size());

        const int kills = restoreKills();
        int untouched = 0;
        int restored = 0;
        QRandomGenerator random(QRandomGenerator::global()->generate());
        for (int trial = 1; trial <= kills; ++trial) {
            const QString dataDir = trialFolder(mode, trial);
            QProcess *process = startRestore(dataDir, mode);
            // Most kills land after the safety backup, while the store is written.
            if (trial % 4 == 0 || !waitForSafetyBackup(dataDir, *process))
                QTest::qSleep(int(random.bounded(duration + 1)));
            else
                QTest::qSleep(int(random.bounded(duration - untilBackup + 1)));
            process->kill();
            QVERIFY(process->waitForFinished(10000));
            delete process;
            const QMap<QString, QString> found = archiveState(dataDir);
            QVERIFY2(found == before || found == after,
                     qPrintable(QStringLiteral("trial %1: %2 poems, neither before (%3) nor after (%4)")
                                    .arg(trial)
                                    .arg(found.size())
                                    .arg(before.size())
                                    .arg(after.size())));
            untouched += found == before ? 1 : 0;
            restored += found == after ? 1 : 0;
            QDir(dataDir).removeRecursively();
        }
        qInfo("%s: run %lld ms (safety backup after %lld ms); %d kills: %d before, %d after", qPrintable(mode),
              duration, untilBackup, kills, untouched, restored);
    }

    // A restore killed at any moment leaves every poem with its old text and no new version,
    // or with the backup's text and its old text kept as the version before the restore.
    void killedRestoreKeepsEachPoemWithItsVersion()
    {
        constexpr int restoredPoems = 1200;
        constexpr int restoreTrials = 16;
        const QString model = m_dir.filePath(QStringLiteral("restore-model"));
        const QString backup = m_dir.filePath(QStringLiteral("restore.json"));
        QVERIFY(QDir().mkpath(model));
        {
            auto store = PersistenceController::open(model + QStringLiteral("/OdeLeaf.sqlite"));
            QVERIFY(store.ok());
            ArchiveContext &archive = store.value()->viewContext();
            for (int i = 0; i < restoredPoems; ++i)
                addPoem(archive, QStringLiteral("Gedicht %1").arg(i), utc(2026, 1, 1, 0, 0, 0))
                    ->setText(QStringLiteral("alt %1").arg(i));
            QVERIFY(archive.save().ok());
            for (const PoemPtr &poem : archive.fetch())
                poem->setText(poem->text().value_or(QString()).replace(QStringLiteral("alt"), QStringLiteral("neu")));
            QVERIFY(BackupExporter::writeBackup(archive.fetch(), backup).ok());
            archive.rollback();
        }
        const auto run = [&](const QString &dataDir) {
            QDir().mkpath(dataDir);
            QFile::copy(model + QStringLiteral("/OdeLeaf.sqlite"), dataDir + QStringLiteral("/OdeLeaf.sqlite"));
            auto *process = new QProcess(this);
            process->start(QStringLiteral(ODELEAF_CLI),
                           {QStringLiteral("--data-dir"), dataDir, QStringLiteral("restore"), backup,
                            QStringLiteral("--mode"), QStringLiteral("addMissingAndUpdate")});
            process->waitForStarted();
            return process;
        };
        QElapsedTimer clock;
        clock.start();
        QProcess *watched = run(m_dir.filePath(QStringLiteral("restore-watched")));
        QVERIFY(watched->waitForFinished(120000));
        QCOMPARE(watched->exitCode(), 0);
        const qint64 fullRun = clock.elapsed();

        int restored = 0;
        int kept = 0;
        QRandomGenerator random(31);
        for (int trial = 0; trial < restoreTrials; ++trial) {
            const QString dataDir = m_dir.filePath(QStringLiteral("restore-%1").arg(trial));
            QProcess *process = run(dataDir);
            // Up to twice the full run: a restore is one transaction, so only kills around its
            // end show the restored side.
            QTest::qSleep(int(random.bounded(2 * fullRun)));
            process->kill();
            process->waitForFinished(10000);
            delete process;

            auto store = PersistenceController::open(dataDir + QStringLiteral("/OdeLeaf.sqlite"));
            QVERIFY2(store.ok(), qPrintable(store.errorMessage()));
            ArchiveContext &archive = store.value()->viewContext();
            QCOMPARE(archive.fetch().size(), restoredPoems);
            for (const PoemPtr &poem : archive.fetch()) {
                const QString text = poem->text().value_or(QString());
                const QString old = QString(text).replace(QStringLiteral("neu"), QStringLiteral("alt"));
                const auto versions = PoemVersions::list(archive, *poem);
                QVERIFY(versions.ok());
                if (text.startsWith(QStringLiteral("alt"))) {
                    QVERIFY(versions->empty());
                    ++kept;
                    continue;
                }
                QVERIFY2(text.startsWith(QStringLiteral("neu")), qPrintable(text));
                QCOMPARE(versions->size(), size_t(1));
                QCOMPARE(versions->front().reason, QStringLiteral("vor Wiederherstellung"));
                QCOMPARE(PoemVersions::version(archive, *poem, 1)->values.text, old);
                ++restored;
            }
        }
        qInfo("%d restore trials of %lld ms: %d poems restored with their version, %d untouched", restoreTrials,
              fullRun, restored, kept);
        QVERIFY(restored > 0);
        QVERIFY(kept > 0);
    }
};

QTEST_GUILESS_MAIN(BackupKillTest)
#include "tst_backupkill.moc"
