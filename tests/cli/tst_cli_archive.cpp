#include "CliRunner.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

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
};

QTEST_GUILESS_MAIN(CliArchiveTest)
#include "tst_cli_archive.moc"
