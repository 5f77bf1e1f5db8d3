#include "NaturalModes.h"

#include "TestBeam.h"

#include <gtest/gtest.h>

#include <numbers>
#include <stdexcept>

namespace Cantilever {
namespace {

struct NaturalModesOfABeam : testing::Test {
    TestBeam beam{200.0, 20, Steel};
    NaturalModes modes = naturalModes(beam.structure, 4);
};

} // namespace

// Euler and Bernoulli: 208.879 Hz, see BeamTheory's test. The section is square, so modes come in pairs.
TEST_F(NaturalModesOfABeam, FirstPairBendsAtTheFrequencyOfBeamTheory) {
    EXPECT_NEAR(modes.frequencies[0], 208.879, 0.01 * 208.879);
    EXPECT_NEAR(modes.frequencies[1], modes.frequencies[0], 1e-6);
}

// The second root of cos(x) * cosh(x) = -1 is 4.69409: 208.879 * (4.69409 / 1.87510)^2 = 1309.0.
TEST_F(NaturalModesOfABeam, SecondPairBendsAtTheFrequencyOfBeamTheory) {
    EXPECT_NEAR(modes.frequencies[2], 1309.0, 0.03 * 1309.0);
    EXPECT_NEAR(modes.frequencies[3], modes.frequencies[2], 1e-6);
}

TEST_F(NaturalModesOfABeam, ShapesAreOrthonormalByTheMass) {
    const Eigen::MatrixXd product = modes.shapes.transpose() * (beam.structure.freeMass() * modes.shapes);
    EXPECT_LT((product - Eigen::MatrixXd::Identity(4, 4)).cwiseAbs().maxCoeff(), 1e-10);
}

TEST_F(NaturalModesOfABeam, ShapesBalanceStiffnessAndInertia) {
    for (Eigen::Index i = 0; i < 4; ++i) {
        const double angular = 2.0 * std::numbers::pi * modes.frequencies[i];
        const Eigen::VectorXd shape = modes.shapes.col(i);
        const Eigen::VectorXd underInertia =
            beam.structure.solveFree(beam.structure.freeMass() * shape * (angular * angular));
        EXPECT_LT((underInertia - shape).norm(), 1e-4 * shape.norm());
    }
}

TEST_F(NaturalModesOfABeam, CountHasToBeWithinTheDegreesOfFreedom) {
    EXPECT_EQ(beam.structure.freeCount(), 240);
    EXPECT_THROW(naturalModes(beam.structure, 0), std::invalid_argument);
    EXPECT_THROW(naturalModes(beam.structure, 241), std::invalid_argument);
}

} // namespace Cantilever
