#include <Qel/Tnf/BlockSizeLimiter.h>

#include "Qel/Support/BlockSizeGuard.h"

#include <gtest/gtest.h>

namespace {

using QelTnf::BlockSizeLimiter;

TEST(BlockSizeLimiter, StartsWithoutBlocks) {
    const Support::BlockSizeGuard variable;
    EXPECT_TRUE(BlockSizeLimiter().blockIds.empty());
}

TEST(BlockSizeLimiter, LimitIs200MiBIfTheVariableIsNotSet) {
    const Support::BlockSizeGuard variable;
    EXPECT_EQ(BlockSizeLimiter().limit, 209'715'200U);
}

TEST(BlockSizeLimiter, LimitIsTheVariableAtItsConstruction) {
    Support::BlockSizeGuard variable("1048576");
    const BlockSizeLimiter limiter;
    variable.set("7");
    EXPECT_EQ(limiter.limit, 1'048'576U);
    EXPECT_EQ(BlockSizeLimiter().limit, 7U);
}

TEST(BlockSizeLimiter, LimitIs200MiBIfTheVariableCountsAsNotSet) {
    Support::BlockSizeGuard variable;
    for (const char* const value : {"4294967295", "4294967296", "-1"}) {
        variable.set(value);
        EXPECT_EQ(BlockSizeLimiter().limit, 209'715'200U) << value;
    }
}

TEST(BlockSizeLimiter, LimitIs200MiBAgainWhenTheVariableIsRemovedWhateverTheGrowthStep) {
    Support::BlockSizeGuard variable("16");
    QelTnf::Block block;
    block.Put(1U);
    block.Release();
    variable.set({});
    EXPECT_EQ(QelTnf::defaultBlockSize, 16U);
    EXPECT_EQ(BlockSizeLimiter().limit, 209'715'200U);
}

TEST(BlockSizeLimiter, FixedLimitIsNoneOfTheVariables) {
    const Support::BlockSizeGuard variable("16");
    EXPECT_EQ(BlockSizeLimiter(27804).limit, 27804U);
}

} // namespace
