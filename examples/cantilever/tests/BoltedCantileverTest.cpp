#include "BoltedCantilever.h"

#include "Analysis.h"

#include <gtest/gtest.h>

namespace Cantilever {
namespace {

struct TheBoltedCantilever : testing::Test {
    Mesh mesh = BoltedCantilever::mesh(1);
};

} // namespace

TEST_F(TheBoltedCantilever, ConsistsOfFourBoltsAPlateAndABeam) {
    ASSERT_EQ(mesh.parts.size(), 6U);
    EXPECT_EQ(mesh.parts[0].name, "Bolt 1");
    EXPECT_EQ(mesh.parts[0].elementCount, 16U); // 2 * 2 * 4
    EXPECT_EQ(mesh.parts[4].name, "End plate");
    EXPECT_EQ(mesh.parts[4].elementCount, 248U); // 10 * 14 * 2, less 8 for each bolt
    EXPECT_EQ(mesh.parts[5].name, "Beam");
    EXPECT_EQ(mesh.parts[5].elementCount, 720U); // 30 * 4 * 6
}

TEST_F(TheBoltedCantilever, IsFixedWhereTheBoltsMeetTheWall) {
    const std::vector<unsigned int> fixed = BoltedCantilever::fixedNodes(mesh);
    EXPECT_EQ(fixed.size(), 36U); // 3 * 3 for each bolt
    for (const unsigned int node : fixed) {
        EXPECT_EQ(mesh.nodes(node, 0), -40.0);
    }
}

// 24 faces share the load of 2400 N: a corner of the section has a quarter of one face, the middle all of
// one.
TEST_F(TheBoltedCantilever, TipForceIsSpreadByArea) {
    const NodeTable forces = BoltedCantilever::tipForces(mesh, 2400.0);
    EXPECT_NEAR(forces.col(2).sum(), -2400.0, 1e-9);
    EXPECT_NEAR(forces.minCoeff(), -100.0, 1e-9);
    const Eigen::AlignedBox3d corner(Eigen::Vector3d(600, 20, 30), Eigen::Vector3d(600, 20, 30));
    EXPECT_NEAR(forces(mesh.nodesInside(corner).at(0), 2), -25.0, 1e-9);
}

TEST_F(TheBoltedCantilever, RotationAsAWholeDeflectsTheTipAndDoesNotBendTheBeam) {
    NodeTable displacements = NodeTable::Zero(mesh.nodes.rows(), 3);
    displacements.col(0) = 1e-3 * mesh.nodes.col(2);
    displacements.col(2) = -1e-3 * mesh.nodes.col(0);
    const auto [whole, beam] = BoltedCantilever::tipDeflection(mesh, displacements);
    EXPECT_NEAR(whole, 0.6, 1e-12);
    EXPECT_NEAR(beam, 0.0, 1e-12);
}

/// The theory of the clamped beam, by hand: 5000 N * (600 mm)^3 / (3 * 210000 MPa * 720000 mm^4) = 2.38095 mm
/// from bending, and 5000 * 600 / (0.849673 * 80769.2 * 2400) = 0.01821 mm from shear.
TEST(Analysis, BeamBendsAsInTheoryAndPlateAndBoltsAddToIt) {
    const Analysis analysis = analyse(1);
    const auto [whole, beam] =
        BoltedCantilever::tipDeflection(analysis.mesh, analysis.steps.back().displacements);
    EXPECT_NEAR(beam, 2.39917, 0.01 * 2.39917);
    EXPECT_GT(whole, 1.05 * beam);
}

TEST(Analysis, StepsShareTheLoadAndTheWallCarriesIt) {
    const Analysis analysis = analyse(1);
    ASSERT_EQ(analysis.steps.size(), 5U);
    EXPECT_DOUBLE_EQ(analysis.steps[0].load, 1000.0);
    EXPECT_DOUBLE_EQ(analysis.steps[4].time, 1.0);
    EXPECT_NEAR(analysis.steps[4].reactions.col(2).sum(), 5000.0, 1e-5);
    const NodeTable difference = analysis.steps[4].displacements - 5.0 * analysis.steps[0].displacements;
    EXPECT_LT(difference.cwiseAbs().maxCoeff(), 1e-9);
}

// Beam theory gives 92.8 Hz sideways and 139.3 Hz upright for a rigid clamp; bolts and plate are softer.
TEST(Analysis, ElasticSupportLowersTheFirstFrequencies) {
    const Analysis analysis = analyse(1);
    ASSERT_EQ(analysis.modes.size(), 6U);
    EXPECT_GT(analysis.modes[0].frequency, 75.0);
    EXPECT_LT(analysis.modes[0].frequency, 92.8);
    EXPECT_GT(analysis.modes[1].frequency, 110.0);
    EXPECT_LT(analysis.modes[1].frequency, 139.3);
    EXPECT_DOUBLE_EQ(analysis.modes[0].shape.maxCoeff(), 1.0);
}

} // namespace Cantilever
