#include "Hexahedron.h"

#include <Eigen/LU>

#include <array>
#include <cmath>

namespace Cantilever::Hexahedron {
namespace {

constexpr int NodeCount = 8;
constexpr int ModeCount = 3;
constexpr int NodeDofs = 3 * NodeCount;
constexpr int ModeDofs = 3 * ModeCount;

using Functions = Eigen::Matrix<double, NodeCount, 1>;
using Gradients = Eigen::Matrix<double, NodeCount, 3>;
using StrainMatrix = Eigen::Matrix<double, 6, NodeDofs + ModeDofs>;

// The natural coordinates of the nodes.
const Corners& naturalCorners() {
    static const Corners corners{{-1, -1, -1}, {1, -1, -1}, {1, 1, -1}, {-1, 1, -1},
                                 {-1, -1, 1},  {1, -1, 1},  {1, 1, 1},  {-1, 1, 1}};
    return corners;
}

// The points of the 2 x 2 x 2 Gauss rule, all of weight 1.
const Corners& gaussPoints() {
    static const Corners points = naturalCorners() / std::sqrt(3.0);
    return points;
}

Functions shapeFunctions(const Eigen::RowVector3d& point) {
    Functions values;
    for (int node = 0; node < NodeCount; ++node) {
        values[node] = (1.0 + naturalCorners().row(node).array() * point.array()).prod() / 8.0;
    }
    return values;
}

Gradients naturalGradients(const Eigen::RowVector3d& point) {
    Gradients gradients;
    for (int node = 0; node < NodeCount; ++node) {
        const Eigen::RowVector3d corner = naturalCorners().row(node);
        const Eigen::RowVector3d factors = 1.0 + corner.array() * point.array();
        gradients.row(node) << corner[0] * factors[1] * factors[2], corner[1] * factors[2] * factors[0],
            corner[2] * factors[0] * factors[1];
    }
    return gradients / 8.0;
}

// Row i holds the derivatives of x, y, z by the natural coordinate i.
Eigen::Matrix3d jacobian(const Corners& corners, const Eigen::RowVector3d& point) {
    return naturalGradients(point).transpose() * corners;
}

// The strains that a function of the given gradient causes along x, y and z.
Eigen::Matrix<double, 6, 3> strainColumns(const Eigen::Vector3d& gradient) {
    const double x = gradient.x();
    const double y = gradient.y();
    const double z = gradient.z();
    return Eigen::Matrix<double, 6, 3>{{x, 0, 0}, {0, y, 0}, {0, 0, z}, {y, x, 0}, {0, z, y}, {z, 0, x}};
}

StrainMatrix strainMatrix(const Corners& corners, const Eigen::RowVector3d& point) {
    const Eigen::Matrix3d inverse = jacobian(corners, point).inverse();
    const Gradients natural = naturalGradients(point);
    StrainMatrix strain;
    for (int node = 0; node < NodeCount; ++node) {
        strain.middleCols<3>(3 * node) = strainColumns(inverse * natural.row(node).transpose());
    }

    const Eigen::Matrix3d centre = jacobian(corners, Eigen::RowVector3d::Zero());
    const Eigen::Matrix3d centreInverse = centre.inverse() * (centre.determinant() * inverse.determinant());
    for (int mode = 0; mode < ModeCount; ++mode) { // mode i is 1 - (natural coordinate i)^2
        strain.middleCols<3>(NodeDofs + 3 * mode) =
            strainColumns(centreInverse.col(mode) * (-2.0 * point[mode]));
    }
    return strain;
}

} // namespace

Matrix stiffness(const Corners& corners, const Material& material) {
    using Full = Eigen::Matrix<double, NodeDofs + ModeDofs, NodeDofs + ModeDofs>;
    const SixMatrix elasticity = material.elasticity();
    Full full = Full::Zero();
    for (const auto& point : gaussPoints().rowwise()) {
        const StrainMatrix strain = strainMatrix(corners, point);
        full += strain.transpose() * elasticity * strain * jacobian(corners, point).determinant();
    }
    const Eigen::Matrix<double, NodeDofs, ModeDofs> coupling = full.topRightCorner<NodeDofs, ModeDofs>();
    const Eigen::Matrix<double, ModeDofs, ModeDofs> modes = full.bottomRightCorner<ModeDofs, ModeDofs>();
    return full.topLeftCorner<NodeDofs, NodeDofs>() - coupling * modes.inverse() * coupling.transpose();
}

Matrix mass(const Corners& corners, const Material& material) {
    Eigen::Matrix<double, NodeCount, NodeCount> nodal = Eigen::Matrix<double, NodeCount, NodeCount>::Zero();
    for (const auto& point : gaussPoints().rowwise()) {
        const Functions values = shapeFunctions(point);
        nodal += values * values.transpose() * (material.density * jacobian(corners, point).determinant());
    }
    Matrix result = Matrix::Zero();
    for (int row = 0; row < NodeCount; ++row) {
        for (int col = 0; col < NodeCount; ++col) {
            result.block<3, 3>(3 * row, 3 * col).diagonal().setConstant(nodal(row, col));
        }
    }
    return result;
}

SixVector stressAtCentre(const Corners& corners, const Material& material, const Vector& displacement) {
    const StrainMatrix strain = strainMatrix(corners, Eigen::RowVector3d::Zero());
    return material.elasticity() * (strain.leftCols<NodeDofs>() * displacement);
}

} // namespace Cantilever::Hexahedron
