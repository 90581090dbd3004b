#include "CliRunner.h"
#include "StoreFaults.h"
#include "TmpfsMount.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <unistd.h>

namespace {

QString dataPath(const QString &name)
{
    return QStringLiteral(ODELEAF_TEST_DATA "/import/") + name;
}

QJsonObject readJson(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

} // namespace

class CliImportTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dataDir;
    CliRunner m_cli{m_dataDir.path()};

    QString add(const QString &title)
    {
        return m_cli.run({QStringLiteral("add"), QStringLiteral("--title"), title}).out.trimmed();
    }

private Q_SLOTS:
    void extractPrintsThePlainText()
    {
        const CliOutcome outcome = m_cli.run({QStringLiteral("extract"), dataPath(QStringLiteral("Herbstlied.docx"))});
        QCOMPARE(outcome.exitCode, 0);
        QFile expected(dataPath(QStringLiteral("Herbstlied.expected.txt")));
        QVERIFY(expected.open(QIODevice::ReadOnly));
        QCOMPARE(outcome.out, QString::fromUtf8(expected.readAll()));
    }

    void extractFailuresGoToStandardError()
    {
        const CliOutcome scan = m_cli.run({QStringLiteral("extract"), dataPath(QStringLiteral("Nur-Bild.pdf"))});
        QCOMPARE(scan.exitCode, 1);
        QVERIFY(scan.out.isEmpty());
        QCOMPARE(scan.err, QStringLiteral("Kein Text extrahiert (leer).\n"));
        const CliOutcome bomb = m_cli.run({QStringLiteral("extract"), dataPath(QStringLiteral("Bombe.docx"))});
        QCOMPARE(bomb.exitCode, 1);
        QVERIFY(bomb.err.startsWith(QStringLiteral("Extraktion fehlgeschlagen: ")));
        QCOMPARE(m_cli.run({QStringLiteral("extract")}).exitCode, 2);
        QCOMPARE(m_cli.run({QStringLiteral("extract"), QStringLiteral("a.docx"), QStringLiteral("b.docx")}).exitCode,
                 2);
    }

    void scanPrintsTheProposals()
    {
        const QString herbst = add(QStringLiteral("Herbstlied"));
        add(QStringLiteral("Der Mond"));
        QTemporaryDir folder;
        const QDir root(folder.path());
        QVERIFY(root.mkpath(QStringLiteral("2020")));
        QVERIFY(QFile::copy(dataPath(QStringLiteral("Herbstlied.docx")),
                            root.filePath(QStringLiteral("2020/Herbstlied.docx"))));
        QVERIFY(QFile::copy(dataPath(QStringLiteral("Abendstille.pdf")), root.filePath(QStringLiteral("Mond.pdf"))));
        QVERIFY(QFile::copy(dataPath(QStringLiteral("Bild.png")), root.filePath(QStringLiteral("Mond.png"))));

        const CliOutcome outcome = m_cli.run({QStringLiteral("scan"), folder.path()});
        QCOMPARE(outcome.exitCode, 0);
        QJsonArray proposals = QJsonDocument::fromJson(outcome.out.toUtf8()).array();
        QCOMPARE(proposals.size(), 2);
        QJsonObject herbstProposal, mondProposal;
        for (const QJsonValue proposal : proposals) {
            if (proposal[QStringLiteral("fileName")] == QStringLiteral("Herbstlied.docx"))
                herbstProposal = proposal.toObject();
            else
                mondProposal = proposal.toObject();
        }
        QCOMPARE(herbstProposal[QStringLiteral("relativePath")].toString(), QStringLiteral("2020/Herbstlied.docx"));
        QCOMPARE(herbstProposal[QStringLiteral("chosenPoemObjectURI")].toString(), herbst);
        QCOMPARE(herbstProposal[QStringLiteral("suggestedScore")].toDouble(), 1.0);
        QCOMPARE(mondProposal[QStringLiteral("suggestedTitle")].toString(), QStringLiteral("Der Mond"));
        QCOMPARE(mondProposal[QStringLiteral("suggestedScore")].toDouble(), 0.5);
        QVERIFY(!mondProposal.contains(QStringLiteral("chosenPoemObjectURI")));
        const QJsonObject candidate = mondProposal[QStringLiteral("candidates")].toArray().at(0).toObject();
        QCOMPARE(candidate.keys(), (QStringList{"poemObjectURI", "poemTitle", "score"}));

        const CliOutcome images = m_cli.run({QStringLiteral("scan"), folder.path(), QStringLiteral("--images")});
        QCOMPARE(images.exitCode, 0);
        proposals = QJsonDocument::fromJson(images.out.toUtf8()).array();
        QCOMPARE(proposals.size(), 1);
        QCOMPARE(proposals.at(0)[QStringLiteral("fileName")].toString(), QStringLiteral("Mond.png"));
    }

