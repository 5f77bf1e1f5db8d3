#include <Qel/Mox2/Modifier/UpMover.h>

#include "Qel/Mox2/OpenDatabase.h"
#include "Qel/Mox2/StateFailures.h"
#include "Support/Thrown.h"

#include <gtest/gtest.h>

namespace {

using Qel::Mox2::Modifier::UpMover;
using Support::throws;

using UpMoverModifier = Support::OpenDatabase;

TEST(UpMoverModifierState, NeedsATree) {
    Support::expectThatItNeedsATree([](Qel::Mox2::Database& database) { UpMover().update(database); });
}

TEST_F(UpMoverModifier, StepsToTheParentUntilItStaysAtTheRoot) {
    addRootAndShape();
    for (const unsigned int expected : {2U, 1U, 1U}) {
        UpMover().update(database);
        EXPECT_EQ(tree().GetCurrentId(), expected);
    }
}

TEST_F(UpMoverModifier, UnknownCurrentNodeIsKeyNotFoundAndStays) {
    for (const unsigned int unknown : {0U, 99U}) {
        tree().PutCurrentId(unknown);
        EXPECT_TRUE(
            throws<Qel::Exception::KeyNotFound>({14, "Key not found", "Qel/Adt/AdtTree", "::GetCurrentNode"},
                                                [&] { UpMover().update(database); }));
        EXPECT_EQ(tree().GetCurrentId(), unknown);
    }
}

} // namespace
