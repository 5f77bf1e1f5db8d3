#include "nodePath.h"

#include <string_view>

namespace MoxTool {

namespace {

using MoxReader::Model;
using MoxReader::Node;

constexpr std::size_t MaxPathSize = 4096;

bool sharesPathOfParent(const Model& model, const Node& node) {
    return node.geometry() != nullptr && node.parent != 0 &&
           geometryOf(model, model.node(node.parent)) == &node;
}

const Node* findChild(const Model& model, const Node& parent, std::string_view name) {
    for (const auto id : model.children(parent.id)) {
        if (const auto& child = model.node(id); child.name == name) {
            return &child;
        }
    }
    return nullptr;
}

} // namespace

const Node* geometryOf(const Model& model, const Node& node) {
    if (node.geometry() != nullptr) {
        return &node;
    }
    if (node.shape() == nullptr || node.firstChild == 0) {
        return nullptr;
    }
    const auto& child = model.node(node.firstChild);
    return child.geometry() != nullptr ? &child : nullptr;
}

std::string nodePath(const Model& model, std::uint32_t id, const std::string& separator) {
    const auto* node = &model.node(id);
    if (sharesPathOfParent(model, *node)) {
        node = &model.node(node->parent);
    }
    auto path = separator + node->name;
    while (node->parent != 0) {
        node = &model.node(node->parent);
        if (path.size() + separator.size() + node->name.size() > MaxPathSize) {
            return "..." + path;
        }
        path.insert(0, separator + node->name);
    }
    return path;
}

const Node* findNode(const Model& model, const std::string& path, const std::string& separator) {
    std::string_view rest = path;
    const Node* node = nullptr;
    while (rest.starts_with(separator)) {
        rest.remove_prefix(separator.size());
        const auto name = rest.substr(0, rest.find(separator));
        rest.remove_prefix(name.size());
        const bool isRoot = node == nullptr;
        if (isRoot) {
            node = model.root().name == name ? &model.root() : nullptr;
        } else {
            node = findChild(model, *node, name);
        }
        if (node == nullptr) {
            return nullptr;
        }
    }
    return rest.empty() ? node : nullptr;
}

} // namespace MoxTool
