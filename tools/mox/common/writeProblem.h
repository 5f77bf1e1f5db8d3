#pragma once

#include <optional>
#include <string>

namespace MoxTool {

/// Why a file can't be written any further, such as "No space left on device"; nothing if it can. The saving library
/// does not look at the results of its writes, so the reason for a file that is not whole is found by one more write.
std::optional<std::string> writeProblem(const std::string& path);

} // namespace MoxTool
