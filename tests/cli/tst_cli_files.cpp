#include "CliRunner.h"
#include "TmpfsMount.h"

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
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

        QVERIFY(disk.remountReadOnly());
        const CliOutcome readOnly = cli.run(setPlace + QStringList{QStringLiteral("Bonn")});
        QCOMPARE(readOnly.exitCode, 1);
        QVERIFY2(readOnly.err.contains(QStringLiteral("Das Dateisystem ist schreibgeschützt")),
                 qPrintable(readOnly.err));
        QCOMPARE(cli.run({QStringLiteral("prefs"), QStringLiteral("get"), QStringLiteral("poemFooterPlace")}).out,
                 QStringLiteral("Köln\n"));
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
