#pragma once

#include "BeamTheory.h"
#include "Mesh.h"

#include <Eigen/Core>

#include <array>
#include <cstddef>
#include <vector>

/// The structure of this example: a beam along x with an end plate, which four bolts hold at a distance from
/// a wall. The plate's front face is at x = 0. The bolts are bonded to the plate and fixed where they meet
/// the wall; plate and wall do not touch.
///
///     z         bolt  plate
///     |         |=====#|
///     +-- x     |     #|==============================  | force
///               |     #|==============================  v
///               |=====#|             beam
///             wall
///
/// Units: mm, N, tonne, s.
namespace Cantilever::BoltedCantilever {

inline constexpr Beam TheBeam{600.0, 40.0, 60.0};
inline constexpr double PlateThickness = 20.0;
inline constexpr double PlateWidth = 100.0;
inline constexpr double PlateHeight = 140.0;
inline constexpr double BoltSide = 20.0;                                 ///< Bolts are square bars.
inline constexpr double BoltFreeLength = 20.0;                           ///< Between wall and plate.
inline constexpr double WallPosition = -PlateThickness - BoltFreeLength; ///< The x of the wall.

/// y and z of the bolts' axes.
inline constexpr std::array<std::array<double, 2>, 4> BoltAxes{
    {{-30.0, -50.0}, {30.0, -50.0}, {-30.0, 50.0}, {30.0, 50.0}}};

/// The mesh, with the parts "Bolt 1" to "Bolt 4", "End plate" and "Beam", in this order.
///
/// @param fineness 1 for cells of 10 mm (20 mm along the beam), 2 for half of that, and so on.
Mesh mesh(std::size_t fineness);

/// The nodes where the bolts meet the wall.
std::vector<unsigned int> fixedNodes(const Mesh& mesh);

/// Forces in N at the nodes that spread `total` evenly over the beam's free end, downwards.
NodeTable tipForces(const Mesh& mesh, double total);

/// How far the tip of the beam has gone down, in mm.
struct TipDeflection {
    double whole; ///< Against the wall.
    double beam;  ///< Against the beam's own root section, whose rigid motion is taken out.
};

TipDeflection tipDeflection(const Mesh& mesh, const NodeTable& displacements);

} // namespace Cantilever::BoltedCantilever
