#include "CliRunner.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

class CliLibraryTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<CliRunner> m_cli;

    QString add(const QStringList &arguments)
    {
        const CliOutcome added = m_cli->run(QStringList{QStringLiteral("add")} + arguments);
        return added.exitCode == 0 ? added.out.trimmed() : QString();
    }

    QStringList lines(const QStringList &arguments)
    {
        const CliOutcome outcome = m_cli->run(arguments);
        if (outcome.exitCode != 0)
            return {QStringLiteral("exit %1: %2").arg(outcome.exitCode).arg(outcome.err)};
        return outcome.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    QJsonDocument json(const QStringList &arguments)
    {
        return QJsonDocument::fromJson(m_cli->run(arguments).out.toUtf8());
    }

private Q_SLOTS:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        m_cli = std::make_unique<CliRunner>(m_dir->path());
    }

    void listShowsRowsSummaryAndJson()
    {
        const QString herbst = add({"--title", "Herbst", "--text", "Die Blätter\tfallen", "--category", "Natur",
                                    "--date", "2024-10-03", "--published"});
        add({"--title", "Der Müller", "--category", "Elegie", "--podcast"});
        QVERIFY(!herbst.isEmpty());

        const QStringList all = lines({"list", "--sort", "Titel"});
        QCOMPARE(all.size(), 2);
        QCOMPARE(all.at(0), QStringLiteral("Der Müller\t%1\tElegie\tPodcast\tNoch kein Gedichttext hinterlegt.")
                                .arg(QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy"))));
        QCOMPARE(all.at(1), QStringLiteral("Herbst\t03.10.2024\tNatur\tVeröffentlicht\tDie Blätter fallen"));

        QCOMPARE(lines({"list", "--search", "Mueller", "--mode", "Titel"}).last(),
                 QStringLiteral("1 von 2 Gedicht gefunden"));
        QCOMPARE(lines({"list", "--scope", "Ohne Text"}),
                 (QStringList{lines({"list"}).first(), QStringLiteral("1 Gedicht ohne Text")}));
        QCOMPARE(lines({"list", "--category", "Natur"}).last(), QStringLiteral("1 Gedicht in Natur"));
        // No poem without category yet: the filter does not exist and falls back to all.
        QCOMPARE(lines({"list", "--category", ""}).size(), 2);

        const QJsonObject document = json({"list", "--search", "blätter", "--mode", "Alles", "--json"}).object();
        QCOMPARE(document.value("summary").toString(), QStringLiteral("1 von 2 Gedicht gefunden"));
        const QJsonObject row = document.value("rows").toArray().first().toObject();
        QCOMPARE(row.value("id").toString(), herbst);
        QCOMPARE(row.value("hasText").toBool(), true);
        QCOMPARE(row.value("isPublished").toBool(), true);
        QCOMPARE(row.value("category").toString(), QStringLiteral("Natur"));
        const QJsonObject counts = document.value("counts").toObject();
        QCOMPARE(counts.value("activePoemCount").toInt(), 2);
        QCOMPARE(counts.value("scopedActivePoemCount").toInt(), 1);
        QCOMPARE(counts.value("missingTextCount").toInt(), 1);
        QCOMPARE(counts.value("trashCount").toInt(), 0);
        QCOMPARE(counts.size(), 9);
        QCOMPARE(document.value("categoryFilters").toArray().size(), 2);
        QVERIFY(!json({"list", "--json"}).object().contains("summary"));

        add({"--title", "Notiz"});
        const QStringList uncategorised = lines({"list", "--category", ""});
        QCOMPARE(uncategorised.size(), 2);
        QVERIFY(uncategorised.first().startsWith(QStringLiteral("Notiz\t")));
        QCOMPARE(uncategorised.last(), QStringLiteral("1 Gedicht in Ohne Kategorie"));

        QCOMPARE(m_cli->run({"list", "--sort", "Alphabetisch"}).exitCode, 2);
        QCOMPARE(m_cli->run({"list", "--mode", "title"}).exitCode, 2);
        QCOMPARE(m_cli->run({"list", "--scope", "Papierkorb"}).exitCode, 2);
    }

    void duplicateAndTrashRoundTrip()
    {
        const QString id = add({"--title", "Abendlied", "--text", "Der Mond ist aufgegangen"});
        add({"--title", "   "});
        QCOMPARE(lines({"duplicate", id}), QStringList{"Gedicht dupliziert: Abendlied Kopie"});
        QCOMPARE(lines({"trash", id}), QStringList{"Gedicht in den Papierkorb verschoben: Abendlied"});
        QCOMPARE(m_cli->run({"trash", id}).exitCode, 1);
        QCOMPARE(m_cli->run({"duplicate", id}).exitCode, 1);

        const QStringList listed = lines({"list", "--sort", "Titel"});
        QCOMPARE(listed.size(), 2);
        QVERIFY(listed.at(1).startsWith(QStringLiteral("Abendlied Kopie\t")));

        const QStringList trashed = lines({"trash-list"});
        QCOMPARE(trashed.size(), 1);
        const QStringList fields = trashed.first().split(QLatin1Char('\t'));
        QCOMPARE(fields.at(0), id);
        QCOMPARE(fields.at(1), QStringLiteral("Abendlied"));
        QVERIFY(fields.at(2).endsWith(QLatin1Char('Z')));

        QCOMPARE(lines({"trash-restore", id}), QStringList{"Gedicht wiederhergestellt: Abendlied"});
        QCOMPARE(m_cli->run({"trash-restore", id}).exitCode, 1);
        QVERIFY(lines({"list"}).first().startsWith(QStringLiteral("Abendlied\t")));

        lines({"trash", id});
        QCOMPARE(lines({"trash-delete", id}), QStringList{"Gedicht endgültig gelöscht: Abendlied"});
        QCOMPARE(m_cli->run({"show", id}).exitCode, 1);
    }

    void emptyingTheTrash()
    {
        const QString first = add({"--title", "Eins"});
        const QString second = add({"--title", ""});
        QCOMPARE(lines({"trash-empty"}), QStringList{"Papierkorb geleert: 0 Gedichte endgültig gelöscht."});
        lines({"trash", first});
        QCOMPARE(lines({"trash", second}), QStringList{"Gedicht in den Papierkorb verschoben: (ohne Titel)"});
        const QJsonArray listed = json({"trash-list", "--json"}).array();
        QCOMPARE(listed.size(), 2);
        QCOMPARE(listed.at(0).toObject().value("title").toString(), QStringLiteral("(ohne Titel)"));
        QCOMPARE(lines({"trash-empty"}), QStringList{"Papierkorb geleert: 2 Gedichte endgültig gelöscht."});
        QCOMPARE(lines({"trash-list"}), QStringList{});
        QCOMPARE(json({"list", "--json"}).object().value("counts").toObject().value("activePoemCount").toInt(), 0);
    }
};

QTEST_GUILESS_MAIN(CliLibraryTest)
#include "tst_cli_library.moc"
