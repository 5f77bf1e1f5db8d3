#pragma once

#include <string>
#include <string_view>

namespace MoxTool {

/// A name that every file system accepts, made from any text: letters and digits of ASCII, "-", "_" and "."
/// stay, each run of other bytes becomes one "_", and only the first 80 bytes of the result are kept.
/// Different texts can give the same name, and a text can give an empty one, "." or the name of a device: the
/// caller adds a prefix of its own.
std::string safeFileName(std::string_view text);

} // namespace MoxTool
