#pragma once

#include "Structure.h"

#include <Eigen/Core>

namespace Cantilever {

/// The natural modes of a structure, lowest frequency first.
struct NaturalModes {
    Eigen::VectorXd frequencies; ///< In Hz.
    Eigen::MatrixXd shapes; ///< One column for each mode, free degrees of freedom, orthonormal by the mass.
};

/// Finds the `count` modes of the lowest frequencies by subspace iteration.
///
/// @throws std::invalid_argument if `count` is below 1 or the structure has fewer free degrees of freedom.
/// @throws std::runtime_error if the iteration does not settle.
NaturalModes naturalModes(const Structure& structure, Eigen::Index count);

} // namespace Cantilever
