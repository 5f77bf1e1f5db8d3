#pragma once

#include <string>
#include <string_view>

namespace MoxTool {

/// A text from a file, made fit for a terminal and for one line: control characters and bytes that are not
/// UTF-8 become \n, \r, \t or \xNN for each byte, and a backslash becomes two, so that different texts stay
/// different.
std::string visibleText(std::string_view text);

/// A whole line for the terminal, in which names may have been made visible already: as visibleText(), but a
/// backslash stays as it is.
std::string visibleLine(std::string_view line);

} // namespace MoxTool
