#pragma once

#include <optional>
#include <string>

namespace MoxTool {

class CommandLine;
class Terminal;

/// One subcommand of `mox`. A new one is a class in a folder of its own, registered in Commands.cpp.
class Command {
public:
    /// A line for the examples in the program's help.
    struct Example {
        std::string line;    ///< What to type.
        std::string purpose; ///< What it is good for.
    };

    Command() = default;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;
    virtual ~Command() = default;

    /// The word on the command line, such as "import".
    virtual std::string name() const = 0;
    /// One sentence for the list of commands.
    virtual std::string summary() const = 0;
    /// How the program's help shows the command among its examples; nothing if it does not.
    virtual std::optional<Example> example() const { return std::nullopt; }
    /// Declares options and arguments, bound to members of this object, and the examples at the end of the
    /// help.
    virtual void addOptions(CommandLine& line) = 0;

    /// Does the work, with the members that the command line has filled. Data goes to stdout, everything else
    /// to the terminal.
    /// @return the exit code, 0 for success.
    /// @throws Failure (or any std::exception), which becomes one line "mox <name>: <what>" and the exit code
    ///         failureCode().
    virtual int run(Terminal& terminal) = 0;

    /// The exit code if run() throws or if what it wrote does not reach stdout.
    virtual int failureCode() const { return 1; }
};

} // namespace MoxTool
