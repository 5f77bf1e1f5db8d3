#pragma once

#include <string>
#include <string_view>

namespace MoxTool {

/// A text as it may be written between the quotes of an XML attribute: markup becomes entities. Control
/// characters and bytes that are not UTF-8, which XML can't hold, become "\xNN".
std::string xmlText(std::string_view text);

} // namespace MoxTool
