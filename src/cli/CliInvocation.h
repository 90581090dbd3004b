#pragma once

#include <QStringList>
#include <QTextStream>

#include <optional>

class ArchiveContext;

// One run of a subcommand: its arguments, its output, and the archive it works on.
class CliInvocation {
public:
    CliInvocation(QString command, QStringList arguments);

    const QString &command() const { return m_command; }

    // Options are taken out of the argument list as they are read; what is left at the
    // end is either positional or an error.
    std::optional<QString> takeOption(const QString &name);
    QStringList takeRepeatedOption(const QString &name);
    bool takeFlag(const QString &name);
    // Missing value after an option: remembered and reported by finishOptions().
    bool finishOptions(int minPositional, int maxPositional);
    const QStringList &positional() const { return m_positional; }

    void print(const QString &line);
    void printRaw(const QByteArray &bytes);
    int fail(const QString &message);
    // A remark on standard error that does not fail the command; standard output stays
    // what scripts read.
    void note(const QString &message);
    int usageError(const QString &message);

    // Opens the store on first use; prints the load failure and returns null on error.
    ArchiveContext *archive();
    // The usual start of a command: finishes the options, then opens the store. Null after
    // saying what went wrong; exitCode() is then the command's exit status.
    ArchiveContext *archiveAfterOptions(int minPositional, int maxPositional);
    // Of the last fail() or usageError().
    int exitCode() const { return m_exitCode; }
    // The command's exit status once standard output is flushed: a script must not take
    // output cut short by a full disk or a closed pipe for the whole answer.
    int finishOutput(int exitCode);
    // For commands that change the archive: the archive, or null after saying why it
    // cannot be changed (it did not open, or it is read-only).
    ArchiveContext *writableArchive();

private:
    void noteOutputState();

    QString m_command;
    QStringList m_arguments;
    QStringList m_positional;
    QString m_pendingError;
    int m_exitCode = 0;
    // The first failed write to standard output.
    int m_outputError = 0;
};
