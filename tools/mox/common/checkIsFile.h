#pragma once

#include <string>

namespace MoxTool {

/// @throws Failure if there is nothing under this path, or if it is no regular file.
void checkIsFile(const std::string& path);

} // namespace MoxTool
