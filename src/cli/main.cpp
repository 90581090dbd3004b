#include "archive/ApplicationSupport.h"
#include "backup/TemporaryLeftovers.h"
#include "cli/CliCommand.h"
#include "cli/CliInvocation.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <cstdio>

namespace {

std::vector<CliCommand> allCommands()
{
    std::vector<CliCommand> commands;
    for (auto group : {archiveCommands, libraryCommands, backupCommands, importCommands, editorCommands, exportCommands,
                       analysisCommands, verseCommands, versionCommands}) {
        auto list = group();
        commands.insert(commands.end(), list.begin(), list.end());
    }
    return commands;
}

void printUsage(FILE *stream, const std::vector<CliCommand> &commands)
{
    std::fprintf(stream, "Usage: odeleaf-cli [--data-dir DIR] SUBCOMMAND [ARGS]\n\nSubcommands:\n");
    for (const CliCommand &command : commands)
        std::fprintf(stream, "  %s\n", qPrintable(command.usage));
}

// Qt's own start-up chatter (no runtime folder and the like) is no business of a script
// reading standard error; the program's messages still pass.
void filterQtNoise(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (message.startsWith(QLatin1String("QStandardPaths:")))
        return;
    std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, message)));
}

} // namespace

int main(int argc, char **argv)
{
    // Text layout, PDF writing and images need a GUI application, never a display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(filterQtNoise);
    QGuiApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("OdeLeaf"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ODELEAF_VERSION));

    QStringList arguments = app.arguments().mid(1);
    const auto commands = allCommands();
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        if (arguments.at(i) == QLatin1String("--data-dir")) {
            if (i + 1 >= arguments.size()) {
                std::fprintf(stderr, "odeleaf-cli: --data-dir needs a folder\n");
                return 2;
            }
            ApplicationSupport::setDirectory(arguments.at(i + 1));
            arguments.remove(i, 2);
            break;
        }
        if (arguments.at(i).startsWith(QLatin1String("--data-dir="))) {
            ApplicationSupport::setDirectory(arguments.at(i).mid(11));
            arguments.removeAt(i);
            break;
        }
    }
    if (arguments.isEmpty()) {
        printUsage(stderr, commands);
        return 2;
    }
    const QString name = arguments.takeFirst();
    if (name == QLatin1String("--help") || name == QLatin1String("-h") || name == QLatin1String("help")) {
        printUsage(stdout, commands);
        return 0;
    }
    for (const CliCommand &command : commands) {
        if (command.name == name) {
            TemporaryLeftovers::removeFromKnownFolders();
            CliInvocation invocation(name, arguments);
            return invocation.finishOutput(command.run(invocation));
        }
    }
    std::fprintf(stderr, "odeleaf-cli: unknown subcommand '%s'\n", qPrintable(name));
    printUsage(stderr, commands);
    return 2;
}
