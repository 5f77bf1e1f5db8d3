#pragma once

#include "common/Command.h"
#include "common/Terminal.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <string_view>
#include <vector>

namespace MoxTool {

/// The program `mox`: reads the command line, runs one subcommand and turns its outcome into an exit code.
class Application {
public:
    enum ExitCode : int { Success = 0, WrongUsage = 2 };

    /// @param messages Where messages go; must outlive the application.
    explicit Application(Terminal& messages);

    /// Help and version go to stdout, one line for each failure to the terminal. Without a subcommand it
    /// shows the help. Never throws.
    /// @return Success, WrongUsage, or what the subcommand returned or has as its failure code.
    int run(int argc, const char* const* argv);

private:
    void addCommonOptions(CLI::App& level);
    Command& selectedCommand() const;
    int runCommand(Command& command);
    int reportUsage(const CLI::ParseError& error);
    int reportFailure(const Command& command, std::string_view reason);

    Terminal& terminal;
    CLI::App app;
    std::vector<std::unique_ptr<Command>> commands;
    bool noColor = false;
    bool showProgress = false;
};

} // namespace MoxTool
