#pragma once

#include "common/Command.h"

#include <memory>
#include <vector>

namespace MoxTool {

/// A new object for each subcommand, in the order in which the help lists them.
std::vector<std::unique_ptr<Command>> makeCommands();

} // namespace MoxTool
