#pragma once

#include <Eigen/Core>

namespace Cantilever {

/// Six components in the order xx, yy, zz, xy, yz, zx; strains hold engineering shear.
using SixVector = Eigen::Matrix<double, 6, 1>;
using SixMatrix = Eigen::Matrix<double, 6, 6>;

/// An isotropic, linearly elastic material. Units: mm, N, tonne, s, and so MPa.
struct Material {
    double young;   ///< Young's modulus in MPa.
    double poisson; ///< Poisson's ratio, from 0 to below 0.5.
    double density; ///< Mass density in tonne/mm^3.

    /// The shear modulus in MPa.
    double shear() const { return young / (2.0 * (1.0 + poisson)); }

    /// The matrix that turns strain into stress.
    SixMatrix elasticity() const;
};

/// Structural steel.
inline constexpr Material Steel{210000.0, 0.3, 7.85e-9};

/// The von Mises equivalent of a stress.
double vonMises(const SixVector& stress);

} // namespace Cantilever
