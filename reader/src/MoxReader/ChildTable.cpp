#include "MoxReader/ChildTable.h"

#include "MoxReader/ReadHelpers.h"

#include <numeric>

namespace MoxReader {

namespace {

constexpr std::uint32_t RootId = 1;

void require(bool isSound, const Node& node) {
    if (!isSound) {
        throw Error(ErrorCode::BadTreeLink, {.record = describeNode(node.id)});
    }
}

} // namespace

ChildTable::ChildTable(const std::vector<Node>& nodes) {
    countChildren(nodes);
    placeChildren(nodes);
    for (const auto& node : nodes) {
        checkFamily(nodes, node);
    }
}

// Afterwards first_[id] counts the children of all nodes up to id, so it is where the next node's children
// begin.
void ChildTable::countChildren(const std::vector<Node>& nodes) {
    first_.assign(nodes.size() + 1, 0);
    for (const auto& node : nodes) {
        if (node.id == RootId) {
            require(node.parent == 0 && node.previous == 0 && node.next == 0, node);
        } else {
            require(node.parent != 0 && node.parent < node.id, node);
            ++first_[node.parent];
        }
    }
    std::partial_sum(first_.begin(), first_.end(), first_.begin());
}

// Ids increase along a chain of siblings, so taking the nodes in order keeps siblings in order.
void ChildTable::placeChildren(const std::vector<Node>& nodes) {
    auto next = first_;
    children_.resize(first_.back());
    for (const auto& node : nodes) {
        if (node.id != RootId) {
            children_[next[node.parent - 1]++] = node.id;
        }
    }
}

void ChildTable::checkFamily(const std::vector<Node>& nodes, const Node& parent) const {
    std::uint32_t previous = 0;
    for (const auto id : children(parent.id)) {
        const auto& child = nodes[id - 1];
        require(child.previous == previous, child);
        require(previous == 0 ? parent.firstChild == id : nodes[previous - 1].next == id, child);
        previous = id;
    }
    require(parent.lastChild == previous && (previous != 0 || parent.firstChild == 0), parent);
    if (previous != 0) {
        require(nodes[previous - 1].next == 0, nodes[previous - 1]);
    }
}

std::span<const std::uint32_t> ChildTable::children(std::uint32_t id) const {
    const auto first = first_[id - 1];
    return std::span(children_).subspan(first, first_[id] - first);
}

} // namespace MoxReader
