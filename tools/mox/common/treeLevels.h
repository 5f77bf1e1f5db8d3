#pragma once

#include <MoxReader/Model.h>

#include <cstdint>
#include <vector>

namespace MoxTool {

/// The level of each node of model.nodes(), in the same order: 1 for the root, 2 for its children and so on.
std::vector<std::uint32_t> treeLevels(const MoxReader::Model& model);

} // namespace MoxTool
