#include <Qel/Mox2/Modifier/CurrentNodeId.h>

#include "Qel/Mox2/OpenDatabase.h"
#include "Qel/Mox2/StateFailures.h"
#include "Support/Thrown.h"

#include <gtest/gtest.h>

namespace {

using Qel::Mox2::Modifier::CurrentNodeId;
using Support::throws;

using CurrentNodeIdModifier = Support::OpenDatabase;

TEST(CurrentNodeIdModifierState, NeedsATree) {
    Support::expectThatItNeedsATree([](Qel::Mox2::Database& database) { CurrentNodeId(1).update(database); });
}

TEST_F(CurrentNodeIdModifier, RootPassesBeforeItHasData) {
    tree().PutCurrentId(99);
    CurrentNodeId(1).update(database);
    EXPECT_EQ(tree().GetCurrentId(), 1U);
}

TEST_F(CurrentNodeIdModifier, EveryNodeCanBeMadeCurrent) {
    addRootAndShape();
    for (const unsigned int id : {1U, 3U, 2U}) {
        CurrentNodeId(id).update(database);
        EXPECT_EQ(tree().GetCurrentId(), id);
    }
}

TEST_F(CurrentNodeIdModifier, IdZeroOrBeyondTheNodesIsOutOfBoundsAndLeavesTheCurrentNode) {
    addRootAndShape();
    for (const unsigned int id : {0U, 4U, 0xFFFFFFFFU}) {
        EXPECT_TRUE(
            throws<Qel::Exception::OutOfBounds>({11, "Out of bounds error", "Qel/Mox2/Modifier/CurrentNodeId",
                                                 "Qel::Mox2::Modifier::CurrentNodeId::update"},
                                                [&] { CurrentNodeId(id).update(database); }));
    }
    EXPECT_EQ(tree().GetCurrentId(), 3U);
}

} // namespace
