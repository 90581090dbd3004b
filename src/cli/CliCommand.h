#pragma once

#include <QString>

#include <functional>
#include <vector>

class CliInvocation;

struct CliCommand {
    QString name;
    QString usage;
    std::function<int(CliInvocation &)> run;
};

// Each subsystem contributes its subcommands; main() lists the groups.
std::vector<CliCommand> archiveCommands();
std::vector<CliCommand> backupCommands();
std::vector<CliCommand> importCommands();
std::vector<CliCommand> libraryCommands();
std::vector<CliCommand> editorCommands();
std::vector<CliCommand> exportCommands();
std::vector<CliCommand> analysisCommands();
std::vector<CliCommand> verseCommands();
std::vector<CliCommand> versionCommands();
