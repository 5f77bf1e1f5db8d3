#pragma once

#include "../common/CommandHelp.h"

#include <string>

namespace MoxTool {

/// A script for bash that completes the program's commands, the options of each, and file names.
std::string bashCompletion(const CommandHelp& program);

} // namespace MoxTool
