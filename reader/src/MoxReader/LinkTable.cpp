#include "MoxReader/LinkTable.h"

#include "MoxReader/ReadHelpers.h"

namespace MoxReader {

namespace {

const Dataset* targetOf(const std::vector<Node>& nodes, const Dataset& link) {
    if (link.linkNodeId == 0 || link.linkNodeId > nodes.size()) {
        return nullptr;
    }
    const auto* geometry = nodes[link.linkNodeId - 1].geometry();
    const bool exists = geometry != nullptr && link.linkIndex < geometry->datasets.size();
    return exists ? &geometry->datasets[link.linkIndex] : nullptr;
}

} // namespace

LinkTable::LinkTable(const std::vector<Node>& nodes) : first_{0} {
    for (const auto& node : nodes) {
        first_.push_back(first_.back() + (node.geometry() != nullptr ? node.geometry()->datasets.size() : 0));
    }
    // A walk that comes back to itself finds this value.
    resolutions_.assign(first_.back(), ErrorCode::LinkCycle);
    visited_.assign(first_.back(), false);
    for (const auto& node : nodes) {
        if (node.geometry() == nullptr) {
            continue;
        }
        for (const auto& dataset : node.geometry()->datasets) {
            follow(nodes, dataset);
        }
    }
}

// Follows the links to a holder, a missing target, or a dataset that was visited before; all datasets on the
// way get the same resolution. No dataset is visited twice.
void LinkTable::follow(const std::vector<Node>& nodes, const Dataset& start) {
    std::vector<std::size_t> walked;
    const Dataset* dataset = &start;
    while (dataset != nullptr && !visited_[place(*dataset)]) {
        const auto here = place(*dataset);
        visited_[here] = true;
        walked.push_back(here);
        if (!dataset->isLink) {
            resolutions_[here] = dataset;
        } else {
            dataset = targetOf(nodes, *dataset);
        }
    }
    const auto end =
        dataset != nullptr ? resolutions_[place(*dataset)] : Resolution(ErrorCode::BadLinkTarget);
    for (const auto index : walked) {
        resolutions_[index] = end;
    }
}

const LinkTable::Resolution& LinkTable::resolution(std::uint32_t nodeId, std::uint32_t index) const {
    const bool isNode = nodeId != 0 && nodeId < first_.size();
    if (!isNode || index >= first_[nodeId] - first_[nodeId - 1]) {
        throw Error(ErrorCode::NoSuchNode, {.record = describeDataset(nodeId, index)});
    }
    return resolutions_[first_[nodeId - 1] + index];
}

} // namespace MoxReader
