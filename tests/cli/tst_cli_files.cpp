#include "CliRunner.h"
#include "TmpfsMount.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

namespace {

const QString readOnlyText = QStringLiteral("Archiv ist schreibgeschützt – Änderungen sind nicht möglich.");

mode_t permissionsOf(const QString &path)
{
    struct stat status {};
    ::lstat(QFile::encodeName(path).constData(), &status);
    return status.st_mode & 07777;
}

// Every folder and file below the data folder, with what others may do with it.
QStringList readableByOthers(const QString &folder)
{
    QStringList open;
    if (permissionsOf(folder) != 0700)
        open.append(QStringLiteral("%1 %2").arg(folder).arg(permissionsOf(folder), 0, 8));
    QDirIterator walk(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QString path = walk.next();
        const mode_t expected = walk.fileInfo().isDir() ? 0700 : 0600;
        if (permissionsOf(path) != expected)
            open.append(QStringLiteral("%1 %2").arg(path).arg(permissionsOf(path), 0, 8));
    }
    return open;
}

void putFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

} // namespace

class CliFilesTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;

    QString path(const QString &name) const { return m_dir->filePath(name); }

    static QString add(const CliRunner &cli, const QString &title, const QString &text = QStringLiteral("Zeile"))
    {
        return cli.run({QStringLiteral("add"), QStringLiteral("--title"), title, QStringLiteral("--text"), text})
            .out.trimmed();
    }

    static int poemCount(const CliRunner &cli)
    {
        const CliOutcome listed = cli.run({QStringLiteral("list"), QStringLiteral("--json")});
        return int(
            QJsonDocument::fromJson(listed.out.toUtf8()).object().value(QStringLiteral("rows")).toArray().size());
    }