    void scanOfAMissingFolderFails()
    {
        const CliOutcome outcome = m_cli.run({QStringLiteral("scan"), m_dataDir.filePath(QStringLiteral("fehlt"))});
        QCOMPARE(outcome.exitCode, 1);
        QVERIFY(outcome.err.startsWith(QStringLiteral("Ordner nicht gefunden: ")));
        QCOMPARE(m_cli.run({QStringLiteral("scan"), QStringLiteral("--pictures"), QStringLiteral(".")}).exitCode, 2);
    }

    void importAppliesTheChosenFilesAndUndoTakesThemBack()
    {
        // An archive of its own: the other tests' poems would be candidates too.
        QTemporaryDir dataDir;
        const CliRunner cli(dataDir.path());
        const auto add = [&cli](const QString &title) {
            return cli.run({QStringLiteral("add"), QStringLiteral("--title"), title}).out.trimmed();
        };
        const QString herbst = add(QStringLiteral("Herbstlied"));
        const QString other = add(QStringLiteral("Ganz anderes Gedicht"));
        const QString third = add(QStringLiteral("Noch eines"));
        QTemporaryDir folder;
        const QDir root(folder.path());
        QVERIFY(
            QFile::copy(dataPath(QStringLiteral("Herbstlied.docx")), root.filePath(QStringLiteral("Herbstlied.docx"))));
        QVERIFY(
            QFile::copy(dataPath(QStringLiteral("Abendstille.docx")), root.filePath(QStringLiteral("Entwurf.docx"))));
        QVERIFY(QFile::copy(dataPath(QStringLiteral("Abendstille.pdf")), root.filePath(QStringLiteral("Entwurf.pdf"))));
        QVERIFY(
            QFile::copy(dataPath(QStringLiteral("Abendstille.docx")), root.filePath(QStringLiteral("Skizze.docx"))));

        // Every --assign counts, not only the last one.
        const CliOutcome outcome = cli.run({QStringLiteral("import"), folder.path(), QStringLiteral("--assign"),
                                            QStringLiteral("Entwurf.docx=") + other, QStringLiteral("--pdf"),
                                            QStringLiteral("--assign=Skizze.docx=") + third,
                                            QStringLiteral("--timeout-docx"), QStringLiteral("5")});
        QCOMPARE(outcome.exitCode, 0);
        QVERIFY2(outcome.out.startsWith(QStringLiteral("Import fertig (2-Phasen): 3 gesetzt, 0 fehlgeschlagen.")),
                 qPrintable(outcome.out));
        QVERIFY(!cli.show(other)[QStringLiteral("text")].toString().isEmpty());
        QVERIFY(!cli.show(third)[QStringLiteral("text")].toString().isEmpty());
        QVERIFY(outcome.out.contains(QStringLiteral("Sicherheitsbackup: pre-text-import-")));
        QCOMPARE(outcome.out.count(QLatin1Char('\n')), 1);
        QFile expected(dataPath(QStringLiteral("Herbstlied.expected.txt")));
        QVERIFY(expected.open(QIODevice::ReadOnly));
        QCOMPARE(cli.show(herbst)[QStringLiteral("text")].toString(), QString::fromUtf8(expected.readAll()).trimmed());
        QVERIFY(cli.show(herbst).contains(QStringLiteral("richTextData")));
        QVERIFY(QFileInfo::exists(QDir(dataDir.path()).filePath(QStringLiteral("last_import_report.json"))));

        // Without --overwrite a poem that has text is left alone.
        const CliOutcome again = cli.run({QStringLiteral("import"), folder.path()});
        QVERIFY2(again.out.contains(QStringLiteral("0 gesetzt")) &&
                     again.out.contains(QStringLiteral("Übersprungen (hat Text): 1.")),
                 qPrintable(again.out));
        const CliOutcome overwrite = cli.run(
            {QStringLiteral("import"), folder.path(), QStringLiteral("--overwrite"), QStringLiteral("--one-pass")});
        QVERIFY2(overwrite.out.startsWith(QStringLiteral("Import fertig (1-Pass): 1 gesetzt")),
                 qPrintable(overwrite.out));

        // That run set the text the poem had already: undo has nothing to put back.
        const CliOutcome undone = cli.run({QStringLiteral("undo-import")});
        QCOMPARE(undone.exitCode, 0);
        QCOMPARE(undone.out, QStringLiteral("Letzter Import rückgängig gemacht: 0 Gedichte wiederhergestellt.\n"));
        QCOMPARE(cli.run({QStringLiteral("undo-import")}).out,
                 QStringLiteral("Kein Import zum Rückgängigmachen vorhanden.\n"));
    }

