#pragma once

#include "Material.h"
#include "Mesh.h"

#include <Eigen/Core>

/// The eight-node hexahedron with incompatible modes: three quadratic bending modes inside each element,
/// condensed before assembly, which let a single layer of elements bend without locking. Distorted elements
/// pass the patch test, as the gradients of the extra modes are taken with the Jacobian of the centre.
namespace Cantilever::Hexahedron {

/// x, y, z of the first node, then of the second, and so on.
using Vector = Eigen::Matrix<double, 24, 1>;
using Matrix = Eigen::Matrix<double, 24, 24>;

/// The stiffness matrix in N/mm.
Matrix stiffness(const Corners& corners, const Material& material);

/// The consistent mass matrix in tonne.
Matrix mass(const Corners& corners, const Material& material);

/// The stress in MPa at the element's centre, where the extra modes have no strain.
SixVector stressAtCentre(const Corners& corners, const Material& material, const Vector& displacement);

} // namespace Cantilever::Hexahedron
