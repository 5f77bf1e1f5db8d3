#pragma once

#include <cstdio>

namespace MoxTool {

/// Makes stdin or stdout pass bytes as they are on systems that otherwise change the ends of lines.
void makeBinary(std::FILE* stream);

} // namespace MoxTool
