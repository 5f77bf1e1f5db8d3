#pragma once

#include "CommandHelp.h"

namespace CLI {
class App;
} // namespace CLI

namespace MoxTool {

/// What the help of a program or a command shows.
CommandHelp describeHelp(const CLI::App& level);

} // namespace MoxTool
