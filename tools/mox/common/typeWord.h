#pragma once

#include <string>
#include <vector>

namespace CLI {
class Option;
} // namespace CLI

namespace MoxTool {

/// What the help calls the value of an option, such as FILE; empty for a flag or an argument.
std::string typeWord(const CLI::Option& option);

/// The only values that an option takes; empty if there are others.
std::vector<std::string> choicesOf(const CLI::Option& option);

} // namespace MoxTool
