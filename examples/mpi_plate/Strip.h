#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace Plate {

/// The piece of a square plate that one rank computes: some rows of its square elements. Two neighbours share the row
/// of nodes between them, and both have it.
class Strip {
public:
    /// @param size  Elements along an edge of the plate, at least as many as ranks.
    Strip(std::size_t size, int rank, int rankCount);

    std::size_t nodesPerRow() const { return size_ + 1; }
    std::size_t rows() const { return lastRow_ - firstRow_; }
    std::size_t nodeCount() const { return (rows() + 1) * nodesPerRow(); }
    std::size_t elementCount() const { return rows() * size_; }
    double elementSize() const { return 1.0 / static_cast<double>(size_); }

    /// x and y, from 0 to 1.
    std::array<double, 2> position(std::size_t node) const;
    bool isOnEdge(std::size_t node) const;
    /// The corners of an element, counter-clockwise, as nodes of this strip.
    std::array<std::size_t, 4> corners(std::size_t element) const;

    /// Numbers in the whole plate, from 1: the same for a node that two ranks have.
    std::size_t globalNode(std::size_t node) const { return firstRow_ * nodesPerRow() + node + 1; }
    std::size_t globalElement(std::size_t element) const { return firstRow_ * size_ + element + 1; }

private:
    std::size_t size_;
    std::size_t firstRow_;
    std::size_t lastRow_;
};

} // namespace Plate
