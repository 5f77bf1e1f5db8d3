#pragma once

#include "../common/CommandHelp.h"

#include <string>

namespace MoxTool {

/// A script for fish that completes the program's commands, the options of each with what they do, and their
/// values.
std::string fishCompletion(const CommandHelp& program);

} // namespace MoxTool
