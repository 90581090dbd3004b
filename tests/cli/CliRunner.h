#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

// Runs the real odeleaf-cli binary against one data folder.
struct CliOutcome {
    int exitCode = -1;
    QString out;
    QString err;
};

class CliRunner {
public:
    explicit CliRunner(QString dataDir) : m_dataDir(std::move(dataDir)) {}
    // With an output file, standard output goes there (a full disk: /dev/full).
    CliOutcome run(const QStringList &arguments, const QByteArray &input = {}, const QString &outputFile = {}) const;
    // The poem as "show" prints it; empty when the command failed.
    QJsonObject show(const QString &id) const;
    QString dataDir() const { return m_dataDir; }

private:
    QString m_dataDir;
};
