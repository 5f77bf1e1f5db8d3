#pragma once

#include "MoxReader/Node.h"

#include <cstddef>
#include <variant>
#include <vector>

namespace MoxReader {

/// Maps each dataset of a model to the one that holds its numbers. All links are followed once, in linear
/// time.
class LinkTable {
public:
    /// The holder, or why there is none: BadLinkTarget or LinkCycle.
    using Resolution = std::variant<const Dataset*, ErrorCode>;

    /// @param nodes  Ids 1, 2, 3 and so on in this order; nodeId and index of each dataset are set. The table
    ///               points at the datasets, so their lists must live as long and must not change.
    explicit LinkTable(const std::vector<Node>& nodes);

    /// @throws Error  NoSuchNode if the model has no dataset of that node and index.
    const Resolution& resolution(std::uint32_t nodeId, std::uint32_t index) const;

private:
    void follow(const std::vector<Node>& nodes, const Dataset& start);
    std::size_t place(const Dataset& dataset) const { return first_[dataset.nodeId - 1] + dataset.index; }

    std::vector<std::size_t> first_;      ///< For each node, the place of its first dataset; then the end.
    std::vector<Resolution> resolutions_; ///< For each dataset.
    std::vector<bool> visited_;           ///< For each dataset: whether a walk has reached it.
};

} // namespace MoxReader
