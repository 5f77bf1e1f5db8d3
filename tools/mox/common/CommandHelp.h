#pragma once

#include <string>
#include <vector>

namespace MoxTool {

/// An option as the help shows it.
struct OptionHelp {
    std::string title; ///< Such as "-o,--output FILE".
    std::string description;
    std::vector<std::string> names; ///< Long ones first, such as "--output" and "-o".
};

/// An argument as the help shows it.
struct ArgumentHelp {
    std::string name;
    std::string description;
    bool isRequired = false;
    bool canRepeat = false;
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
    bool isHidden = false;
};

} // namespace MoxTool
