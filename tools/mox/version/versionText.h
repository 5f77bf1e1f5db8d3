#pragma once

#include <string>

namespace MoxTool {

/// The version of mox, and a line for each library that is built in or missing. No line end after
/// the last.
std::string versionText();

} // namespace MoxTool
