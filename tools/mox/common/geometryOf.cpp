#include "geometryOf.h"

namespace MoxTool {

const MoxReader::Node* geometryOf(const MoxReader::Model& model, const MoxReader::Node& node) {
    if (node.geometry() != nullptr) {
        return &node;
    }
    if (node.shape() == nullptr || node.firstChild == 0) {
        return nullptr;
    }
    const auto& child = model.node(node.firstChild);
    return child.geometry() != nullptr ? &child : nullptr;
}

} // namespace MoxTool