    // The store refuses the batch, or the undo record meets a full disk: nothing may be
    // reported as set, the command fails, and undo claims no poem it did not change.
    void importThatCannotStoreFails_data()
    {
        QTest::addColumn<bool>("fullDisk");
        QTest::newRow("store refuses the commit") << false;
        QTest::newRow("undo record on a full disk") << true;
    }

    void importThatCannotStoreFails()
    {
        QFETCH(bool, fullDisk);
        TmpfsMount disk(256 << 10);
        if (fullDisk && !disk.isMounted())
            QSKIP(TmpfsMount::skipReason());
        QTemporaryDir dataDir;
        const CliRunner cli(dataDir.path());
        const QString herbst =
            cli.run({QStringLiteral("add"), QStringLiteral("--title"), QStringLiteral("Herbstlied")}).out.trimmed();
        QTemporaryDir folder;
        QVERIFY(QFile::copy(dataPath(QStringLiteral("Herbstlied.docx")),
                            QDir(folder.path()).filePath(QStringLiteral("Herbstlied.docx"))));
        const QString undoFile = dataDir.filePath(QStringLiteral("last_text_import_undo.json"));
        if (fullDisk) {
            // The record's file lies on the full disk; the safety backup still has room.
            QFile record(disk.filePath(QStringLiteral("undo.json")));
            QVERIFY(record.open(QIODevice::WriteOnly) && record.write("[]") == 2);
            record.close();
            QVERIFY(QFile::link(record.fileName(), undoFile));
            QVERIFY(disk.leaveFree(0));
        } else {
            executeOnStore(dataDir.filePath(QStringLiteral("OdeLeaf.sqlite")),
                           "CREATE TRIGGER refuse BEFORE UPDATE ON poem BEGIN SELECT RAISE(ABORT, 'voll'); END");
        }

        const CliOutcome outcome = cli.run({QStringLiteral("import"), folder.path()});
        QCOMPARE(outcome.exitCode, 1);
        QVERIFY2(outcome.err.startsWith(QStringLiteral("Achtung: 1 Datei wurde nicht gespeichert (")),
                 qPrintable(outcome.err));
        QVERIFY2(outcome.err.contains(QStringLiteral("0 gesetzt, 1 fehlgeschlagen.")), qPrintable(outcome.err));
        if (fullDisk)
            QVERIFY2(outcome.err.contains(QStringLiteral("Nicht genug Speicherplatz")), qPrintable(outcome.err));
        QVERIFY(cli.show(herbst)[QStringLiteral("text")].toString().isEmpty());

        const CliOutcome undone = cli.run({QStringLiteral("undo-import")});
        QCOMPARE(undone.exitCode, 0);
        QCOMPARE(undone.out, QStringLiteral("Kein Import zum Rückgängigmachen vorhanden.\n"));
    }