private Q_SLOTS:
    void init() { m_dir = std::make_unique<QTemporaryDir>(); }

    void aSessionLeavesNothingReadableByOthers()
    {
        const CliRunner cli(path(QStringLiteral("home/share/OdeLeaf")));
        QVERIFY(!add(cli, QStringLiteral("Privat")).isEmpty());
        QCOMPARE(cli.run({QStringLiteral("prefs"), QStringLiteral("set"), QStringLiteral("poemFooterPlace"),
                          QStringLiteral("Köln")})
                     .exitCode,
                 0);
        QCOMPARE(cli.run({QStringLiteral("daily-backup")}).exitCode, 0);
        QVERIFY(QFile::exists(cli.dataDir() + QStringLiteral("/preferences.ini")));
        QVERIFY(QDir(cli.dataDir() + QStringLiteral("/Safety Backups")).count() > 2);
        QCOMPARE(readableByOthers(cli.dataDir()), QStringList());
    }

    void anOlderOpenArchiveIsTightenedAtTheNextStart()
    {
        const CliRunner cli(path(QStringLiteral("data")));
        add(cli, QStringLiteral("Privat"));
        cli.run(
            {QStringLiteral("prefs"), QStringLiteral("set"), QStringLiteral("poemFooterPlace"), QStringLiteral("X")});
        // As an older version left it: everything readable by every local user.
        QCOMPARE(::chmod(QFile::encodeName(cli.dataDir()).constData(), 0755), 0);
        for (const QString &name : {QStringLiteral("OdeLeaf.sqlite"), QStringLiteral("preferences.ini")})
            QCOMPARE(::chmod(QFile::encodeName(cli.dataDir() + QLatin1Char('/') + name).constData(), 0644), 0);
        QVERIFY(!readableByOthers(cli.dataDir()).isEmpty());
        QCOMPARE(cli.run({QStringLiteral("list")}).exitCode, 0);
        QCOMPARE(readableByOthers(cli.dataDir()), QStringList());
    }

    void oddFilesAreRefusedAtOnce()
    {
        const CliRunner cli(path(QStringLiteral("data")));
        const QString id = add(cli, QStringLiteral("Herbst"));
        const QString fifo = path(QStringLiteral("backup.json"));
        QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
        for (const QString &source : {fifo, QStringLiteral("/dev/zero"), m_dir->path()}) {
            QElapsedTimer timer;
            timer.start();
            const CliOutcome restored =
                cli.run({QStringLiteral("restore"), source, QStringLiteral("--mode"), QStringLiteral("addMissing")});
            QCOMPARE(restored.exitCode, 1);
            QVERIFY2(restored.err.contains(QStringLiteral("Keine normale Datei: %1").arg(source)),
                     qPrintable(restored.err));
            QVERIFY(timer.elapsed() < 20000);
        }
        // Backing up onto a FIFO or a folder would destroy it; both stay what they were.
        for (const QString &target : {fifo, m_dir->path()}) {
            const CliOutcome backup = cli.run({QStringLiteral("backup"), target});
            QCOMPARE(backup.exitCode, 1);
            QVERIFY2(backup.err.contains(QStringLiteral("Keine normale Datei: %1").arg(target)),
                     qPrintable(backup.err));
        }
        struct stat status {};
        QCOMPARE(::stat(QFile::encodeName(fifo).constData(), &status), 0);
        QVERIFY(S_ISFIFO(status.st_mode));
        QCOMPARE(poemCount(cli), 1);
        QVERIFY(!cli.show(id).isEmpty());
    }

    void aBackupWithATwiceNamedFieldIsRefused()
    {
        const CliRunner cli(path(QStringLiteral("data")));
        add(cli, QStringLiteral("Echt"));
        const QString file = path(QStringLiteral("backup.json"));
        QCOMPARE(cli.run({QStringLiteral("backup"), file}).exitCode, 0);
        QFile backup(file);
        QVERIFY(backup.open(QIODevice::ReadOnly));
        QByteArray bytes = backup.readAll();
        backup.close();
        // A second, empty "poems" after the real one would hide every poem of the backup.
        const qsizetype end = bytes.lastIndexOf('}');
        bytes.insert(end, ",\n  \"poems\" : []\n");
        putFile(file, bytes);
        const CliOutcome preview = cli.run({QStringLiteral("restore"), file, QStringLiteral("--preview")});
        QCOMPARE(preview.exitCode, 1);
        QVERIFY2(preview.err.contains(QStringLiteral("Feldname „poems“ kommt doppelt vor")), qPrintable(preview.err));
    }

    void aTextFileInAnOlderEncodingIsReadAsWindows1252()
    {
        const CliRunner cli(path(QStringLiteral("data")));
        const QString file = path(QStringLiteral("gedicht.txt"));
        putFile(file, "Gr\xfc\xdf"
                      "e an \x84"
                      "die Stra\xdf"
                      "e\x93");
        const CliOutcome added = cli.run({QStringLiteral("add"), QStringLiteral("--title"), QStringLiteral("Alt"),
                                          QStringLiteral("--text-file"), file});
        QCOMPARE(added.exitCode, 0);
        QCOMPARE(added.err.trimmed(),
                 QStringLiteral("„gedicht.txt“ war nicht UTF-8-kodiert und wurde als Windows-1252 gelesen."));
        const QString id = added.out.trimmed();
        QCOMPARE(cli.show(id).value(QStringLiteral("text")).toString(), QStringLiteral("Grüße an „die Straße“"));

        putFile(file, "Gr\xc3\xbc\xc3\x9f"
                      "e");
        const CliOutcome set = cli.run({QStringLiteral("set"), id, QStringLiteral("--text-file"), file});
        QCOMPARE(set.exitCode, 0);
        QVERIFY(set.err.isEmpty());
        QCOMPARE(cli.show(id).value(QStringLiteral("text")).toString(), QStringLiteral("Grüße"));
    }

    void preferencesThatCannotBeStoredAreReported()
    {
        TmpfsMount disk(256 << 10);
        if (!disk.isMounted())
            QSKIP(TmpfsMount::skipReason());
        const CliRunner cli(disk.filePath(QStringLiteral("OdeLeaf")));
        const QStringList setPlace{QStringLiteral("prefs"), QStringLiteral("set"), QStringLiteral("poemFooterPlace")};
        QCOMPARE(cli.run(setPlace + QStringList{QStringLiteral("Köln")}).exitCode, 0);
        QVERIFY(disk.leaveFree(0));
        const CliOutcome full = cli.run(setPlace + QStringList{QString(20000, QLatin1Char('x'))});
        QCOMPARE(full.exitCode, 1);
        QVERIFY2(full.err.contains(QStringLiteral("Nicht genug Speicherplatz")), qPrintable(full.err));

        const CliOutcome category = cli.run({QStringLiteral("category-add"), QString(20000, QLatin1Char('k'))});
        QCOMPARE(category.exitCode, 1);
        QVERIFY2(category.err.contains(QStringLiteral("Nicht genug Speicherplatz")), qPrintable(category.err));

        QVERIFY(disk.remountReadOnly());
        const CliOutcome readOnly = cli.run(setPlace + QStringList{QStringLiteral("Bonn")});
        QCOMPARE(readOnly.exitCode, 1);
        QVERIFY2(readOnly.err.contains(QStringLiteral("Das Dateisystem ist schreibgeschützt")),
                 qPrintable(readOnly.err));
        QCOMPARE(cli.run({QStringLiteral("prefs"), QStringLiteral("get"), QStringLiteral("poemFooterPlace")}).out,
                 QStringLiteral("Köln\n"));
    }

    // A category list that cannot be stored fails the command, whatever else it stored.
    void categoryListsThatCannotBeStoredFailTheCommand()
    {
        const CliRunner cli(path(QStringLiteral("kategorien")));
        QCOMPARE(cli.run({QStringLiteral("category-add"), QStringLiteral("Natur")}).exitCode, 0);
        const QString csv = path(QStringLiteral("liste.csv"));
        putFile(csv, "Gedicht;Kategorie\nSturm;Wetter\n");
        // A folder where the preference file belongs: every write of it fails.
        const QString preferences = cli.dataDir() + QStringLiteral("/preferences.ini");
        QVERIFY(QFile::remove(preferences));
        QVERIFY(QDir().mkdir(preferences));

        const CliOutcome added = cli.run({QStringLiteral("category-add"), QStringLiteral("Liebe")});
        QCOMPARE(added.exitCode, 1);
        QVERIFY2(added.err.startsWith(QStringLiteral("Die Einstellungen konnten nicht gespeichert werden: ")),
                 qPrintable(added.err));
        const CliOutcome imported = cli.run({QStringLiteral("import-csv"), csv});
        QCOMPARE(imported.exitCode, 1);
        QVERIFY2(imported.err.startsWith(QStringLiteral("CSV Import: 1 neu, 0 aktualisiert")),
                 qPrintable(imported.err));
        QVERIFY2(
            imported.err.contains(QStringLiteral("Die Kategorien der Tabelle wurden nicht in die Liste übernommen: "
                                                 "Die Einstellungen konnten nicht gespeichert werden: ")),
            qPrintable(imported.err));
        QVERIFY(cli.run({QStringLiteral("list")}).out.contains(QStringLiteral("Sturm")));
    }

    // Output cut short by a full disk is no answer: the command says so and fails.
    void outputToAFullDiskFails_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("list --json") << QStringList{QStringLiteral("list"), QStringLiteral("--json")};
        QTest::newRow("list") << QStringList{QStringLiteral("list")};
        QTest::newRow("duplicates --json") << QStringList{QStringLiteral("duplicates"), QStringLiteral("--json")};
        QTest::newRow("stats") << QStringList{QStringLiteral("stats")};
        QTest::newRow("add") << QStringList{QStringLiteral("add"), QStringLiteral("--title"), QStringLiteral("Neu")};
    }

    void outputToAFullDiskFails()
    {
        QFETCH(QStringList, arguments);
        if (!QFileInfo::exists(QStringLiteral("/dev/full")))
            QSKIP("no /dev/full");
        const CliRunner cli(path(QStringLiteral("voll")));
        for (int i = 0; i < 3; ++i)
            cli.run({QStringLiteral("add"), QStringLiteral("--title"), QStringLiteral("Abendlied %1").arg(i)});
        QCOMPARE(cli.run(arguments).exitCode, 0);
        const CliOutcome full = cli.run(arguments, {}, QStringLiteral("/dev/full"));
        QCOMPARE(full.exitCode, 1);
        QVERIFY2(full.err.contains(QStringLiteral("Die Ausgabe konnte nicht geschrieben werden: Nicht genug "
                                                  "Speicherplatz")),
                 qPrintable(full.err));
    }

    // What a killed run left behind goes at the next start; a file of a writer still
    // running stays.
    void leftoversOfKilledRunsAreRemovedAtTheNextStart()
    {
        const CliRunner cli(path(QStringLiteral("reste")));
        QCOMPARE(cli.run({QStringLiteral("add"), QStringLiteral("--title"), QStringLiteral("Neu")}).exitCode, 0);
        const QString safety = cli.dataDir() + QStringLiteral("/Safety Backups");
        QVERIFY(QDir().mkpath(safety));
        const QString stale = QStringLiteral(".odeleaf-tmp-999999999-4eZOKM");
        const QString running = QStringLiteral(".odeleaf-tmp-%1-Uf6yQW").arg(QCoreApplication::applicationPid());
        for (const QString &folder : {cli.dataDir(), safety}) {
            putFile(folder + QLatin1Char('/') + stale, QByteArray(4096, 'x'));
            putFile(folder + QLatin1Char('/') + running, "x");
        }
        QCOMPARE(cli.run({QStringLiteral("list")}).exitCode, 0);
        for (const QString &folder : {cli.dataDir(), safety}) {
            QVERIFY2(!QFileInfo::exists(folder + QLatin1Char('/') + stale), qPrintable(folder));
            QVERIFY2(QFileInfo::exists(folder + QLatin1Char('/') + running), qPrintable(folder));
        }
    }

    void aReadOnlyArchiveCanBeReadButNotChanged()
    {
        TmpfsMount disk(4 << 20);
        if (!disk.isMounted())
            QSKIP(TmpfsMount::skipReason());
        const CliRunner cli(disk.filePath(QStringLiteral("OdeLeaf")));
        const QString id = add(cli, QStringLiteral("Auf der Heide"), QStringLiteral("Wind"));
        QVERIFY(disk.remountReadOnly());

        QCOMPARE(poemCount(cli), 1);
        QCOMPARE(cli.show(id).value(QStringLiteral("text")).toString(), QStringLiteral("Wind"));
        const QString backup = path(QStringLiteral("copy.json"));
        const CliOutcome backedUp = cli.run({QStringLiteral("backup"), backup});
        QCOMPARE(backedUp.exitCode, 0);
        QVERIFY(QFileInfo(backup).size() > 0);

        const QList<QStringList> writes{
            {QStringLiteral("add"), QStringLiteral("--title"), QStringLiteral("Neu")},
            {QStringLiteral("set"), id, QStringLiteral("--title"), QStringLiteral("Anders")},
            {QStringLiteral("trash"), id},
            {QStringLiteral("restore"), backup, QStringLiteral("--mode"), QStringLiteral("addMissingAndUpdate")},
        };
        for (const QStringList &arguments : writes) {
            const CliOutcome refused = cli.run(arguments);
            QCOMPARE(refused.exitCode, 1);
            QCOMPARE(refused.err.trimmed(), readOnlyText);
        }
        QCOMPARE(cli.show(id).value(QStringLiteral("title")).toString(), QStringLiteral("Auf der Heide"));
    }
};

QTEST_GUILESS_MAIN(CliFilesTest)
#include "tst_cli_files.moc"
