#pragma once

#include <cstddef>
#include <string_view>

namespace MoxTool {

/// Whether a byte continues a character; a text cut before it is cut inside that.
bool isUtf8Continuation(char byte);

/// The number of bytes of the first character of a text, from 1 to 4; 0 if the text does not begin with a
/// character in valid UTF-8 (and for an empty text).
std::size_t utf8CharacterSize(std::string_view text);

/// Whether the whole text is valid UTF-8.
bool isUtf8(std::string_view text);

/// The number of characters; a byte that is not part of one counts as one.
std::size_t utf8Length(std::string_view text);

} // namespace MoxTool
