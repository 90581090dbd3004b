#include "cli/CliRunner.h"

#include "archive/ApplicationSupport.h"
#include "editor/PoemRichText.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

class CliEditorTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<CliRunner> m_cli;

    QString storedRichText(const QJsonObject &poem)
    {
        const QByteArray data =
            QByteArray::fromBase64(poem.value(QStringLiteral("richTextData")).toString().toLatin1());
        const auto document = PoemRichText::decode(data);
        return document ? PoemRichText::plainText(*document) : QStringLiteral("<unreadable>");
    }

private Q_SLOTS:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        m_cli = std::make_unique<CliRunner>(m_dir->path());
        ApplicationSupport::setDirectory(m_dir->path());
    }

    void rhymeUrl_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("url");
        QTest::newRow("default provider, word with comma")
            << QStringList{QStringLiteral("Herz,")} << QStringLiteral("https://www.reimsuche.de/reime/Herz");
        QTest::newRow("umlaut") << QStringList{QStringLiteral(" Mühe "), QStringLiteral("--provider"),
                                               QStringLiteral("was-reimt-sich-auf.de")}
                                << QStringLiteral("https://www.was-reimt-sich-auf.de/M%C3%BChe.html");
        QTest::newRow("case name") << QStringList{QStringLiteral("--provider"), QStringLiteral("reimomat"),
                                                  QStringLiteral("Nacht und Tag")}
                                   << QStringLiteral("https://www.reim-o-mat.de/reimApp.php?reimwort=Nacht");
    }

    void rhymeUrl()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, url);
        const CliOutcome outcome = m_cli->run(QStringList{QStringLiteral("rhyme-url")} + arguments);
        QCOMPARE(outcome.exitCode, 0);
        QCOMPARE(outcome.out.trimmed(), url);
    }

    void rhymeUrlFollowsThePreferredProvider()
    {
        QCOMPARE(m_cli
                     ->run({QStringLiteral("prefs"), QStringLiteral("set"), QStringLiteral("defaultRhymeProvider"),
                            QStringLiteral("reim-o-mat.de")})
                     .exitCode,
                 0);
        QCOMPARE(m_cli->run({QStringLiteral("rhyme-url"), QStringLiteral("Licht")}).out.trimmed(),
                 QStringLiteral("https://www.reim-o-mat.de/reimApp.php?reimwort=Licht"));
    }

    void rhymeUrlRejectsWhatCannotBeLookedUp()
    {
        const CliOutcome noWord = m_cli->run({QStringLiteral("rhyme-url"), QStringLiteral(" 1984, ")});
        QCOMPARE(noWord.exitCode, 1);
        QCOMPARE(noWord.err.trimmed(), QStringLiteral("Gib ein Wort ein, zu dem OdeLeaf Reime suchen soll."));
        QCOMPARE(m_cli
                     ->run({QStringLiteral("rhyme-url"), QStringLiteral("Herz"), QStringLiteral("--provider"),
                            QStringLiteral("reimlexikon")})
                     .exitCode,
                 2);
        QCOMPARE(m_cli->run({QStringLiteral("rhyme-url")}).exitCode, 2);
    }

    void setTextKeepsRichAndPlainTextInStep()
    {
        const CliOutcome added = m_cli->run({QStringLiteral("add"), QStringLiteral("--title"), QStringLiteral("Lied"),
                                             QStringLiteral("--text"), QStringLiteral("Erste Zeile\nZweite Zeile")});
        QCOMPARE(added.exitCode, 0);
        const QString id = added.out.trimmed();
        QCOMPARE(storedRichText(m_cli->show(id)), QStringLiteral("Erste Zeile\nZweite Zeile"));

        QCOMPARE(
            m_cli->run({QStringLiteral("set"), id, QStringLiteral("--text"), QStringLiteral("Neu\n\nÜber {alles}")})
                .exitCode,
            0);
        const QJsonObject poem = m_cli->show(id);
        QCOMPARE(poem.value(QStringLiteral("text")).toString(), QStringLiteral("Neu\n\nÜber {alles}"));
        QCOMPARE(storedRichText(poem), QStringLiteral("Neu\n\nÜber {alles}"));

        // Other fields leave the formatted text alone.
        const QString before = poem.value(QStringLiteral("richTextData")).toString();
        QCOMPARE(
            m_cli->run({QStringLiteral("set"), id, QStringLiteral("--category"), QStringLiteral("Lyrik")}).exitCode, 0);
        QCOMPARE(m_cli->show(id).value(QStringLiteral("richTextData")).toString(), before);
    }
};

QTEST_MAIN(CliEditorTest)
#include "tst_cli_editor.moc"
