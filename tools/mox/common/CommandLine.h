#pragma once

#include "CommandHelp.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace MoxTool {

/// Takes a command's declarations of its options and arguments.
///
/// Keeps the parsing library out of the commands, since every source that includes it takes seconds to
/// compile.
class CommandLine {
public:
    /// An option or an argument that was declared. All functions return the object itself.
    class Option {
    public:
        explicit Option(CLI::Option& declared) : option_(&declared) {}

        Option& required();
        /// What the help calls its value. Without this it is NAME or NUMBER, by the type of the target.
        /// Shells complete the name of a file for FILE, of a folder for FOLDER and OUTDIR.
        Option& typeName(const std::string& name);
        /// Shows the default value in the help.
        Option& showDefault();
        /// Only whole numbers above 0.
        Option& positive();
        /// Only these values.
        Option& oneOf(const std::vector<std::string>& values);
        /// @param problem Returns what is wrong with a value; nothing if it is fine.
        Option& check(const std::function<std::string(const std::string&)>& problem);
        /// For a list of values: one value after each of its names, so that arguments can follow.
        Option& repeatable();
        Option& excludes(const std::vector<Option>& others);

    private:
        CLI::Option* option_;
    };

    /// @param level Must outlive this object.
    explicit CommandLine(CLI::App& level) : level_(level) {}

    // All take the name of an argument, such as "FILE", or the names of an option, such as "-o,--output". The
    // target receives the value and must not move.

    Option add(const std::string& names, std::string& target, const std::string& description);
    Option add(const std::string& names, std::optional<std::string>& target, const std::string& description);
    Option add(const std::string& names, std::vector<std::string>& target, const std::string& description);
    Option add(const std::string& names, unsigned int& target, const std::string& description);
    Option add(const std::string& names, unsigned long& target, const std::string& description);
    Option add(const std::string& names, unsigned long long& target, const std::string& description);
    Option add(const std::string& names, double& target, const std::string& description);
    Option addFlag(const std::string& names, bool& target, const std::string& description);

    /// What the help shows after the options: paragraphs, then examples.
    void setDetails(const std::string& text);
    /// @param check Called when all values are there; throws UsageError if they don't fit together.
    void setCheck(const std::function<void()>& check);
    /// @param reason Called with the arguments that are too many, none as a rule, before it is said that they are;
    ///               returns what the user has probably missed, or nothing.
    void explainExtra(const std::function<std::string(const std::vector<std::string>&)>& reason);
    /// Returns a function that gives the help of the whole program once all commands have declared their
    /// options.
    std::function<CommandHelp()> programHelp() const;
    /// The help of a command, or for an empty name of the program, as a text; the same goes for its use.
    std::function<std::string(const std::string&)> helpText() const;

private:
    template <typename T>
    Option declare(const std::string& names, T& target, const std::string& description, const char* type);

    CLI::App& level_;
};

} // namespace MoxTool
