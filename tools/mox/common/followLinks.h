#pragma once

#include <filesystem>

namespace MoxTool {

/// Where a path leads: the path itself or, if it is a symbolic link, the end of its chain of links, whether
/// there is anything or not. Of a chain that leads back to itself one of the links.
std::filesystem::path followLinks(std::filesystem::path path);

} // namespace MoxTool
