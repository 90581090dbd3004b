#include "CliRunner.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

namespace {

QString dataPath(const QString &name)
{
    return QStringLiteral(ODELEAF_TEST_DATA "/import/") + name;
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
        QTemporaryDir folder;
        const QDir root(folder.path());
        QVERIFY(
            QFile::copy(dataPath(QStringLiteral("Herbstlied.docx")), root.filePath(QStringLiteral("Herbstlied.docx"))));
        QVERIFY(
            QFile::copy(dataPath(QStringLiteral("Abendstille.docx")), root.filePath(QStringLiteral("Entwurf.docx"))));
        QVERIFY(QFile::copy(dataPath(QStringLiteral("Abendstille.pdf")), root.filePath(QStringLiteral("Entwurf.pdf"))));

        const CliOutcome outcome = cli.run({QStringLiteral("import"), folder.path(), QStringLiteral("--assign"),
                                            QStringLiteral("Entwurf.docx=") + other, QStringLiteral("--pdf"),
                                            QStringLiteral("--timeout-docx"), QStringLiteral("5")});
        QCOMPARE(outcome.exitCode, 0);
        QVERIFY2(outcome.out.startsWith(QStringLiteral("Import fertig (2-Phasen): 2 gesetzt, 0 fehlgeschlagen.")),
                 qPrintable(outcome.out));
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

        const CliOutcome undone = cli.run({QStringLiteral("undo-import")});
        QCOMPARE(undone.exitCode, 0);
        QCOMPARE(undone.out, QStringLiteral("Letzter Import rückgängig gemacht: 1 Gedicht wiederhergestellt.\n"));
        QCOMPARE(cli.run({QStringLiteral("undo-import")}).out,
                 QStringLiteral("Kein Import zum Rückgängigmachen vorhanden.\n"));
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
