#include "cli/CliInvocation.h"

#include "archive/ArchiveContext.h"
#include "archive/PersistenceController.h"
#include "archive/PoemStore.h"

#include <cstdio>

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
    std::optional<QString> value;
    for (qsizetype i = 0; i < m_arguments.size();) {
        const QString &argument = m_arguments.at(i);
        if (argument == name) {
            if (i + 1 >= m_arguments.size()) {
                m_pendingError = QStringLiteral("missing value for %1").arg(name);
                m_arguments.removeAt(i);
                continue;
            }
            value = m_arguments.at(i + 1);
            m_arguments.remove(i, 2);
            continue;
        }
        if (argument.startsWith(name + QLatin1Char('='))) {
            value = argument.mid(name.size() + 1);
            m_arguments.removeAt(i);
            continue;
        }
        ++i;
    }
    return value;
}

QStringList CliInvocation::takeRepeatedOption(const QString &name)
{
    QStringList values;
    while (const auto value = takeOption(name))
        values.append(*value);
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
}

void CliInvocation::printRaw(const QByteArray &bytes)
{
    standardOutput().flush();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    std::fflush(stdout);
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
