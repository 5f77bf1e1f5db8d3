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

/// What --help shows of the program or of one of its commands. What is hidden there is not in here.
struct CommandHelp {
    std::string name;
    std::string program; ///< The name of the program that it is a command of; empty for the program itself.
    std::string description;
    std::string details; ///< What stands behind the options: paragraphs, then examples.
    std::vector<ArgumentHelp> arguments;
    std::vector<OptionHelp> options;
    std::vector<CommandHelp> commands;
    bool isHidden = false;
};

} // namespace MoxTool
