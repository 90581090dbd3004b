#include "ImportTestSupport.h"

#include "archive/PersistenceController.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <sqlite3.h>

using namespace ImportTestSupport;

namespace {

constexpr int fileCount = 300;
constexpr int trials = 50;

QString oldText(int i)
{
    return QStringLiteral("alt %1").arg(i);
}

QString newText(int i)
{
    return QStringLiteral("neu %1\nzweite Zeile").arg(i);
}

QString title(int i)
{
    return QStringLiteral("Gedicht %1").arg(i, 3, 10, QLatin1Char('0'));
}

QString integrityCheck(const QString &storePath)
{
    sqlite3 *db = nullptr;
    if (sqlite3_open_v2(storePath.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
        sqlite3_close(db);
        return QStringLiteral("cannot open");
    }
    sqlite3_stmt *statement = nullptr;
    QString result = QStringLiteral("no answer");
    if (sqlite3_prepare_v2(db, "PRAGMA integrity_check", -1, &statement, nullptr) == SQLITE_OK &&
        sqlite3_step(statement) == SQLITE_ROW)
        result = QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(statement, 0)));
    sqlite3_finalize(statement);
    sqlite3_close(db);
    return result;
}

} // namespace

// An import killed at any moment (power loss, a killed script) leaves a sound store in
// which every poem has its old or its new text, and "Import rückgängig" brings back every
// old text.
class ImportKillTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QString m_pristine;
    QString m_documents;

    QString prepareTrial(int trial) const
    {
        const QString dataDir = m_dir.filePath(QStringLiteral("trial-%1").arg(trial));
        QDir().mkpath(dataDir);
        for (const QString &name : QDir(m_pristine).entryList(QDir::Files))
            QFile::copy(QDir(m_pristine).filePath(name), QDir(dataDir).filePath(name));
        return dataDir;
    }

    QProcess *startImport(const QString &dataDir)
    {
        auto *process = new QProcess(this);
        process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process->start(QStringLiteral(ODELEAF_CLI), {QStringLiteral("--data-dir"), dataDir, QStringLiteral("import"),
                                                     m_documents, QStringLiteral("--overwrite")});
        process->waitForStarted();
        return process;
    }

    // Waits until the run has written a file: the safety backup comes before the first
    // poem is changed, the undo file before the first batch is committed.
    static bool waitForFile(const QString &folder, const QString &pattern, const QProcess &process)
    {
        const QDir dir(folder);
        while (process.state() == QProcess::Running) {
            if (!dir.entryList({pattern}, QDir::Files).isEmpty())
                return true;
            QTest::qSleep(2);
        }
        return false;
    }
    static bool waitForSafetyBackup(const QString &dataDir, const QProcess &process)
    {
        return waitForFile(dataDir + QStringLiteral("/Safety Backups"), QStringLiteral("*.json"), process);
    }
    static bool waitForUndoRecord(const QString &dataDir, const QProcess &process)
    {
        return waitForFile(dataDir, QStringLiteral("last_text_import_undo.json"), process);
    }

    // The poems' texts by title; empty when the store cannot be opened.
    static QHash<QString, QString> texts(const QString &dataDir)
    {
        QHash<QString, QString> byTitle;
        auto store = PersistenceController::open(dataDir + QStringLiteral("/OdeLeaf.sqlite"));
        if (!store)
            return byTitle;
        for (const PoemPtr &poem : store.value()->viewContext().fetch())
            byTitle.insert(poem->title().value_or(QString()), poem->text().value_or(QString()));
        return byTitle;
    }

    // Returns how many poems had their new text.
    int checkStore(const QString &dataDir, bool afterUndo)
    {
        const QString integrity = integrityCheck(dataDir + QStringLiteral("/OdeLeaf.sqlite"));
        if (integrity != QLatin1String("ok"))
            qFatal("integrity_check: %s", qPrintable(integrity));
        const QHash<QString, QString> byTitle = texts(dataDir);
        if (byTitle.size() != fileCount)
            qFatal("%lld poems instead of %d", byTitle.size(), fileCount);
        int changed = 0;
        for (int i = 0; i < fileCount; ++i) {
            const QString text = byTitle.value(title(i));
            if (text == newText(i) && !afterUndo)
                ++changed;
            else if (text != oldText(i))
                qFatal("%s holds \"%s\"", qPrintable(title(i)), qPrintable(text));
        }
        return changed;
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_pristine = m_dir.filePath(QStringLiteral("pristine"));
        m_documents = m_dir.filePath(QStringLiteral("Texte"));
        QVERIFY(QDir().mkpath(m_pristine));
        QVERIFY(QDir().mkpath(m_documents));
        {
            auto store = PersistenceController::open(m_pristine + QStringLiteral("/OdeLeaf.sqlite"));
            QVERIFY(store.ok());
            ArchiveContext &context = store.value()->viewContext();
            for (int i = 0; i < fileCount; ++i)
                addPoem(context, title(i), oldText(i));
            QVERIFY(context.save().ok());
        }
        for (int i = 0; i < fileCount; ++i)
            QVERIFY(writeDocx(QDir(m_documents).filePath(title(i) + QStringLiteral(".docx")), newText(i).split('\n')));
    }

    void killedImportsStayUndoable()
    {
        // One run to the end tells how long a run takes on this machine.
        const QString complete = prepareTrial(0);
        QElapsedTimer clock;
        clock.start();
        QProcess *full = startImport(complete);
        QVERIFY(waitForSafetyBackup(complete, *full));
        const qint64 untilBackup = clock.elapsed();
        QVERIFY(waitForUndoRecord(complete, *full));
        const qint64 untilUndo = clock.elapsed();
        QVERIFY(full->waitForFinished(120000));
        const qint64 duration = clock.elapsed();
        QCOMPARE(full->exitCode(), 0);
        QVERIFY2(full->readAllStandardOutput().contains("300 gesetzt"), "every file found its poem");
        QCOMPARE(checkStore(complete, false), fileCount);

        QRandomGenerator random(QRandomGenerator::global()->generate());
        int partial = 0;
        int untouched = 0;
        for (int trial = 1; trial <= trials; ++trial) {
            const QString dataDir = prepareTrial(trial);
            QProcess *process = startImport(dataDir);
            // Most kills land while batches are committed; the others anywhere after the
            // safety backup or anywhere in the run.
            if (trial % 5 == 0)
                QTest::qSleep(int(random.bounded(duration + 1)));
            else if (trial % 5 == 1 && waitForSafetyBackup(dataDir, *process))
                QTest::qSleep(int(random.bounded(duration - untilBackup + 1)));
            else if (waitForUndoRecord(dataDir, *process))
                QTest::qSleep(int(random.bounded(duration - untilUndo + 1)));
            process->kill();
            QVERIFY(process->waitForFinished(10000));
            const int changed = checkStore(dataDir, false);
            partial += changed > 0 && changed < fileCount ? 1 : 0;
            untouched += changed == 0 ? 1 : 0;

            QProcess undo;
            undo.start(QStringLiteral(ODELEAF_CLI),
                       {QStringLiteral("--data-dir"), dataDir, QStringLiteral("undo-import")});
            QVERIFY(undo.waitForFinished(60000));
            QCOMPARE(undo.exitCode(), 0);
            checkStore(dataDir, true);
            QDir(dataDir).removeRecursively();
            delete process;
        }
        qInfo("run %lld ms (safety backup after %lld ms); of %d killed imports %d had applied part of their files, "
              "%d none",
              duration, untilBackup, trials, partial, untouched);
        QVERIFY2(partial > 0, "no kill landed between two batches");
    }
};

QTEST_GUILESS_MAIN(ImportKillTest)
#include "tst_importkill.moc"
