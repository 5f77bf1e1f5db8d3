#pragma once

#include <string_view>

namespace MoxTool {

/// Whether a pattern matches a whole text: * stands for any characters, ? for one UTF-8 character, and
/// everything else for itself. Takes time at most in proportion to the product of the lengths.
bool matchesGlob(std::string_view pattern, std::string_view text);

} // namespace MoxTool
