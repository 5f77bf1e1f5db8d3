#pragma once

#include <cstddef>
#include <vector>

namespace MoxTool {

/// A colour for the block at a place (from 0) in its file, unlike those of the blocks near it: each hue
/// follows the last by the golden ratio.
/// @return red, green, blue, each from 0 to 1.
std::vector<float> blockColor(std::size_t index);

} // namespace MoxTool
