#pragma once

#include "Mesh.h"

#include <Eigen/Geometry>

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace Cantilever {

/// The planes of a lattice across one axis, in ascending order, in mm.
using GridLines = std::vector<double>;

/// `count` equal cells from `begin` to `end`.
GridLines uniformLines(double begin, double end, std::size_t count);

/// The lines of `first` and then those of `second`, which begins where `first` ends.
GridLines joined(const GridLines& first, const GridLines& second);

/// Cuts boxes out of one rectangular lattice. Boxes that touch share nodes, since both take them from the
/// lattice.
class LatticeMesher {
public:
    LatticeMesher(GridLines x, GridLines y, GridLines z);

    /// Adds a part made of all cells whose centres lie in one of the boxes and that no earlier part has
    /// taken.
    void addPart(const std::string& name, const std::vector<Eigen::AlignedBox3d>& boxes);

    const Mesh& mesh() const { return result_; }

private:
    using Index3 = std::array<std::size_t, 3>;

    void addCellIfFree(const Index3& cell, const std::vector<Eigen::AlignedBox3d>& boxes);
    Eigen::Vector3d pointAt(const Index3& index) const;
    unsigned int nodeAt(const Index3& index);
    std::size_t flat(const Index3& index) const;

    std::array<GridLines, 3> lines_;
    std::vector<bool> taken_;         // by lattice point that opens the cell
    std::vector<unsigned int> nodes_; // by lattice point; NoNode where none is needed yet
    std::vector<double> coordinates_; // three for each node
    Mesh result_;
};

} // namespace Cantilever