    void filesWithUnreadableNamesAreReported()
    {
        QTemporaryDir dataDir;
        const CliRunner cli(dataDir.path());
        cli.run({QStringLiteral("add"), QStringLiteral("--title"), QStringLiteral("Herbstlied")});
        QTemporaryDir folder;
        QVERIFY(QFile::copy(dataPath(QStringLiteral("Herbstlied.docx")),
                            QDir(folder.path()).filePath(QStringLiteral("Herbstlied.docx"))));
        // A Latin-1 name from an old disk, "Märzlied.docx": no QString can name it.
        QFile document(dataPath(QStringLiteral("Herbstlied.docx")));
        QVERIFY(document.open(QIODevice::ReadOnly));
        const QByteArray bytes = document.readAll();
        const int descriptor =
            ::open((QFile::encodeName(folder.path()) + "/M\xe4rzlied.docx").constData(), O_CREAT | O_WRONLY, 0600);
        QVERIFY(descriptor >= 0);
        QCOMPARE(::write(descriptor, bytes.constData(), size_t(bytes.size())), ssize_t(bytes.size()));
        ::close(descriptor);
        const CliOutcome outcome = cli.run({QStringLiteral("import"), folder.path()});
        QCOMPARE(outcome.exitCode, 0);
        QVERIFY2(outcome.out.contains(QStringLiteral("1 gesetzt, 1 fehlgeschlagen.")), qPrintable(outcome.out));
        const QJsonObject report = readJson(dataDir.filePath(QStringLiteral("last_import_report.json")));
        const QJsonArray items = report.value(QStringLiteral("items")).toArray();
        QStringList failed;
        for (const QJsonValue item : items) {
            if (item.toObject().value(QStringLiteral("status")).toString() == QStringLiteral("Fehlgeschlagen"))
                failed.append(item.toObject().value(QStringLiteral("fileName")).toString());
        }
        QCOMPARE(failed.size(), 1);
        QVERIFY2(failed.first().startsWith(u'M') && failed.first().endsWith(QStringLiteral("rzlied.docx")),
                 qPrintable(failed.first()));
        // The reason is no report reason of its own: the technical details carry it.
        QFile log(dataDir.filePath(QStringLiteral("import_failures.txt")));
        QVERIFY(log.open(QIODevice::ReadOnly));
        QVERIFY(QString::fromUtf8(log.readAll()).contains(QStringLiteral("Der Dateiname ist kein gültiges UTF-8")));
    }

    void importUsageAndFailures()
    {
        QCOMPARE(m_cli.run({QStringLiteral("import")}).exitCode, 2);
        QCOMPARE(m_cli
                     .run({QStringLiteral("import"), QStringLiteral("."), QStringLiteral("--min-score-pdf"),
                           QStringLiteral("hoch")})
                     .exitCode,
                 2);
        QCOMPARE(m_cli
                     .run({QStringLiteral("import"), QStringLiteral("."), QStringLiteral("--assign"),
                           QStringLiteral("a.docx=keine-id")})
                     .exitCode,
                 2);
        const CliOutcome missing = m_cli.run({QStringLiteral("import"), m_dataDir.filePath(QStringLiteral("fehlt"))});
        QCOMPARE(missing.exitCode, 1);
        QVERIFY(missing.err.startsWith(QStringLiteral("Ordner nicht gefunden: ")));
        QTemporaryDir empty;
        const CliOutcome nothing = m_cli.run({QStringLiteral("import"), empty.path()});
        QCOMPARE(nothing.exitCode, 0);
        QCOMPARE(nothing.out, QStringLiteral("Nichts zu importieren.\n"));
        QCOMPARE(m_cli.run({QStringLiteral("undo-import"), QStringLiteral("x")}).exitCode, 2);
    }
};

QTEST_GUILESS_MAIN(CliImportTest)
#include "tst_cli_import.moc"
