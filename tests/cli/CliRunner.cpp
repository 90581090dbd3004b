#include "CliRunner.h"

#include <QJsonDocument>
#include <QProcess>

CliOutcome CliRunner::run(const QStringList &arguments, const QByteArray &input, const QString &outputFile) const
{
    QProcess process;
    if (!outputFile.isEmpty())
        process.setStandardOutputFile(outputFile, QIODevice::Append);
    process.start(QStringLiteral(ODELEAF_CLI), QStringList{QStringLiteral("--data-dir"), m_dataDir} + arguments);
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(120000);
    CliOutcome outcome;
    outcome.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    outcome.out = QString::fromUtf8(process.readAllStandardOutput());
    outcome.err = QString::fromUtf8(process.readAllStandardError());
    return outcome;
}

QJsonObject CliRunner::show(const QString &id) const
{
    const CliOutcome shown = run({QStringLiteral("show"), id});
    if (shown.exitCode != 0)
        return {};
    return QJsonDocument::fromJson(shown.out.toUtf8()).object();
}
