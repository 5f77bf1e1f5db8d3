#pragma once

#include <string>

namespace MoxTool {

/// @throws Failure if there is nothing at this path, if it is not a regular file (it says what it is), or if the
///                 file may not be read.
void checkIsFile(const std::string& path);

} // namespace MoxTool
