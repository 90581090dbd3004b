#include "CliRunner.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <vector>

// Two real processes writing one archive at once, as a cron job beside the open window.
class CliWritersTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<CliRunner> m_cli;

    std::unique_ptr<QProcess> start(const QStringList &arguments) const
    {
        auto process = std::make_unique<QProcess>();
        process->start(QStringLiteral(ODELEAF_CLI),
                       QStringList{QStringLiteral("--data-dir"), m_dir->path()} + arguments);
        return process;
    }

    // A shell loop keeps one writer busy without the test's event loop in between.
    std::unique_ptr<QProcess> startAddLoop(const QString &prefix, int count) const
    {
        auto process = std::make_unique<QProcess>();
        const QString script = QStringLiteral("i=1; while [ $i -le %1 ]; do \"$0\" --data-dir \"$1\" add --title "
                                              "\"%2 $i\" >/dev/null || echo \"failed $i\"; i=$((i+1)); done")
                                   .arg(count)
                                   .arg(prefix);
        process->start(QStringLiteral("/bin/sh"),
                       {QStringLiteral("-c"), script, QStringLiteral(ODELEAF_CLI), m_dir->path()});
        return process;
    }

    QStringList storedTitles() const
    {
        const CliOutcome listed = m_cli->run({QStringLiteral("list"), QStringLiteral("--json")});
        QStringList titles;
        const QJsonArray rows = QJsonDocument::fromJson(listed.out.toUtf8()).object().value(u"rows").toArray();
        for (const QJsonValue &row : rows)
            titles.append(row.toObject().value(u"title").toString());
        return titles;
    }

private Q_SLOTS:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        m_cli = std::make_unique<CliRunner>(m_dir->path());
        // The window has the archive open already.
        QCOMPARE(m_cli->run({QStringLiteral("add"), QStringLiteral("--title"), QStringLiteral("Erstes")}).exitCode, 0);
    }

    void parallelAddsKeepEveryPoem()
    {
        const int perWriter = 100;
        auto first = startAddLoop(QStringLiteral("A"), perWriter);
        auto second = startAddLoop(QStringLiteral("B"), perWriter);
        for (QProcess *loop : {first.get(), second.get()}) {
            QVERIFY(loop->waitForFinished(600000));
            QCOMPARE(QString::fromUtf8(loop->readAllStandardOutput()), QString());
        }

        const QStringList titles = storedTitles();
        QCOMPARE(titles.size(), 2 * perWriter + 1);
        const QSet<QString> distinct(titles.begin(), titles.end());
        for (int i = 1; i <= perWriter; ++i) {
            QVERIFY2(distinct.contains(QStringLiteral("A %1").arg(i)), qPrintable(QString::number(i)));
            QVERIFY2(distinct.contains(QStringLiteral("B %1").arg(i)), qPrintable(QString::number(i)));
        }
    }

    void parallelEditsOfOnePoemKeepBoth()
    {
        const QString id =
            m_cli->run({QStringLiteral("add"), QStringLiteral("--title"), QStringLiteral("Herbst")}).out.trimmed();
        QCOMPARE(id.size(), 36);
        for (int round = 0; round < 15; ++round) {
            const QString title = QStringLiteral("Titel %1").arg(round);
            const QString notes = QStringLiteral("Notiz %1").arg(round);
            auto setTitle = start({QStringLiteral("set"), id, QStringLiteral("--title"), title});
            auto setNotes = start({QStringLiteral("set"), id, QStringLiteral("--notes"), notes});
            for (QProcess *process : {setTitle.get(), setNotes.get()}) {
                QVERIFY(process->waitForFinished(120000));
                QCOMPARE(process->exitCode(), 0);
                QCOMPARE(QString::fromUtf8(process->readAllStandardOutput()), QStringLiteral("Gespeichert\n"));
            }
            const QJsonObject poem = m_cli->show(id);
            QCOMPARE(poem.value(u"title").toString(), title);
            QCOMPARE(poem.value(u"titleNormalized").toString(), QStringLiteral("titel %1").arg(round));
            QCOMPARE(poem.value(u"writerNotes").toString(), notes);
        }
    }
};

QTEST_GUILESS_MAIN(CliWritersTest)
#include "tst_cli_writers.moc"
