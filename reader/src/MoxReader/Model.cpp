#include "MoxReader/Model.h"

#include "MoxReader/ModelReader.h"
#include "MoxReader/ReadHelpers.h"

#include <utility>

namespace MoxReader {

namespace {

std::vector<Node> checkIds(std::vector<Node> nodes) {
    if (nodes.empty()) {
        throw Error(ErrorCode::BadNodeId);
    }
    std::uint32_t expected = 1;
    for (const auto& node : nodes) {
        if (node.id != expected++) {
            throw Error(ErrorCode::BadNodeId, {.record = describeNode(node.id)});
        }
    }
    return nodes;
}

std::vector<Node> numberDatasets(std::vector<Node> nodes) {
    for (auto& node : nodes) {
        auto* geometry = std::get_if<Geometry>(&node.content);
        if (geometry == nullptr) {
            continue;
        }
        std::uint32_t index = 0;
        for (auto& dataset : geometry->datasets) {
            dataset.nodeId = node.id;
            dataset.index = index++;
        }
    }
    return nodes;
}

} // namespace

Model::Model(std::vector<Node> nodes, GlobalInformation global)
    : nodes_(numberDatasets(checkIds(std::move(nodes)))),
      global_(std::move(global)),
      children_(nodes_),
      links_(nodes_) {}

const Node& Model::node(std::uint32_t id) const {
    if (id == 0 || id > nodes_.size()) {
        throw Error(ErrorCode::NoSuchNode, {.record = describeNode(id)});
    }
    return nodes_[id - 1];
}

std::span<const std::uint32_t> Model::children(std::uint32_t id) const {
    return children_.children(node(id).id);
}

const Dataset& Model::resolve(const Dataset& dataset) const {
    const auto& resolution = links_.resolution(dataset.nodeId, dataset.index);
    if (const auto* holder = std::get_if<const Dataset*>(&resolution)) {
        return **holder;
    }
    throw Error(std::get<ErrorCode>(resolution), {.record = describeDataset(dataset.nodeId, dataset.index)});
}

Model readModel(const File& file) {
    return ModelReader(file).read();
}

} // namespace MoxReader
