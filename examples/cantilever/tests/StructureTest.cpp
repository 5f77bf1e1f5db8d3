#include "BeamTheory.h"
#include "Hexahedron.h"
#include "TestBeam.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace Cantilever {
namespace {

constexpr Material NoPoisson{1000.0, 0.0, 1e-3};

// Eight elements around one inner node, which is off the middle.
Mesh distortedPatch() {
    LatticeMesher mesher({0, 1, 2}, {0, 1, 2}, {0, 1, 2});
    mesher.addPart("Patch", {Eigen::AlignedBox3d(Eigen::Vector3d(0, 0, 0), Eigen::Vector3d(2, 2, 2))});
    Mesh mesh = mesher.mesh();
    const Eigen::AlignedBox3d middle(Eigen::Vector3d(1, 1, 1), Eigen::Vector3d(1, 1, 1));
    mesh.nodes.row(mesh.nodesInside(middle).at(0)) << 1.2, 0.85, 1.1;
    return mesh;
}

} // namespace

TEST(Structure, PatchTestLeavesTheInnerNodeWithoutForceUnderConstantStrain) {
    const Mesh mesh = distortedPatch();
    const Structure structure(mesh, Steel, {0, 1, 2});
    const Eigen::Matrix3d strain{{1e-3, 1.5e-3, -1e-3}, {1.5e-3, 2e-3, 0.5e-3}, {-1e-3, 0.5e-3, -1e-3}};
    const NodeTable forces = structure.internalForces(mesh.nodes * strain);
    const Eigen::AlignedBox3d inside(Eigen::Vector3d(0.5, 0.5, 0.5), Eigen::Vector3d(1.5, 1.5, 1.5));
    const std::vector<unsigned int> inner = mesh.nodesInside(inside);
    ASSERT_EQ(inner.size(), 1U);
    EXPECT_GT(forces.cwiseAbs().maxCoeff(), 10.0);
    EXPECT_LT(forces.row(inner[0]).cwiseAbs().maxCoeff(), 1e-9);
}

TEST(Structure, RigidMotionsHaveNoEnergy) {
    const Mesh mesh = distortedPatch();
    const Structure structure(mesh, Steel, {0, 1, 2});
    const Eigen::Matrix3d rotation{{0, 3, -2}, {-3, 0, 1}, {2, -1, 0}};
    NodeTable motion = mesh.nodes * rotation;
    motion.rowwise() += Eigen::RowVector3d(4, -5, 6);
    EXPECT_NEAR(motion.cwiseProduct(structure.internalForces(motion)).sum(), 0.0, 1e-6);
}

// Force * length / (Young's modulus * area) = 500 * 100 / (1000 * 100).
TEST(Structure, BarStretchesByItsTensionExactly) {
    const TestBeam bar(100.0, 4, NoPoisson);
    const NodeTable displacements = bar.structure.displacements(bar.tipForce({500, 0, 0}));
    for (const unsigned int node : bar.tip) {
        EXPECT_NEAR(displacements(node, 0), 0.5, 1e-10);
    }
}

TEST(Structure, ReactionsStandAtTheSupportsAndBalanceTheLoad) {
    const TestBeam bar(100.0, 4, Steel);
    const NodeTable forces = bar.tipForce({500, -200, 100});
    const NodeTable reactions = bar.structure.reactions(bar.structure.displacements(forces), forces);
    const Eigen::RowVector3d sum = reactions.colwise().sum();
    EXPECT_LT((sum - Eigen::RowVector3d(-500, 200, -100)).cwiseAbs().maxCoeff(), 1e-6);
    for (const unsigned int node : bar.tip) {
        EXPECT_EQ(reactions.row(node), Eigen::RowVector3d::Zero());
    }
}

// Bending 100 * 200^3 / (3 * 210000 * 833.33) = 1.52381, shear 100 * 200 / (0.849673 * 80769.2 * 100) =
// 0.00291.
TEST(Structure, TipOfABeamGoesDownAsInTimoshenkosTheory) {
    const TestBeam beam(200.0, 20, Steel);
    const NodeTable displacements = beam.structure.displacements(beam.tipForce({0, 0, -100}));
    for (const unsigned int node : beam.tip) {
        EXPECT_NEAR(displacements(node, 2), -1.52672, 0.01 * 1.52672);
    }
}

TEST(Structure, MeshWithoutSupportsIsRefused) {
    const Mesh mesh = TestBeam::meshOf(100.0, 4);
    EXPECT_THROW(Structure(mesh, Steel, {}), std::runtime_error);
}

TEST(Structure, MeshHeldAtOneNodeIsRefused) {
    const Mesh mesh = TestBeam::meshOf(100.0, 4);
    EXPECT_THROW(Structure(mesh, Steel, {0}), std::runtime_error);
}

TEST(BeamTheory, TipDeflectionAddsBendingAndShear) {
    EXPECT_NEAR(tipDeflection(Beam{200, 10, 10}, Steel, 100), 1.52672, 1e-5);
}

// 1.8751^2 / (2 pi) * sqrt(210000 * 833.33 / (7.85e-9 * 100 * 200^4)) = 0.559591 * 373.271
TEST(BeamTheory, FirstFrequencyOfASlenderBeam) {
    EXPECT_NEAR(firstBendingFrequency(Beam{200, 10, 10}, Steel), 208.879, 0.001);
}

} // namespace Cantilever
