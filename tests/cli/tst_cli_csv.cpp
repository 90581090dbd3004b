#include "CliRunner.h"
#include "backup/BackupTestSupport.h"

#include <QDir>
#include <QFile>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

class CliCsvTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    QString writeCsv(const QString &name, const QByteArray &bytes)
    {
        return BackupTestSupport::writeFileIn(m_dir.path(), name, bytes);
    }

private Q_SLOTS:
    void importsAndUpdatesThroughTheCommandLine()
    {
        const CliRunner cli(m_dir.filePath(QStringLiteral("data")));
        const QString id =
            cli.run({QStringLiteral("add"), QStringLiteral("--title"), QStringLiteral("Der Mond")}).out.trimmed();
        const QString csv = writeCsv(QStringLiteral("liste.csv"), "Gedicht;Kategorie;Datum;Podcast\n"
                                                                  "der mond;Natur;2021-09-03;ja\n"
                                                                  "Sturm;;3. Sept. 70;\n");
        const CliOutcome outcome = cli.run({QStringLiteral("import-csv"), csv});
        QCOMPARE(outcome.exitCode, 0);
        QVERIFY2(QRegularExpression(
                     QStringLiteral("^CSV Import: 1 neu, 1 aktualisiert, 0 übersprungen\\. Zeilen: 2, Spalten: 4, "
                                    "Trennzeichen: ;\\. Sicherheitsbackup: pre-csv-import-\\d{4}-\\d{2}-\\d{2}-"
                                    "\\d{6}\\.json\\. Encoding: UTF-8\\n$"))
                     .match(outcome.out)
                     .hasMatch(),
                 qPrintable(outcome.out));
        QCOMPARE(QDir(cli.dataDir() + QStringLiteral("/Safety Backups"))
                     .entryList({QStringLiteral("pre-csv-import-*.json")})
                     .size(),
                 1);
        const QJsonObject mond = cli.show(id);
        QCOMPARE(mond.value(QStringLiteral("title")).toString(), QStringLiteral("der mond"));
        QCOMPARE(mond.value(QStringLiteral("category")).toString(), QStringLiteral("Natur"));
        QVERIFY(mond.value(QStringLiteral("inPodcast")).toBool());
        const CliOutcome list = cli.run({QStringLiteral("list")});
        QVERIFY2(list.out.contains(QStringLiteral("Sturm")), qPrintable(list.out));
    }

    void failuresGoToStandardErrorAndChangeNothing()
    {
        const CliRunner cli(m_dir.filePath(QStringLiteral("fails")));
        const CliOutcome headerOnly =
            cli.run({QStringLiteral("import-csv"), writeCsv(QStringLiteral("leer.csv"), "Gedicht;Datum\n")});
        QCOMPARE(headerOnly.exitCode, 1);
        QVERIFY(headerOnly.out.isEmpty());
        QCOMPARE(headerOnly.err, QStringLiteral("CSV Fehler: Keine Datenzeilen. Diagnose: bytes=14 Header: Gedicht, "
                                                "Datum | Encoding: UTF-8\n"));
        const CliOutcome missing =
            cli.run({QStringLiteral("import-csv"), m_dir.filePath(QStringLiteral("nichts.csv"))});
        QCOMPARE(missing.exitCode, 1);
        QVERIFY(missing.err.startsWith(QStringLiteral("Datei konnte nicht gelesen werden: ")));
        QVERIFY(cli.run({QStringLiteral("list")}).out.isEmpty());

        QCOMPARE(cli.run({QStringLiteral("import-csv")}).exitCode, 2);
        QCOMPARE(cli.run({QStringLiteral("import-csv"), QStringLiteral("a.csv"), QStringLiteral("b.csv")}).exitCode, 2);
    }
};

QTEST_GUILESS_MAIN(CliCsvTest)
#include "tst_cli_csv.moc"
