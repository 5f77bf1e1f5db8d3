#pragma once

#include "MoxReader/Node.h"

#include <cstddef>
#include <span>
#include <vector>

namespace MoxReader {

/// The children of each node of a tree, derived from the parents' ids and checked against all six links.
class ChildTable {
public:
    /// @param nodes   Ids 1, 2, 3 and so on in this order.
    /// @throws Error  BadTreeLink if the root has a parent or a sibling, if a parent's id is not below its
    ///                child's (so that there is no cycle), or if a link contradicts the parents.
    explicit ChildTable(const std::vector<Node>& nodes);

    /// The ids of a node's children in their order. REQUIRES an id of the tree.
    std::span<const std::uint32_t> children(std::uint32_t id) const;

private:
    void countChildren(const std::vector<Node>& nodes);
    void placeChildren(const std::vector<Node>& nodes);
    void checkFamily(const std::vector<Node>& nodes, const Node& parent) const;

    std::vector<std::uint32_t> children_; ///< Those of node 1, then those of node 2, and so on.
    /// For each node, the place of its first child in children_; then the end.
    std::vector<std::size_t> first_;
};

} // namespace MoxReader
