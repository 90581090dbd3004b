#pragma once

#include <QByteArray>
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
    CliOutcome run(const QStringList &arguments, const QByteArray &input = {}) const;
    QString dataDir() const { return m_dataDir; }

private:
    QString m_dataDir;
};
