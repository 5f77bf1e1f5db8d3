#pragma once

#include "Command.h"

#include <functional>
#include <string>
#include <vector>

namespace MoxTool {

/// Does a command's work on one file after the other. A failure becomes its line on the terminal and does not
/// keep the others from their turn.
/// @param work Returns an exit code.
/// @param gap  Whether a blank line stands between what is printed for two files.
/// @return the highest exit code.
/// @throws what the work throws, if stdout takes no more.
int runOnEach(const Command& command, const std::vector<std::string>& paths, Terminal& terminal, bool gap,
              const std::function<int(const std::string&)>& work);

/// @throws UsageError if stdin is named more than once.
void requireOneStdin(const std::vector<std::string>& paths);

} // namespace MoxTool
