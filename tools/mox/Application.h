#pragma once

#include "Command.h"
#include "Terminal.h"

#include <CLI/CLI.hpp>

#include <exception>
#include <memory>
#include <vector>

namespace MoxTool {

/// The program `mox`: reads the command line, runs one subcommand and turns its outcome into an exit code.
class Application {
public:
    enum ExitCode : int { Success = 0, Failed = 1, WrongUsage = 2 };

    /// @param terminal Where messages go; must outlive the application.
    explicit Application(Terminal& terminal);

    /// Help and version go to stdout, one line for each failure to the terminal. Without a subcommand it
    /// shows the help. Never throws.
    /// @return Success, Failed, WrongUsage, or what the subcommand returned.
    int run(int argc, const char* const* argv);

private:
    void addCommonOptions(CLI::App& level);
    int runSelected();
    int flushOutput(const Command& command, int exitCode);
    int reportUsage(const CLI::ParseError& error);
    void reportFailure(const Command& command, const std::exception& failure);

    Terminal& terminal;
    CLI::App app;
    std::vector<std::unique_ptr<Command>> commands;
    bool noColor = false;
    bool showProgress = false;
};

} // namespace MoxTool
