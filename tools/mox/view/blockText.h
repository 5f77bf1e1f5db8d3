#pragma once

#include <string>
#include <string_view>

namespace MoxTool {

/// Bytes as one zlib stream, which browsers can read; nothing for no bytes, since they refuse an empty stream.
/// @throws std::bad_alloc
std::string deflated(std::string_view bytes);

/// Bytes as text of letters, digits, "+", "/" and "=".
std::string base64(std::string_view bytes);

} // namespace MoxTool
