#include "cli/CliInvocation.h"

#include "archive/ArchiveContext.h"
#include "archive/AtomicFileWriter.h"
#include "archive/PersistenceController.h"
#include "archive/PoemStore.h"
#include "cli/CliTexts.h"

#include <cerrno>
#include <cstdio>

#include <unistd.h>

namespace {

QTextStream &standardOutput()
{
    static QTextStream stream(stdout);
    return stream;
}

QTextStream &standardError()
{
    static QTextStream stream(stderr);
    return stream;
}

} // namespace

CliInvocation::CliInvocation(QString command, QStringList arguments)
    : m_command(std::move(command)), m_arguments(std::move(arguments))
{
}

std::optional<QString> CliInvocation::takeOption(const QString &name)
{
    // Given twice, the last one wins.
    const QStringList values = takeRepeatedOption(name);
    if (values.isEmpty())
        return std::nullopt;
    return values.last();
}

QStringList CliInvocation::takeRepeatedOption(const QString &name)
{
    QStringList values;
    for (qsizetype i = 0; i < m_arguments.size();) {
        const QString &argument = m_arguments.at(i);
        if (argument == name) {
            if (i + 1 >= m_arguments.size()) {
                m_pendingError = QStringLiteral("missing value for %1").arg(name);
                m_arguments.removeAt(i);
                continue;
            }
            values.append(m_arguments.at(i + 1));
            m_arguments.remove(i, 2);
            continue;
        }
        if (argument.startsWith(name + QLatin1Char('='))) {
            values.append(argument.mid(name.size() + 1));
            m_arguments.removeAt(i);
            continue;
        }
        ++i;
    }
    return values;
}

bool CliInvocation::takeFlag(const QString &name)
{
    return m_arguments.removeAll(name) > 0;
}

bool CliInvocation::finishOptions(int minPositional, int maxPositional)
{
    if (!m_pendingError.isEmpty())
        return false;
    bool onlyPositional = false;
    for (const QString &argument : std::as_const(m_arguments)) {
        if (!onlyPositional && argument == QLatin1String("--")) {
            onlyPositional = true;
            continue;
        }
        if (!onlyPositional && argument.startsWith(QLatin1String("--"))) {
            m_pendingError = QStringLiteral("unknown option %1").arg(argument);
            return false;
        }
        m_positional.append(argument);
    }
    if (m_positional.size() < minPositional) {
        m_pendingError = QStringLiteral("missing argument");
        return false;
    }
    if (maxPositional >= 0 && m_positional.size() > maxPositional) {
        m_pendingError = QStringLiteral("unexpected argument %1").arg(m_positional.at(maxPositional));
        return false;
    }
    return true;
}

void CliInvocation::print(const QString &line)
{
    standardOutput() << line << '\n';
    standardOutput().flush();
    noteOutputState();
}

void CliInvocation::printRaw(const QByteArray &bytes)
{
    standardOutput().flush();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    std::fflush(stdout);
    noteOutputState();
}

void CliInvocation::noteOutputState()
{
    // errno still names the cause right after the failed write.
    if (m_outputError == 0 && std::ferror(stdout))
        m_outputError = errno != 0 ? errno : EIO;
}

int CliInvocation::finishOutput(int exitCode)
{
    standardOutput().flush();
    errno = 0;
    if (std::fflush(stdout) != 0 || std::ferror(stdout))
        noteOutputState();
    // Closing reports what a network file system kept back until now; nothing writes
    // to standard output after this.
    if (m_outputError == 0 && ::close(STDOUT_FILENO) != 0 && errno != EINTR)
        m_outputError = errno;
    if (m_outputError == 0)
        return exitCode;
    standardError() << "odeleaf-cli " << m_command << ": "
                    << CliTexts::tr("Die Ausgabe konnte nicht geschrieben werden: %1")
                           .arg(AtomicFileWriter::describeSystemError(m_outputError))
                    << '\n';
    standardError().flush();
    return exitCode != 0 ? exitCode : 1;
}

int CliInvocation::fail(const QString &message)
{
    standardError() << message << '\n';
    standardError().flush();
    return m_exitCode = 1;
}

void CliInvocation::note(const QString &message)
{
    standardError() << message << '\n';
    standardError().flush();
}

int CliInvocation::usageError(const QString &message)
{
    const QString reason = message.isEmpty() ? m_pendingError : message;
    standardError() << "odeleaf-cli " << m_command << ": " << reason << '\n' << "Try 'odeleaf-cli --help' for usage.\n";
    standardError().flush();
    return m_exitCode = 2;
}

ArchiveContext *CliInvocation::archive()
{
    if (auto opened = PersistenceController::openShared(); !opened) {
        fail(opened.errorMessage());
        return nullptr;
    }
    return &PersistenceController::shared().viewContext();
}

ArchiveContext *CliInvocation::archiveAfterOptions(int minPositional, int maxPositional)
{
    if (!finishOptions(minPositional, maxPositional)) {
        usageError({});
        return nullptr;
    }
    return archive();
}

ArchiveContext *CliInvocation::writableArchive()
{
    ArchiveContext *context = archive();
    if (context && context->store().isReadOnly()) {
        fail(PoemStore::readOnlyText());
        return nullptr;
    }
    return context;
}
