#pragma once

#include "../common/CommandHelp.h"

#include <string>

namespace MoxTool {

/// A script for bash that completes the commands of the program, the options of each, and their values.
std::string bashCompletion(const CommandHelp& program);

} // namespace MoxTool
