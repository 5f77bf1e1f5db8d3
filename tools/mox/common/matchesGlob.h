#pragma once

#include <string_view>

namespace MoxTool {

/// Whether a pattern fits a whole text: * stands for any characters, ? for one character (of UTF-8), all else
/// for itself. Takes time in proportion to the product of the lengths at most.
bool matchesGlob(std::string_view pattern, std::string_view text);

} // namespace MoxTool
