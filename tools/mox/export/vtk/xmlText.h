#pragma once

#include <string>
#include <string_view>

namespace MoxTool {

/// A text as it may be written between the quotes of an XML attribute: markup becomes entities. Control
/// characters, U+FFFE, U+FFFF and bytes that are not UTF-8, which XML can't hold, become "\xNN" for each byte.
std::string xmlText(std::string_view text);

} // namespace MoxTool
