#include "treeLevels.h"

namespace MoxTool {

std::vector<std::uint32_t> treeLevels(const MoxReader::Model& model) {
    std::vector<std::uint32_t> levels;
    levels.reserve(model.nodes().size());
    for (const auto& node : model.nodes()) {
        levels.push_back(node.parent == 0 ? 1 : levels[node.parent - 1] + 1);
    }
    return levels;
}

} // namespace MoxTool
