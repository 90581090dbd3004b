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
};

QTEST_GUILESS_MAIN(CliAnalysisTest)
#include "tst_cli_analysis.moc"
