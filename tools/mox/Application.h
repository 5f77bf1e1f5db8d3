#pragma once

#include "common/Command.h"
#include "common/Terminal.h"

#include <memory>
#include <string_view>
#include <vector>

namespace CLI {
class App;
class ParseError;
} // namespace CLI

namespace MoxTool {

/// The program `mox`: reads the command line, runs one subcommand and turns its outcome into an exit code.
class Application {
public:
    /// CannotStart is for the program: there was too little memory to come as far as a subcommand.
    enum ExitCode : int { Success = 0, HelpLost = 1, WrongUsage = 2, CannotStart = 3 };

    /// @param terminal Where messages go; must outlive the application.
    explicit Application(Terminal& terminal);
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;
    ~Application();

    /// Help and version go to stdout, and each failure is one line on the terminal. Without a subcommand it
    /// shows a short overview.
    /// @throws std::bad_alloc if memory runs out where there is no subcommand to answer for it, and nothing else.
    /// @return Success, HelpLost if the help does not reach stdout, WrongUsage, or the subcommand's result or failure
    ///         code.
    int run(int argc, const char* const* argv);

private:
    void addCommonOptions(CLI::App& level);
    Command& selectedCommand() const;
    int runCommand(Command& command);
    std::string overview() const;
    std::string unexpectedWord(bool isExtra) const;
    int reportParseError(const CLI::ParseError& error);
    int reportLostHelp();
    int reportUsage(std::string_view reason);
    int reportFailure(const Command& command, std::string_view reason);
    int reportNoMemory(const Command& command);

    Terminal& terminal_;
    std::unique_ptr<CLI::App> app_;
    std::vector<std::unique_ptr<Command>> commands_;
    bool noColor_ = false;
    bool showProgress_ = false;
    bool isQuiet_ = false;
};

} // namespace MoxTool
