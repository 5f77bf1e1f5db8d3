#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace MoxTool {

/// The path that a text names. Texts are in UTF-8, whatever the system keeps paths in; those of the command line are so
/// on Windows as well, since the program's manifest asks for it. Where paths are bytes, these stay as they are;
/// elsewhere, each byte that is not UTF-8 becomes U+FFFD, as in the system's own conversion.
///
/// No other place makes a path from a text: the constructor of a path takes the bytes of a std::string for something
/// else than UTF-8 on some systems.
std::filesystem::path pathOf(std::string_view utf8);

/// The text that names a path: the counterpart of pathOf().
std::string utf8Of(const std::filesystem::path& path);

} // namespace MoxTool
