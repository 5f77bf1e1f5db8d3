#pragma once

#include <string>

namespace MoxTool {

/// @throws Failure if there is nothing at this path, or if it is not a regular file.
void checkIsFile(const std::string& path);

} // namespace MoxTool
