#include "ModelResults.h"

namespace MoxTool {

bool ResultField::stands(std::size_t step) const {
    if (isStatic) {
        return true;
    }
    const auto first = sources.lower_bound({step, 0});
    return first != sources.end() && first->first.first == step;
}

std::size_t targetCount(const ModelMesh& mesh, ResultPlace place) {
    return place == ResultPlace::Nodes ? mesh.nodeGroups.size() : mesh.parts.size();
}

std::size_t itemsOf(const ModelMesh& mesh, ResultPlace place, std::size_t target) {
    return place == ResultPlace::Nodes ? mesh.nodeGroups[target].count : mesh.parts[target].elements;
}

} // namespace MoxTool
