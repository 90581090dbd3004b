#include "CliRunner.h"

#include <QProcess>

CliOutcome CliRunner::run(const QStringList &arguments, const QByteArray &input) const
{
    QProcess process;
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
