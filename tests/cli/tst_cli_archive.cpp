#include "CliRunner.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QUuid>

class CliArchiveTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<CliRunner> m_cli;

private Q_SLOTS:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        m_cli = std::make_unique<CliRunner>(m_dir->path());
    }

    void addShowAndSetEditAPoem()
    {
        const CliOutcome added =
            m_cli->run({QStringLiteral("add"), QStringLiteral("--title"), QStringLiteral("Über den Fluss"),
                        QStringLiteral("--text"), QStringLiteral("Erste Zeile\nZweite/Zeile"),
                        QStringLiteral("--category"), QStringLiteral("Lyrik"), QStringLiteral("--date"),
                        QStringLiteral("2024-03-01"), QStringLiteral("--published")});
        QCOMPARE(added.exitCode, 0);
        const QString id = added.out.trimmed();
        QCOMPARE(id.size(), 36);
        QCOMPARE(id, id.toUpper());
        QVERIFY(QFile::exists(m_dir->filePath(QStringLiteral("OdeLeaf.sqlite"))));

        const CliOutcome raw = m_cli->run({QStringLiteral("show"), id});
        QVERIFY(raw.out.contains(QStringLiteral("\"text\" : \"Erste Zeile\\nZweite\\/Zeile\"")));
        QJsonObject poem = m_cli->show(id);
        QCOMPARE(poem.value(QStringLiteral("titleNormalized")).toString(), QStringLiteral("ueber den fluss"));
        QCOMPARE(poem.value(QStringLiteral("isPublished")).toBool(), true);
        QCOMPARE(poem.value(QStringLiteral("inPodcast")).toBool(), false);
        QVERIFY(!poem.contains(QStringLiteral("writerNotes")));
        QVERIFY(!poem.contains(QStringLiteral("externalId")));
        const QString updated = poem.value(QStringLiteral("updatedAt")).toString();
        QVERIFY(updated.endsWith(QLatin1Char('Z')));

        const CliOutcome set = m_cli->run({QStringLiteral("set"), id, QStringLiteral("--podcast"),
                                           QStringLiteral("true"), QStringLiteral("--notes"), QString()});
        QCOMPARE(set.exitCode, 0);
        QCOMPARE(set.out, QStringLiteral("Gespeichert\n"));
        poem = m_cli->show(id);
        QCOMPARE(poem.value(QStringLiteral("inPodcast")).toBool(), true);
        QCOMPARE(poem.value(QStringLiteral("writerNotes")).toString(QStringLiteral("absent")), QString());
        QCOMPARE(poem.value(QStringLiteral("titleNormalized")).toString(), QStringLiteral("ueber den fluss"));
    }

    void badInputEndsWithTheRightStatus()
    {
        QCOMPARE(m_cli->run({QStringLiteral("frobnicate")}).exitCode, 2);
        QCOMPARE(m_cli->run({QStringLiteral("add")}).exitCode, 2);
        QCOMPARE(m_cli
                     ->run({QStringLiteral("add"), QStringLiteral("--title"), QStringLiteral("x"),
                            QStringLiteral("--colour"), QStringLiteral("red")})
                     .exitCode,
                 2);
        QCOMPARE(m_cli->run({QStringLiteral("show")}).exitCode, 2);
        const CliOutcome missing =
            m_cli->run({QStringLiteral("show"), QStringLiteral("6F1C2A53-3D0E-4E43-9C7B-0B6E2B4D1A11")});
        QCOMPARE(missing.exitCode, 1);
        QVERIFY(missing.err.startsWith(QStringLiteral("Gedicht nicht gefunden")));

        const CliOutcome added = m_cli->run({QStringLiteral("add"), QStringLiteral("--title"), QStringLiteral("x")});
        const CliOutcome badDate =
            m_cli->run({QStringLiteral("set"), added.out.trimmed(), QStringLiteral("--date"), QStringLiteral("gestern"),
                        QStringLiteral("--title"), QStringLiteral("y")});
        QCOMPARE(badDate.exitCode, 2);
        QCOMPARE(m_cli->show(added.out.trimmed()).value(QStringLiteral("title")).toString(), QStringLiteral("x"));
    }

    void unreadableStoreIsReportedAndKept()
    {
        QFile store(m_dir->filePath(QStringLiteral("OdeLeaf.sqlite")));
        QVERIFY(store.open(QIODevice::WriteOnly));
        store.write(QByteArray(4096, '\x7f'));
        store.close();
        const CliOutcome outcome = m_cli->run({QStringLiteral("add"), QStringLiteral("--title"), QStringLiteral("x")});
        QCOMPARE(outcome.exitCode, 1);
        QVERIFY2(outcome.err.startsWith(QStringLiteral("Archiv konnte nicht geöffnet werden: ")),
                 qPrintable(outcome.err));
        QVERIFY(store.open(QIODevice::ReadOnly));
        QCOMPARE(store.readAll(), QByteArray(4096, '\x7f'));
    }

    void normalizeAndPreferences()
    {
        QCOMPARE(m_cli->run({QStringLiteral("normalize"), QStringLiteral("Straße_2")}).out,
                 QStringLiteral("strasse 2\n"));
        QCOMPARE(
            m_cli->run({QStringLiteral("normalize"), QStringLiteral("--fuzzy"), QStringLiteral("Herbst final v2")}).out,
            QStringLiteral("herbst\n"));
        QCOMPARE(
            m_cli->run({QStringLiteral("prefs"), QStringLiteral("get"), QStringLiteral("automaticDailyBackupEnabled")})
                .out,
            QStringLiteral("true\n"));
        QCOMPARE(m_cli
                     ->run({QStringLiteral("prefs"), QStringLiteral("set"),
                            QStringLiteral("automaticDailyBackupEnabled"), QStringLiteral("false")})
                     .exitCode,
                 0);
        QCOMPARE(
            m_cli->run({QStringLiteral("prefs"), QStringLiteral("get"), QStringLiteral("automaticDailyBackupEnabled")})
                .out,
            QStringLiteral("false\n"));
        QCOMPARE(m_cli
                     ->run({QStringLiteral("prefs"), QStringLiteral("set"), QStringLiteral("poemCategories"),
                            QStringLiteral("[\"Lyrik\",\"Prosa\"]")})
                     .out,
                 QStringLiteral("[\"Lyrik\",\"Prosa\"]\n"));
        QCOMPARE(m_cli->run({QStringLiteral("prefs"), QStringLiteral("get"), QStringLiteral("nope")}).exitCode, 2);
        QCOMPARE(m_cli
                     ->run({QStringLiteral("prefs"), QStringLiteral("set"), QStringLiteral("poemCategories"),
                            QStringLiteral("Lyrik")})
                     .exitCode,
                 2);
    }

    void categoryCommandsRelabelPoems()
    {
        const QString id = m_cli
                               ->run({QStringLiteral("add"), QStringLiteral("--title"), QStringLiteral("a"),
                                      QStringLiteral("--category"), QStringLiteral("Lyrik")})
                               .out.trimmed();
        QCOMPARE(m_cli->run({QStringLiteral("category-add"), QStringLiteral("Lyrik")}).exitCode, 0);
        QCOMPARE(
            m_cli->run({QStringLiteral("category-rename"), QStringLiteral("Lyrik"), QStringLiteral("Verse")}).exitCode,
            0);
        QCOMPARE(m_cli->show(id).value(QStringLiteral("category")).toString(), QStringLiteral("Verse"));
        QCOMPARE(m_cli->run({QStringLiteral("prefs"), QStringLiteral("get"), QStringLiteral("poemCategories")}).out,
                 QStringLiteral("[\"Verse\"]\n"));
        QCOMPARE(m_cli->run({QStringLiteral("category-remove"), QStringLiteral("Verse")}).exitCode, 0);
        const QJsonObject poem = m_cli->show(id);
        QVERIFY(poem.contains(QStringLiteral("category")));
        QCOMPARE(poem.value(QStringLiteral("category")).toString(), QString());
    }

    void versionsFollowAPoemAndBringItBack()
    {
        const QString id = m_cli
                               ->run({QStringLiteral("add"), QStringLiteral("--title"), QStringLiteral("Mond"),
                                      QStringLiteral("--text"), QStringLiteral("Der Mond scheint hell")})
                               .out.trimmed();
        QCOMPARE(
            m_cli->run({QStringLiteral("set"), id, QStringLiteral("--text"), QStringLiteral("Der Mond scheint klar")})
                .exitCode,
            0);
        const CliOutcome saved =
            m_cli->run({QStringLiteral("version-save"), id, QStringLiteral("--name"), QStringLiteral("an Verlag")});
        QCOMPARE(saved.out, QStringLiteral("Fassung gesichert.\n"));

        const CliOutcome listed = m_cli->run({QStringLiteral("versions"), id, QStringLiteral("--json")});
        QCOMPARE(listed.exitCode, 0);
        const QJsonArray versions = QJsonDocument::fromJson(listed.out.toUtf8()).array();
        QCOMPARE(versions.size(), 3); // before the edit, after it, and by hand
        QCOMPARE(versions.at(0)[QStringLiteral("name")].toString(), QStringLiteral("an Verlag"));
        QCOMPARE(versions.at(0)[QStringLiteral("number")].toInt(), 3);
        QCOMPARE(versions.at(1)[QStringLiteral("wordsAdded")].toInt(), 1);
        QCOMPARE(versions.at(1)[QStringLiteral("wordsRemoved")].toInt(), 1);
        QVERIFY(!versions.at(2).toObject().contains(QStringLiteral("name")));
        QVERIFY(m_cli->run({QStringLiteral("versions"), id}).out.startsWith(QStringLiteral("3\t")));

        QCOMPARE(m_cli->run({QStringLiteral("version-show"), id, QStringLiteral("1")}).out,
                 QStringLiteral("Der Mond scheint hell\n"));
        QCOMPARE(m_cli->run({QStringLiteral("version-show"), id, QStringLiteral("1"), QStringLiteral("--diff")}).out,
                 QStringLiteral("Der Mond scheint [-hell-] {+klar+}\n"));
        QCOMPARE(m_cli->run({QStringLiteral("version-restore"), id, QStringLiteral("1")}).out,
                 QStringLiteral("Fassung wiederhergestellt.\n"));
        QCOMPARE(m_cli->show(id).value(QStringLiteral("text")).toString(), QStringLiteral("Der Mond scheint hell"));

        const struct {
            QStringList arguments;
            int exitCode;
        } refused[] = {
            {{QStringLiteral("version-show"), id, QStringLiteral("0")}, 2},
            {{QStringLiteral("version-show"), id}, 2},
            {{QStringLiteral("version-show"), id, QStringLiteral("99")}, 1},
            {{QStringLiteral("version-restore"), id, QStringLiteral("99")}, 1},
            {{QStringLiteral("versions"), QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper()}, 1},
        };
        for (const auto &call : refused)
            QCOMPARE(m_cli->run(call.arguments).exitCode, call.exitCode);
        QCOMPARE(m_cli->show(id).value(QStringLiteral("text")).toString(), QStringLiteral("Der Mond scheint hell"));
    }

    void versionsFromProcessesAtOnceAreAllKept()
    {
        const QString id =
            m_cli->run({QStringLiteral("add"), QStringLiteral("--title"), QStringLiteral("Geteilt")}).out.trimmed();
        std::vector<std::unique_ptr<QProcess>> processes;
        for (int i = 0; i < 6; ++i) {
            auto process = std::make_unique<QProcess>();
            process->start(QStringLiteral(ODELEAF_CLI),
                           {QStringLiteral("--data-dir"), m_dir->path(), QStringLiteral("version-save"), id,
                            QStringLiteral("--name"), QString::number(i)});
            processes.push_back(std::move(process));
        }
        for (const auto &process : processes) {
            QVERIFY(process->waitForFinished(60000));
            QCOMPARE(process->exitCode(), 0);
        }
        const QJsonArray versions =
            QJsonDocument::fromJson(m_cli->run({QStringLiteral("versions"), id, QStringLiteral("--json")}).out.toUtf8())
                .array();
        QStringList names;
        for (int i = 0; i < versions.size(); ++i) {
            QCOMPARE(versions.at(i)[QStringLiteral("number")].toInt(), 6 - i);
            names.append(versions.at(i)[QStringLiteral("name")].toString());
        }
        names.sort();
        QCOMPARE(names, QStringList({"0", "1", "2", "3", "4", "5"}));
    }
};

QTEST_GUILESS_MAIN(CliArchiveTest)
#include "tst_cli_archive.moc"
