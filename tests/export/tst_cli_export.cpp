#include "cli/CliRunner.h"

#include <QDate>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <zip.h>

namespace {

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class CliExportTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<CliRunner> m_cli;
    QString m_id;

    QString addPoem(const QStringList &fields)
    {
        const CliOutcome added = m_cli->run(QStringList{QStringLiteral("add")} + fields);
        return added.exitCode == 0 ? added.out.trimmed() : QString();
    }

private Q_SLOTS:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        m_cli = std::make_unique<CliRunner>(m_dir->filePath(QStringLiteral("data")));
        m_id = addPoem({QStringLiteral("--title"), QStringLiteral("  Abendlied  "), QStringLiteral("--text"),
                        QStringLiteral("\nDer Mond ist aufgegangen\ndie goldnen Sternlein prangen\n  "),
                        QStringLiteral("--category"), QStringLiteral(" Lyrik "), QStringLiteral("--date"),
                        QStringLiteral("2024-03-01"), QStringLiteral("--podcast")});
        QVERIFY(!m_id.isEmpty());
    }

    void textExportListsTheFieldsThenTheTrimmedText()
    {
        const QString out = m_dir->filePath(QStringLiteral("abend.txt"));
        const CliOutcome exported = m_cli->run({QStringLiteral("export"), m_id, QStringLiteral("--format"),
                                                QStringLiteral("txt"), QStringLiteral("--out"), out});
        QCOMPARE(exported.exitCode, 0);
        QCOMPARE(exported.out, QStringLiteral("Exportiert: abend.txt\n"));
        QCOMPARE(QString::fromUtf8(readAll(out)),
                 QStringLiteral("Abendlied\nDatum: 01.03.2024\nKategorie: Lyrik\nVeröffentlicht: nein\nPodcast: ja\n\n"
                                "Der Mond ist aufgegangen\ndie goldnen Sternlein prangen"));

        const QString bare = addPoem({QStringLiteral("--title"), QStringLiteral(" ")});
        const QString bareOut = m_dir->filePath(QStringLiteral("bare.txt"));
        QCOMPARE(m_cli
                     ->run({QStringLiteral("export"), bare, QStringLiteral("--format"), QStringLiteral("txt"),
                            QStringLiteral("--out"), bareOut})
                     .exitCode,
                 0);
        QCOMPARE(QString::fromUtf8(readAll(bareOut)),
                 QStringLiteral("(ohne Titel)\nDatum: %1\nKategorie: —\nVeröffentlicht: nein\nPodcast: nein\n\n"
                                "— kein Text —")
                     .arg(QDate::currentDate().toString(QStringLiteral("dd.MM.yyyy"))));
    }

    void docxAndPdfExportsAreWrittenAndLeaveThePoemAlone()
    {
        const QJsonObject before = m_cli->show(m_id);
        const QString docx = m_dir->filePath(QStringLiteral("abend.docx"));
        const QString pdf = m_dir->filePath(QStringLiteral("abend.pdf"));
        QCOMPARE(m_cli
                     ->run({QStringLiteral("export"), m_id, QStringLiteral("--format"), QStringLiteral("docx"),
                            QStringLiteral("--out"), docx})
                     .out,
                 QStringLiteral("Exportiert: abend.docx\n"));
        QCOMPARE(m_cli
                     ->run({QStringLiteral("export"), m_id, QStringLiteral("--format"), QStringLiteral("pdf"),
                            QStringLiteral("--out"), pdf})
                     .out,
                 QStringLiteral("Exportiert: abend.pdf\n"));
        QVERIFY(readAll(pdf).startsWith("%PDF-"));
        QCOMPARE(m_cli->show(m_id), before);

        int error = 0;
        zip_t *archive = zip_open(QFile::encodeName(docx).constData(), ZIP_CHECKCONS | ZIP_RDONLY, &error);
        QVERIFY(archive);
        QCOMPARE(zip_get_num_entries(archive, 0), zip_int64_t(10));
        QVERIFY(zip_name_locate(archive, "word/media/odeleaf-logo.png", 0) >= 0);
        zip_close(archive);
    }

    void failuresAndBadUsageAreReported()
    {
        const QString intoMissingFolder = m_dir->filePath(QStringLiteral("nirgends/da.txt"));
        const CliOutcome failed = m_cli->run({QStringLiteral("export"), m_id, QStringLiteral("--format"),
                                              QStringLiteral("txt"), QStringLiteral("--out"), intoMissingFolder});
        QCOMPARE(failed.exitCode, 1);
        QVERIFY2(failed.err.startsWith(QStringLiteral("Export fehlgeschlagen: ")), qPrintable(failed.err));
        QVERIFY(!QFile::exists(intoMissingFolder));

        QCOMPARE(m_cli
                     ->run({QStringLiteral("export"), m_id, QStringLiteral("--format"), QStringLiteral("rtf"),
                            QStringLiteral("--out"), m_dir->filePath(QStringLiteral("x.rtf"))})
                     .exitCode,
                 2);
        QCOMPARE(
            m_cli->run({QStringLiteral("export"), m_id, QStringLiteral("--format"), QStringLiteral("pdf")}).exitCode,
            2);
        QCOMPARE(m_cli
                     ->run({QStringLiteral("export"), QStringLiteral("00000000-0000-0000-0000-000000000000"),
                            QStringLiteral("--format"), QStringLiteral("pdf"), QStringLiteral("--out"),
                            m_dir->filePath(QStringLiteral("y.pdf"))})
                     .exitCode,
                 1);
    }
};

QTEST_GUILESS_MAIN(CliExportTest)
#include "tst_cli_export.moc"
