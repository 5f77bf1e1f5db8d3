#include "LatticeMesher.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace Cantilever {
namespace {

constexpr unsigned int NoNode = std::numeric_limits<unsigned int>::max();

// The corners of a cell in the order of Element.
constexpr std::array<std::array<std::size_t, 3>, 8> CornerOffsets{
    {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}}};

std::array<std::size_t, 3> sum(const std::array<std::size_t, 3>& a, const std::array<std::size_t, 3>& b) {
    return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}

} // namespace

GridLines uniformLines(double begin, double end, std::size_t count) {
    GridLines lines(count + 1);
    for (std::size_t i = 0; i <= count; ++i) {
        lines[i] = begin + (end - begin) * static_cast<double>(i) / static_cast<double>(count);
    }
    return lines;
}

GridLines joined(const GridLines& first, const GridLines& second) {
    GridLines lines = first;
    lines.insert(lines.end(), second.begin() + 1, second.end());
    return lines;
}

LatticeMesher::LatticeMesher(GridLines x, GridLines y, GridLines z)
    : lines_{std::move(x), std::move(y), std::move(z)} {
    const std::size_t points = lines_[0].size() * lines_[1].size() * lines_[2].size();
    taken_.assign(points, false);
    nodes_.assign(points, NoNode);
}

void LatticeMesher::addPart(const std::string& name, const std::vector<Eigen::AlignedBox3d>& boxes) {
    const std::size_t first = result_.elements.size();
    for (std::size_t x = 0; x + 1 < lines_[0].size(); ++x) {
        for (std::size_t y = 0; y + 1 < lines_[1].size(); ++y) {
            for (std::size_t z = 0; z + 1 < lines_[2].size(); ++z) {
                addCellIfFree({x, y, z}, boxes);
            }
        }
    }
    result_.parts.push_back({name, first, result_.elements.size() - first});
    result_.nodes = Eigen::Map<const NodeTable>(coordinates_.data(),
                                                static_cast<Eigen::Index>(coordinates_.size() / 3), 3);
}

void LatticeMesher::addCellIfFree(const Index3& cell, const std::vector<Eigen::AlignedBox3d>& boxes) {
    const Eigen::Vector3d centre = 0.5 * (pointAt(cell) + pointAt(sum(cell, {1, 1, 1})));
    const auto holdsCentre = [&](const Eigen::AlignedBox3d& box) { return box.contains(centre); };
    if (taken_[flat(cell)] || std::none_of(boxes.begin(), boxes.end(), holdsCentre)) {
        return;
    }
    taken_[flat(cell)] = true;
    Element element{};
    for (std::size_t corner = 0; corner < element.size(); ++corner) {
        element[corner] = nodeAt(sum(cell, CornerOffsets[corner]));
    }
    result_.elements.push_back(element);
}

Eigen::Vector3d LatticeMesher::pointAt(const Index3& index) const {
    return {lines_[0][index[0]], lines_[1][index[1]], lines_[2][index[2]]};
}

unsigned int LatticeMesher::nodeAt(const Index3& index) {
    unsigned int& node = nodes_[flat(index)];
    if (node == NoNode) {
        node = static_cast<unsigned int>(coordinates_.size() / 3);
        const Eigen::Vector3d point = pointAt(index);
        coordinates_.insert(coordinates_.end(), point.begin(), point.end());
    }
    return node;
}

std::size_t LatticeMesher::flat(const Index3& index) const {
    return (index[0] * lines_[1].size() + index[1]) * lines_[2].size() + index[2];
}

} // namespace Cantilever
