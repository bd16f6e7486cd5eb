#pragma once

#include "vdx/Session.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <vector>

/// One command of vdx: declares its arguments and carries itself out.
class Command {
public:
    virtual ~Command() = default;
    /// Adds the command with its arguments.
    virtual CLI::App* declare(CLI::App& program) = 0;
    /// Whether it takes tables out (the common options of output make sense).
    /// @return exit status: 0, or 1 when the system says no. @throws UsageError
    virtual int run(Session& session) = 0;
};

/// All commands, in the order of the help.
std::vector<std::unique_ptr<Command>> allCommands();

std::unique_ptr<Command> makeImportCommand();
std::unique_ptr<Command> makeBuildCommand();
std::unique_ptr<Command> makeStudiesCommand();
std::unique_ptr<Command> makeVariablesCommand();
std::unique_ptr<Command> makeTreeCommand();
std::unique_ptr<Command> makeListCommand();
std::unique_ptr<Command> makeSearchCommand();
std::unique_ptr<Command> makeFrequencyCommand();
std::unique_ptr<Command> makeCrosstabCommand();
std::unique_ptr<Command> makeDescriptivesCommand();
std::unique_ptr<Command> makeCompareCommand();
std::unique_ptr<Command> makeComparisonsCommand();
std::unique_ptr<Command> makeChartCommand();
std::unique_ptr<Command> makeInstructionsCommand();
std::unique_ptr<Command> makeStoredCommand();
std::unique_ptr<Command> makeReportCommand();

/// True for arguments of vdx that have it draw: it needs fonts then, which it starts without otherwise.
bool drawsPictures(const std::vector<std::string>& arguments);

/// The whole program. @param arguments without the program's name, in UTF-8
/// @return 0; 1 when the system says no; 2 for wrong usage
int runVdx(const std::vector<std::string>& arguments, std::FILE* out, std::FILE* err);
