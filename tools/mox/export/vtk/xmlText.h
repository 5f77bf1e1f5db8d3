#pragma once

#include <string>
#include <string_view>

namespace MoxTool {

/// A text as it may stand between the quotes of an XML attribute: markup becomes entities. What XML can't
/// hold, control characters and bytes that are no UTF-8, becomes "\xNN".
std::string xmlText(std::string_view text);

} // namespace MoxTool
