#include "app/ProgramFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>

namespace {

QString translated(const QString &directory)
{
    QTranslator english;
    if (!english.load(QStringLiteral("odeleaf_en"), directory))
        return {};
    return english.translate("AboutDialog", "Über OdeLeaf");
}

QString expectedText(const QString &name)
{
    QFile file(QStringLiteral(ODELEAF_TEST_DATA "/import/") + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

class ProgramFilesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_stage.isValid());
        QProcess install;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DESTDIR"), m_stage.path());
        install.setProcessEnvironment(environment);
        // An unusual prefix: nothing may depend on the program living in /usr.
        install.start(QStringLiteral(CMAKE_COMMAND), {QStringLiteral("--install"), QStringLiteral(ODELEAF_BUILD_DIR),
                                                      QStringLiteral("--prefix"), QStringLiteral("/opt/odeleaf")});
        QVERIFY(install.waitForFinished(120000));
        QVERIFY2(install.exitCode() == 0, install.readAllStandardError().constData());
        m_prefix = m_stage.path() + QStringLiteral("/opt/odeleaf");
    }

    void buildFolderHoldsHelperAndTranslation()
    {
        QVERIFY(QFileInfo(ProgramFiles::helperExecutable()).isExecutable());
        QCOMPARE(translated(ProgramFiles::translationsDirectory()), QStringLiteral("About OdeLeaf"));
    }

    void installedProgramFindsHelperAndTranslation()
    {
        const QString bin = m_prefix + QStringLiteral("/bin");
        QCOMPARE(ProgramFiles::helperExecutable(bin), m_prefix + QStringLiteral("/libexec/odeleaf/odeleaf-extract"));
        QVERIFY(QFileInfo(ProgramFiles::helperExecutable(bin)).isExecutable());
        QCOMPARE(translated(ProgramFiles::translationsDirectory(bin)), QStringLiteral("About OdeLeaf"));
        QVERIFY(QFileInfo(bin + QStringLiteral("/odeleaf")).isExecutable());
    }

    void installedCommandLineExtractsThroughInstalledHelper()
    {
        const auto extract = [this] {
            QProcess cli;
            cli.start(m_prefix + QStringLiteral("/bin/odeleaf-cli"),
                      {QStringLiteral("--data-dir"), m_stage.filePath(QStringLiteral("data")),
                       QStringLiteral("extract"), QStringLiteral(ODELEAF_TEST_DATA "/import/Herbstlied.docx")});
            cli.waitForFinished(60000);
            return std::pair{cli.exitCode(),
                             QString::fromUtf8(cli.readAllStandardOutput() + cli.readAllStandardError())};
        };
        const auto [exitCode, output] = extract();
        QCOMPARE(exitCode, 0);
        QCOMPARE(output.trimmed(), expectedText(QStringLiteral("Herbstlied.expected.txt")).trimmed());

        // Without the installed helper the installed program has none: it never reaches into the build folder.
        QVERIFY(QFile::remove(m_prefix + QStringLiteral("/libexec/odeleaf/odeleaf-extract")));
        const auto [failedCode, failure] = extract();
        QCOMPARE(failedCode, 1);
        QVERIFY2(failure.contains(m_prefix + QStringLiteral("/libexec/odeleaf/odeleaf-extract")), qPrintable(failure));
    }

    void desktopIntegrationIsInstalled()
    {
        const QString share = m_prefix + QStringLiteral("/share/");
        const QString id = QStringLiteral(ODELEAF_APP_ID);
        for (const QString &path :
             {share + QStringLiteral("applications/") + id + QStringLiteral(".desktop"),
              share + QStringLiteral("metainfo/") + id + QStringLiteral(".metainfo.xml"),
              share + QStringLiteral("man/man1/odeleaf.1.gz"), share + QStringLiteral("man/man1/odeleaf-cli.1.gz"),
              share + QStringLiteral("bash-completion/completions/odeleaf-cli"),
              share + QStringLiteral("doc/odeleaf/copyright"),
              share + QStringLiteral("icons/hicolor/scalable/apps/odeleaf.svg"),
              share + QStringLiteral("icons/hicolor/48x48/apps/odeleaf.png"),
              share + QStringLiteral("icons/hicolor/128x128/apps/odeleaf.png"),
              share + QStringLiteral("icons/hicolor/256x256/apps/odeleaf.png")})
            QVERIFY2(QFileInfo(path).isFile(), qPrintable(path));
        QFile manual(QStringLiteral(ODELEAF_BUILD_DIR "/packaging/odeleaf-cli.1"));
        QVERIFY(manual.open(QIODevice::ReadOnly));
        // Made from the program's own help: every subcommand is in it.
        const QByteArray page = manual.readAll();
        for (const char *subcommand : {"backup", "restore", "extract", "import", "trash\\-list"})
            QVERIFY2(page.contains(subcommand), subcommand);
    }

private:
    QTemporaryDir m_stage;
    QString m_prefix;
};

QTEST_GUILESS_MAIN(ProgramFilesTest)
#include "tst_programfiles.moc"
