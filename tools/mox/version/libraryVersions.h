#pragma once

#include <string>

namespace MoxTool {

// The versions of the libraries for other formats; empty where mox is built without one.

std::string exodusVersion();
std::string cgnsVersion();
std::string gmshVersion();

} // namespace MoxTool
