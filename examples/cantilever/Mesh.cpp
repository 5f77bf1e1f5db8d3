#include "Mesh.h"

namespace Cantilever {

Corners Mesh::cornersOf(const Element& element) const {
    Corners corners;
    Eigen::Index row = 0;
    for (const unsigned int node : element) {
        corners.row(row++) = nodes.row(node);
    }
    return corners;
}

std::vector<unsigned int> Mesh::nodesInside(const Eigen::AlignedBox3d& box) const {
    constexpr double tolerance = 1e-6; // mm; far below any cell size
    const Eigen::AlignedBox3d grown(box.min().array() - tolerance, box.max().array() + tolerance);
    std::vector<unsigned int> found;
    for (unsigned int node = 0; node < nodes.rows(); ++node) {
        if (grown.contains(nodes.row(node).transpose())) {
            found.push_back(node);
        }
    }
    return found;
}

} // namespace Cantilever
