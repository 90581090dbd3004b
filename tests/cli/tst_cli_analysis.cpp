#include "CliRunner.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

class CliAnalysisTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<CliRunner> m_cli;

    QString add(const QString &title, const QStringList &more = {})
    {
        return m_cli->run(QStringList{QStringLiteral("add"), QStringLiteral("--title"), title} + more).out.trimmed();
    }

    QString path(const QString &name) const { return m_dir->filePath(name); }

    static QJsonObject jsonFile(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
    }

private Q_SLOTS:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        m_cli = std::make_unique<CliRunner>(m_dir->filePath(QStringLiteral("data")));
    }

    void readerPackageOfTheActivePoems()
    {
        add(QStringLiteral("Herbst"), {QStringLiteral("--text"), QStringLiteral("Laub")});
        const QString trashed = add(QStringLiteral("Fort"));
        QCOMPARE(m_cli->run({QStringLiteral("trash"), trashed}).exitCode, 0);
        const CliOutcome written =
            m_cli->run({QStringLiteral("reader-package"), path(QStringLiteral("r.odeleafreader"))});
        QCOMPARE(written.exitCode, 0);
        QCOMPARE(written.out,
                 QStringLiteral("Reader-Paket erstellt: 1 Gedicht gespeichert. Datei: r.odeleafreader\n"));
        const QJsonObject package = jsonFile(path(QStringLiteral("r.odeleafreader")));
        QCOMPARE(package.value(QStringLiteral("poemCount")).toInt(), 1);
        QCOMPARE(package.value(QStringLiteral("poems")).toArray().at(0).toObject().value(QStringLiteral("excerpt")),
                 QJsonValue(QStringLiteral("Laub")));

        const CliOutcome failed =
            m_cli->run({QStringLiteral("reader-package"), QStringLiteral("/proc/nirgends/r.odeleafreader")});
        QCOMPARE(failed.exitCode, 1);
        QVERIFY(failed.err.startsWith(QStringLiteral("Reader-Paket konnte nicht erstellt werden: ")));
        QCOMPARE(m_cli->run({QStringLiteral("reader-package")}).exitCode, 2);
    }

    void duplicatesAsTextAndJson()
    {
        const QString first = add(QStringLiteral("Abendlied"));
        add(QStringLiteral("ABENDLIED!"));
        add(QStringLiteral("Mond und Meer"));
        add(QStringLiteral("Mond und Meer und"));
        const CliOutcome text = m_cli->run({QStringLiteral("duplicates")});
        QCOMPARE(text.exitCode, 0);
        const QStringList lines = text.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QCOMPARE(lines.value(0), QStringLiteral("Duplikatprüfung: 1 gleiche Titel, 1 ähnliche Titel gefunden."));
        QCOMPARE(lines.value(1), QStringLiteral("Gleicher Titel „abendlied“:"));
        QVERIFY(lines.contains(QStringLiteral("Ähnliche Titel (90 %):")));
        QVERIFY(text.out.contains(first));

        const CliOutcome json = m_cli->run({QStringLiteral("duplicates"), QStringLiteral("--json")});
        QCOMPARE(json.exitCode, 0);
        const QJsonObject report = QJsonDocument::fromJson(json.out.toUtf8()).object();
        QCOMPARE(report.value(QStringLiteral("poemCount")).toInt(), 4);
        QCOMPARE(report.value(QStringLiteral("exactGroups")).toArray().size(), 1);
        QCOMPARE(report.value(QStringLiteral("similarPairs")).toArray().size(), 1);
        QCOMPARE(m_cli->run({QStringLiteral("duplicates"), QStringLiteral("--csv")}).exitCode, 2);
    }

    void statsAsTextJsonAndPdf()
    {
        add(QStringLiteral("Eins"), {QStringLiteral("--text"), QStringLiteral("a"), QStringLiteral("--published"),
                                     QStringLiteral("--category"), QStringLiteral("Liebe")});
        // A new poem is dated today, as "Neues Gedicht" dates it.
        add(QStringLiteral("Zwei"), {QStringLiteral("--date"), QStringLiteral("2024-05-01")});
        add(QStringLiteral("Drei"), {QStringLiteral("--text"), QStringLiteral("b")});
        const CliOutcome text = m_cli->run({QStringLiteral("stats")});
        QCOMPARE(text.exitCode, 0);
        QVERIFY(text.out.contains(QStringLiteral("Gedichte gesamt: 3\n")));
        QVERIFY(text.out.contains(QStringLiteral("Veröffentlicht: 1 (33,3\u00A0%)\n")));
        QVERIFY(text.out.contains(QStringLiteral("Noch zu erledigen: 1 ohne Text\n")));
        QVERIFY(text.out.contains(QStringLiteral("Ohne Kategorie: 2 gesamt, 1 mit Text, 1 ohne Text, 0 ohne Datum\n")));

        const CliOutcome saved =
            m_cli->run({QStringLiteral("stats"), QStringLiteral("--json"), path(QStringLiteral("s.json")),
                        QStringLiteral("--pdf"), path(QStringLiteral("s.pdf"))});
        QCOMPARE(saved.exitCode, 0);
        QCOMPARE(saved.out, QStringLiteral("Statistik gespeichert: s.json\nStatistik-PDF gespeichert: s.pdf\n"));
        QCOMPARE(jsonFile(path(QStringLiteral("s.json"))).value(QStringLiteral("offeneAufgaben")).toInt(), 1);
        QFile pdf(path(QStringLiteral("s.pdf")));
        QVERIFY(pdf.open(QIODevice::ReadOnly));
        QVERIFY(pdf.read(5) == "%PDF-");

        const CliOutcome failed =
            m_cli->run({QStringLiteral("stats"), QStringLiteral("--json"), QStringLiteral("/proc/x/s.json")});
        QCOMPARE(failed.exitCode, 1);
        QVERIFY(failed.err.startsWith(QStringLiteral("Statistik konnte nicht gespeichert werden: ")));
        QCOMPARE(m_cli->run({QStringLiteral("stats"), QStringLiteral("--json")}).exitCode, 2);
    }

    // The stored poem and a text file give the same analysis; the language is the spell
    // checker's choice unless given.
    void verseOfAPoemAndOfAFile()
    {
        const QString text = QStringLiteral("Ich ging im Walde\nSo für mich hin,\n\n* * *\nIm Schatten sah ich\nEin "
                                            "Blümchen stehn,\nWie Sterne leuchtend,\nWie Äuglein schön.\n");
        const QString id = add(QStringLiteral("Gefunden"), {QStringLiteral("--text"), text});
        const CliOutcome fromPoem = m_cli->run({QStringLiteral("verse"), id});
        QCOMPARE(fromPoem.exitCode, 0);
        QCOMPARE(fromPoem.out, QStringLiteral("5\tA\txXxXx\tIch ging im Walde\n"
                                              "4\tB\txXxX\tSo für mich hin,\n"
                                              "\n"
                                              "0\t\t\t* * *\n"
                                              "5\tA\txXxXx\tIm Schatten sah ich\n"
                                              "4\tB\txXxX\tEin Blümchen stehn,\n"
                                              "5\tC\txXxXx\tWie Sterne leuchtend,\n"
                                              "4\tD\txXxX\tWie Äuglein schön.\n"
                                              "2-hebiger Jambus\n"));

        QFile file(path(QStringLiteral("poem.txt")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.write(text.toUtf8()) > 0);
        file.close();
        const CliOutcome json = m_cli->run(
            {QStringLiteral("verse"), QStringLiteral("--text-file"), file.fileName(), QStringLiteral("--json")});
        QCOMPARE(json.exitCode, 0);
        const QJsonObject analysis = QJsonDocument::fromJson(json.out.toUtf8()).object();
        QCOMPARE(analysis.value(QStringLiteral("language")).toString(), QStringLiteral("de"));
        QCOMPARE(analysis.value(QStringLiteral("meter")).toObject(),
                 (QJsonObject{{QStringLiteral("name"), QStringLiteral("Jambus")}, {QStringLiteral("feet"), 2}}));
        const QJsonArray stanzas = analysis.value(QStringLiteral("stanzas")).toArray();
        QCOMPARE(stanzas.size(), 2);
        const QJsonObject second = stanzas.at(1).toObject();
        QCOMPARE(second.value(QStringLiteral("scheme")).toString(), QStringLiteral("ABCD"));
        const QJsonArray lines = second.value(QStringLiteral("lines")).toArray();
        QVERIFY(!lines.at(0).toObject().contains(QStringLiteral("rhyme")));
        const QJsonObject stehn = lines.at(2).toObject();
        QCOMPARE(stehn.value(QStringLiteral("syllables")).toInt(), 4);
        QCOMPARE(stehn.value(QStringLiteral("stress")).toString(), QStringLiteral("xXxX"));
        QCOMPARE(stehn.value(QStringLiteral("rhymeKey")).toString(), QStringLiteral("e:n"));
        QCOMPARE(stehn.value(QStringLiteral("impureWith")).toString(), QStringLiteral("D"));
        QCOMPARE(lines.at(4).toObject().value(QStringLiteral("impureWith")).toString(), QStringLiteral("B"));

        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QVERIFY(file.write("Whose woods these are I think I know.\nHis house is in the village though;\n") > 0);
        file.close();
        const CliOutcome english = m_cli->run(
            {QStringLiteral("verse"), QStringLiteral("--text-file"), file.fileName(), QStringLiteral("--json")});
        QCOMPARE(QJsonDocument::fromJson(english.out.toUtf8()).object().value(QStringLiteral("language")).toString(),
                 QStringLiteral("en"));
        const CliOutcome forced =
            m_cli->run({QStringLiteral("verse"), QStringLiteral("--text-file"), file.fileName(),
                        QStringLiteral("--language"), QStringLiteral("de"), QStringLiteral("--json")});
        QCOMPARE(QJsonDocument::fromJson(forced.out.toUtf8()).object().value(QStringLiteral("language")).toString(),
                 QStringLiteral("de"));
    }

    void verseRefusals_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::newRow("neither poem nor file") << QStringList{"verse"} << 2;
        QTest::newRow("both poem and file") << QStringList{"verse", "x", "--text-file", "f.txt"} << 2;
        QTest::newRow("unknown language") << QStringList{"verse", "--text-file", "f.txt", "--language", "fr"} << 2;
        QTest::newRow("unknown poem") << QStringList{"verse", "00000000-0000-0000-0000-000000000001"} << 1;
        QTest::newRow("missing file") << QStringList{"verse", "--text-file", "/nirgends/f.txt"} << 1;
    }

    void verseRefusals()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        const CliOutcome outcome = m_cli->run(arguments);
        QCOMPARE(outcome.exitCode, exitCode);
        QVERIFY(outcome.out.isEmpty());
        QVERIFY(!outcome.err.isEmpty());
    }
};

QTEST_GUILESS_MAIN(CliAnalysisTest)
#include "tst_cli_analysis.moc"
