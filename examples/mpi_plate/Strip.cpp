#include "Strip.h"

namespace Plate {

Strip::Strip(std::size_t size, int rank, int rankCount)
    : size_(size),
      firstRow_(size * static_cast<std::size_t>(rank) / static_cast<std::size_t>(rankCount)),
      lastRow_(size * static_cast<std::size_t>(rank + 1) / static_cast<std::size_t>(rankCount)) {}

std::array<double, 2> Strip::position(std::size_t node) const {
    return {static_cast<double>(node % nodesPerRow()) * elementSize(),
            static_cast<double>(firstRow_ + node / nodesPerRow()) * elementSize()};
}

bool Strip::isOnEdge(std::size_t node) const {
    const auto column = node % nodesPerRow();
    const auto row = firstRow_ + node / nodesPerRow();
    return column == 0 || column == size_ || row == 0 || row == size_;
}

std::array<std::size_t, 4> Strip::corners(std::size_t element) const {
    const auto corner = element / size_ * nodesPerRow() + element % size_;
    return {corner, corner + 1, corner + nodesPerRow() + 1, corner + nodesPerRow()};
}

} // namespace Plate
