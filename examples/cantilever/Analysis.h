#pragma once

#include "Material.h"
#include "Mesh.h"

#include <Eigen/Core>

#include <cstddef>
#include <vector>

namespace Cantilever {

/// The six stress components xx, yy, zz, xy, yz, zx of each element, in MPa.
using StressTable = Eigen::Matrix<double, Eigen::Dynamic, 6, Eigen::RowMajor>;

/// The state under a part of the full load.
struct LoadStep {
    double time;              ///< From 0 to 1, the share of the full load.
    double load;              ///< The tip force in N.
    NodeTable displacements;  ///< In mm.
    NodeTable reactions;      ///< In N.
    StressTable stresses;     ///< At the elements' centres.
    Eigen::VectorXd vonMises; ///< In MPa, one for each element.
};

/// A natural mode.
struct Mode {
    double frequency; ///< In Hz.
    NodeTable shape;  ///< Scaled so that the largest component is 1.
};

/// Everything that is computed and then saved.
struct Analysis {
    Material material;
    Mesh mesh;
    Eigen::Index freeCount; ///< The number of equations.
    std::vector<LoadStep> steps;
    std::vector<Mode> modes;
};

/// Analyses the bolted cantilever of steel: five load steps up to 5 kN, six modes.
///
/// @param fineness See BoltedCantilever::mesh().
Analysis analyse(std::size_t fineness);

} // namespace Cantilever
