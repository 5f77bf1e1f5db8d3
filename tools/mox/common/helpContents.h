#pragma once

#include <CLI/App.hpp>

#include <string>
#include <vector>

namespace MoxTool {

/// The commands that the help of a program lists, in its order.
std::vector<const CLI::App*> shownCommands(const CLI::App& program);

/// The options that the help of a level lists, without its arguments.
std::vector<const CLI::Option*> shownOptions(const CLI::App& level);

/// Its arguments.
std::vector<const CLI::Option*> shownArguments(const CLI::App& level);

} // namespace MoxTool
