#pragma once

#include "../common/ConversionSummary.h"

#include <cstddef>
#include <string>

namespace MoxTool {

/// Notes that blocks have elements of which only the nodes are known. Does nothing for 0 blocks.
/// @param written What becomes of the elements in the output, such as "have the type OTHER".
void noteUnknownShapes(ConversionSummary& summary, std::size_t blocks, const std::string& written);

} // namespace MoxTool
