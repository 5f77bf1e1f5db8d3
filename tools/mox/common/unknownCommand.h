#pragma once

#include "CommandHelp.h"

#include <string>

namespace MoxTool {

/// What is wrong with the name of a command that there is not, and which may be meant.
std::string unknownCommand(const CommandHelp& program, const std::string& name);

} // namespace MoxTool
