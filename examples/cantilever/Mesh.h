#pragma once

#include <Eigen/Core>
#include <Eigen/Geometry>

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace Cantilever {

/// One row of x, y, z for each node: coordinates, displacements or forces.
using NodeTable = Eigen::Matrix<double, Eigen::Dynamic, 3, Eigen::RowMajor>;

/// The zero-based nodes of a hexahedron: one face, then the opposite face in the same order. Seen from the
/// second face, each goes round anticlockwise.
using Element = std::array<unsigned int, 8>;

/// x, y, z of the eight nodes of a hexahedron.
using Corners = Eigen::Matrix<double, 8, 3>;

/// A body of the assembly: a run of consecutive elements of the mesh.
struct Part {
    std::string name;
    std::size_t firstElement;
    std::size_t elementCount;
};

/// Hexahedra in several parts; parts that touch share the nodes of the interface.
struct Mesh {
    NodeTable nodes;
    std::vector<Element> elements;
    std::vector<Part> parts;

    Corners cornersOf(const Element& element) const;

    /// All nodes inside a box or on its surface, in ascending order.
    std::vector<unsigned int> nodesInside(const Eigen::AlignedBox3d& box) const;
};

} // namespace Cantilever
