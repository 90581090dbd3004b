#include "CliRunner.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

class CliBackupTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<CliRunner> m_cli;

    QString add(const QString &title, const QString &text)
    {
        return m_cli->run({QStringLiteral("add"), QStringLiteral("--title"), title, QStringLiteral("--text"), text})
            .out.trimmed();
    }

    QString textOf(const QString &id)
    {
        const CliOutcome shown = m_cli->run({QStringLiteral("show"), id});
        return QJsonDocument::fromJson(shown.out.toUtf8()).object().value(QStringLiteral("text")).toString();
    }

    QString path(const QString &name) const { return m_dir->filePath(name); }

private Q_SLOTS:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        m_cli = std::make_unique<CliRunner>(m_dir->filePath(QStringLiteral("data")));
    }

    void backupPreviewAndRestoreRoundTrip()
    {
        const QString herbst = add(QStringLiteral("Herbst"), QStringLiteral("Laub/fällt"));
        add(QStringLiteral("Winter"), QStringLiteral("Schnee"));
        const CliOutcome backup = m_cli->run({QStringLiteral("backup"), path(QStringLiteral("b.json"))});
        QCOMPARE(backup.exitCode, 0);
        QCOMPARE(backup.out, QStringLiteral("Sicherung erstellt: 2 Gedichte gespeichert. Datei: b.json\n"));
        QVERIFY(QFile::exists(path(QStringLiteral("b.json"))));

        QTest::qSleep(1100); // the edit must be a second younger than the backup
        QCOMPARE(m_cli->run({QStringLiteral("set"), herbst, QStringLiteral("--text"), QStringLiteral("neu")}).exitCode,
                 0);
        add(QStringLiteral("Frühling"), QStringLiteral("Knospen"));

        const CliOutcome preview =
            m_cli->run({QStringLiteral("restore"), path(QStringLiteral("b.json")), QStringLiteral("--preview")});
        QCOMPARE(preview.exitCode, 0);
        const QJsonObject counts = QJsonDocument::fromJson(preview.out.toUtf8()).object();
        QCOMPARE(counts.value(QStringLiteral("localCount")).toInt(), 3);
        QCOMPARE(counts.value(QStringLiteral("identicalCount")).toInt(), 1);
        QCOMPARE(counts.value(QStringLiteral("updateCount")).toInt(), 1);
        QCOMPARE(counts.value(QStringLiteral("createCount")).toInt(), 0);
        QCOMPARE(counts.value(QStringLiteral("localOnlyCount")).toInt(), 1);
        QCOMPARE(counts.value(QStringLiteral("backupDeletedCount")).toInt(), 0);
        QCOMPARE(counts.value(QStringLiteral("localDeletedCount")).toInt(), 0);
        QCOMPARE(counts.value(QStringLiteral("isOlderThanLocalData")).toBool(), true);
        QCOMPARE(counts.value(QStringLiteral("statusTitle")).toString(), QStringLiteral("Backup prüfen"));
        QVERIFY(
            counts.value(QStringLiteral("statusText")).toString().startsWith(QStringLiteral("Das Backup ist älter")));

        const CliOutcome missingOnly = m_cli->run({QStringLiteral("restore"), path(QStringLiteral("b.json")),
                                                   QStringLiteral("--mode"), QStringLiteral("addMissing")});
        QCOMPARE(missingOnly.exitCode, 0);
        QVERIFY(missingOnly.out.startsWith(
            QStringLiteral("Wiederherstellung abgeschlossen: 0 neu ergänzt, 0 aktualisiert.")));
        QCOMPARE(textOf(herbst), QStringLiteral("neu"));

        const CliOutcome updating = m_cli->run({QStringLiteral("restore"), path(QStringLiteral("b.json")),
                                                QStringLiteral("--mode"), QStringLiteral("addMissingAndUpdate")});
        QCOMPARE(updating.exitCode, 0);
        static const QRegularExpression finished(
            QStringLiteral("^Wiederherstellung abgeschlossen: 0 neu ergänzt, 1 aktualisiert\\. Sicherheitskopie: "
                           "pre-restore-\\d{4}-\\d{2}-\\d{2}-\\d{6}\\.json\\n$"));
        QVERIFY2(finished.match(updating.out).hasMatch(), qPrintable(updating.out));
        QCOMPARE(textOf(herbst), QStringLiteral("Laub/fällt"));
        // The safety copy named in the line holds the archive as it was before.
        const QString safetyCopy = updating.out.trimmed().section(QStringLiteral(": "), -1);
        QFile copy(path(QStringLiteral("data/Safety Backups/") + safetyCopy));
        QVERIFY(copy.open(QIODevice::ReadOnly));
        QVERIFY(copy.readAll().contains("\"text\" : \"neu\""));
    }

    void unreadableBackupChangesNothing()
    {
        const QString id = add(QStringLiteral("Herbst"), QStringLiteral("Laub"));
        QFile broken(path(QStringLiteral("kaputt.json")));
        QVERIFY(broken.open(QIODevice::WriteOnly));
        broken.write("{\"app\" : \"OdeLeaf\", \"poems\" : [");
        broken.close();
        const CliOutcome restored = m_cli->run({QStringLiteral("restore"), broken.fileName(), QStringLiteral("--mode"),
                                                QStringLiteral("addMissingAndUpdate")});
        QCOMPARE(restored.exitCode, 1);
        QVERIFY2(restored.err.startsWith(QStringLiteral("Backup konnte nicht gelesen werden: Die Datei ist kein "
                                                        "gültiges JSON: unerwartetes Dateiende")),
                 qPrintable(restored.err));
        QVERIFY(restored.out.isEmpty());
        QCOMPARE(textOf(id), QStringLiteral("Laub"));
        QVERIFY(!QFileInfo::exists(path(QStringLiteral("data/Safety Backups"))));
    }

    void dailyBackupOnceADay()
    {
        const CliOutcome empty = m_cli->run({QStringLiteral("daily-backup")});
        QCOMPARE(empty.exitCode, 0);
        QVERIFY(empty.out.isEmpty());
        add(QStringLiteral("Herbst"), QStringLiteral("Laub"));
        const CliOutcome first = m_cli->run({QStringLiteral("daily-backup")});
        QCOMPARE(first.exitCode, 0);
        QVERIFY2(first.out.startsWith(QStringLiteral("Automatische Tagessicherung erstellt: 1 Gedicht gespeichert. "
                                                     "Datei: daily-")),
                 qPrintable(first.out));
        const CliOutcome second = m_cli->run({QStringLiteral("daily-backup")});
        QCOMPARE(second.exitCode, 0);
        QVERIFY(second.out.isEmpty());
    }

    void safetyBackupsAreListedAndPruned()
    {
        QCOMPARE(m_cli->run({QStringLiteral("safety-backups")}).out, QString());
        QCOMPARE(m_cli->run({QStringLiteral("safety-backups"), QStringLiteral("--json")}).out.trimmed(),
                 QStringLiteral("[]"));
        add(QStringLiteral("Herbst"), QStringLiteral("Laub"));
        add(QStringLiteral("Winter"), QStringLiteral("Schnee"));
        QCOMPARE(m_cli->run({QStringLiteral("daily-backup")}).exitCode, 0);
        const QString folder = m_cli->dataDir() + QStringLiteral("/Safety Backups/");
        const QString daily = QDir(folder).entryList(QDir::Files).value(0);
        // Copies from long ago: of the two daily ones of one month only the newer stays.
        for (const char *name :
             {"daily-2020-01-05-080000.json", "daily-2020-01-20-080000.json", "pre-restore-2020-01-02-080000.json"})
            QVERIFY(QFile::copy(folder + daily, folder + QLatin1String(name)));

        const CliOutcome listed = m_cli->run({QStringLiteral("safety-backups")});
        QCOMPARE(listed.exitCode, 0);
        const QStringList lines = listed.out.trimmed().split(QLatin1Char('\n'));
        QCOMPARE(lines.size(), 4);
        const QStringList newest = lines.first().split(QLatin1Char('\t'));
        QCOMPARE(newest.size(), 5);
        QCOMPARE(newest.at(0), QStringLiteral("Tagesbackup"));
        QCOMPARE(newest.at(2), QStringLiteral("2 Gedichte"));
        QCOMPARE(newest.at(4), daily);
        QVERIFY(lines.last().startsWith(QStringLiteral("Vor Wiederherstellung\t02.01.2020 08:00\t2 Gedichte\t")));

        const CliOutcome json = m_cli->run({QStringLiteral("safety-backups"), QStringLiteral("--json")});
        const QJsonArray entries = QJsonDocument::fromJson(json.out.toUtf8()).array();
        QCOMPARE(entries.size(), 4);
        const QJsonObject oldest = entries.last().toObject();
        QCOMPARE(oldest.value(QStringLiteral("file")).toString(), QStringLiteral("pre-restore-2020-01-02-080000.json"));
        QCOMPARE(oldest.value(QStringLiteral("kind")).toString(), QStringLiteral("pre-restore"));
        QCOMPARE(oldest.value(QStringLiteral("poemCount")).toInt(), 2);
        QCOMPARE(oldest.value(QStringLiteral("bytes")).toInteger(), QFileInfo(folder + daily).size());
        QCOMPARE(oldest.value(QStringLiteral("createdAt")).toString(), QStringLiteral("2020-01-02T07:00:00Z"));

        QCOMPARE(m_cli->run({QStringLiteral("safety-backups"), QStringLiteral("prune")}).out,
                 QStringLiteral("1 Sicherheitsbackup entfernt.\n"));
        QVERIFY(!QFile::exists(folder + QStringLiteral("daily-2020-01-05-080000.json")));
        QVERIFY(QFile::exists(folder + QStringLiteral("daily-2020-01-20-080000.json")));
        QVERIFY(QFile::exists(folder + QStringLiteral("pre-restore-2020-01-02-080000.json")));
        QCOMPARE(m_cli->run({QStringLiteral("safety-backups"), QStringLiteral("prune")}).out,
                 QStringLiteral("0 Sicherheitsbackups entfernt.\n"));
        QCOMPARE(m_cli->run({QStringLiteral("safety-backups"), QStringLiteral("weg")}).exitCode, 2);
        QCOMPARE(
            m_cli->run({QStringLiteral("safety-backups"), QStringLiteral("prune"), QStringLiteral("--json")}).exitCode,
            2);
    }

    void usageErrors()
    {
        const QString file = path(QStringLiteral("b.json"));
        QCOMPARE(m_cli->run({QStringLiteral("backup")}).exitCode, 2);
        QCOMPARE(m_cli->run({QStringLiteral("restore"), file}).exitCode, 2);
        QCOMPARE(
            m_cli->run({QStringLiteral("restore"), file, QStringLiteral("--mode"), QStringLiteral("alles")}).exitCode,
            2);
        QCOMPARE(m_cli
                     ->run({QStringLiteral("restore"), file, QStringLiteral("--preview"), QStringLiteral("--mode"),
                            QStringLiteral("addMissing")})
                     .exitCode,
                 2);
        QCOMPARE(m_cli->run({QStringLiteral("daily-backup"), QStringLiteral("jetzt")}).exitCode, 2);
    }
};

QTEST_GUILESS_MAIN(CliBackupTest)
#include "tst_cli_backup.moc"
