#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace MoxTool {

/// What a value on the command line is, so that a shell can complete it.
enum class ValueKind {
    None, ///< A flag, which has no value.
    Other,
    File,
    Folder,
    Choice,  ///< One of a few words.
    Command, ///< The name of a command of the program.
};

/// An option as the help shows it.
struct OptionHelp {
    std::string title; ///< Such as "-o,--output FILE".
    std::string description;
    std::vector<std::string> names; ///< Long ones first, such as "--output" and "-o".
    bool canRepeat = false;
    ValueKind value = ValueKind::None;
    std::vector<std::string> choices{};
};

/// An argument as the help shows it.
struct ArgumentHelp {
    std::string name;
    std::string description;
    bool isRequired = false;
    bool canRepeat = false;
    ValueKind value = ValueKind::Other;
    std::vector<std::string> choices{};
};

/// What --help shows about the program or one of its commands. Options that it hides are left out.
struct CommandHelp {
    std::string name;
    std::string program; ///< The program that this is a command of; empty for the program itself.
    std::string description;
    std::string details; ///< What follows the options: paragraphs, then examples.
    std::vector<ArgumentHelp> arguments;
    std::vector<OptionHelp> options;
    std::vector<CommandHelp> commands;

    /// The command of a name; null if there is none.
    const CommandHelp* command(std::string_view wanted) const {
        for (const auto& known : commands) {
            if (known.name == wanted) {
                return &known;
            }
        }
        return nullptr;
    }

    /// The names of all commands.
    std::vector<std::string> commandNames() const {
        std::vector<std::string> all;
        for (const auto& known : commands) {
            all.push_back(known.name);
        }
        return all;
    }

    /// The names of all options.
    std::vector<std::string> optionNames() const {
        std::vector<std::string> all;
        for (const auto& option : options) {
            all.insert(all.end(), option.names.begin(), option.names.end());
        }
        return all;
    }
};

} // namespace MoxTool
