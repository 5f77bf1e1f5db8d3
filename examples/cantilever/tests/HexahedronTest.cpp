#include "Hexahedron.h"

#include <gtest/gtest.h>

#include <Eigen/Eigenvalues>

namespace Cantilever {
namespace {

// Lame's constant and the shear modulus are both 400.
constexpr Material Soft{1000.0, 0.25, 1e-3};

const Corners Distorted{{0, 0, 0},       {10, 1, -1},  {12, 11, 0},  {-1, 9, 1},
                        {0.5, -0.5, 10}, {11, 0.5, 9}, {10, 12, 11}, {1, 10, 12}};

Corners box(double x, double y, double z) {
    return Corners{{0, 0, 0}, {x, 0, 0}, {x, y, 0}, {0, y, 0}, {0, 0, z}, {x, 0, z}, {x, y, z}, {0, y, z}};
}

Hexahedron::Vector displacedBy(const Corners& corners, const Eigen::Matrix3d& gradient) {
    Hexahedron::Vector displacement;
    for (int node = 0; node < 8; ++node) {
        displacement.segment<3>(3 * node) = gradient * corners.row(node).transpose();
    }
    return displacement;
}

} // namespace

TEST(Hexahedron, ConstantStrainGivesItsExactStressInADistortedElement) {
    const Eigen::Matrix3d strain{{1e-3, 1.5e-3, -1e-3}, {1.5e-3, 2e-3, 0.5e-3}, {-1e-3, 0.5e-3, -1e-3}};
    const SixVector stress = Hexahedron::stressAtCentre(Distorted, Soft, displacedBy(Distorted, strain));
    const SixVector expected{1.6, 2.4, 0.0, 1.2, 0.4, -0.8};
    EXPECT_LT((stress - expected).cwiseAbs().maxCoeff(), 1e-12);
}

TEST(Hexahedron, RigidMotionsOfADistortedElementNeedNoForce) {
    const Hexahedron::Matrix stiffness = Hexahedron::stiffness(Distorted, Soft);
    const Eigen::Matrix3d rotation{{0, -3, 2}, {3, 0, -1}, {-2, 1, 0}};
    EXPECT_LT((stiffness * displacedBy(Distorted, rotation)).cwiseAbs().maxCoeff(), 1e-8);

    const Hexahedron::Vector translation = Eigen::Vector3d(1, -2, 3).replicate<8, 1>();
    EXPECT_LT((stiffness * translation).cwiseAbs().maxCoeff(), 1e-8);
}

TEST(Hexahedron, HasSixMotionsWithoutEnergyAndNoMore) {
    const Eigen::SelfAdjointEigenSolver<Hexahedron::Matrix> solver(Hexahedron::stiffness(Distorted, Soft));
    EXPECT_NEAR(solver.eigenvalues()[5], 0.0, 1e-8);
    EXPECT_GT(solver.eigenvalues()[6], 100.0);
}

// In pure bending without Poisson's effect a box of height h and section area h * w carries the curvature k
// with the energy E * I * k^2 * L / 2, where I = w * h^3 / 12; here 1000 * 2250 * 1e-6 * 40 / 2 = 45.
TEST(Hexahedron, BendsWithExactlyTheEnergyOfBeamTheory) {
    const Corners corners = box(40.0, 1.0, 30.0);
    const Material noPoisson{1000.0, 0.0, 1e-3};
    Hexahedron::Vector displacement = Hexahedron::Vector::Zero();
    for (int node = 0; node < 8; ++node) { // u = curvature * x * z, both from the centre
        displacement[3 * node] = 1e-3 * (corners(node, 0) - 20.0) * (corners(node, 2) - 15.0);
    }
    const double energy = 0.5 * displacement.dot(Hexahedron::stiffness(corners, noPoisson) * displacement);
    EXPECT_NEAR(energy, 45.0, 1e-9);
}

TEST(Hexahedron, MovesItsWholeMass) {
    const Hexahedron::Vector alongY = Eigen::Vector3d(0, 1, 0).replicate<8, 1>();
    const double mass = alongY.dot(Hexahedron::mass(box(10, 20, 30), Soft) * alongY);
    EXPECT_NEAR(mass, 6.0, 1e-12); // 1e-3 * 6000
}

TEST(Material, VonMisesStressOfTensionIsTheTension) {
    EXPECT_NEAR(vonMises(SixVector{100, 0, 0, 0, 0, 0}), 100.0, 1e-12);
}

TEST(Material, VonMisesStressOfShearIsRootThreeTimesTheShear) {
    EXPECT_NEAR(vonMises(SixVector{0, 0, 0, 0, 100, 0}), 173.20508075688772, 1e-10);
}

TEST(Material, VonMisesStressOfEvenPressureIsZero) {
    EXPECT_NEAR(vonMises(SixVector{-50, -50, -50, 0, 0, 0}), 0.0, 1e-12);
}

} // namespace Cantilever
