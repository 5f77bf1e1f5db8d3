#include "common/BlockSizeSetting.h"

#include "Support/EnvironmentGuard.h"

#include <gtest/gtest.h>

#include <cstdlib>

using MoxTool::BlockSizeSetting;

TEST(BlockSizeSetting, HoldsAsLongAsItExists) {
    const Support::EnvironmentGuard before(Support::BlockSizeVariable, "77");
    {
        const BlockSizeSetting larger(1000);
        EXPECT_STREQ(std::getenv(Support::BlockSizeVariable), "1000");
        EXPECT_EQ(BlockSizeSetting::present(), 1000u);
        const BlockSizeSetting none(std::nullopt);
        EXPECT_EQ(std::getenv(Support::BlockSizeVariable), nullptr);
    }
    EXPECT_STREQ(std::getenv(Support::BlockSizeVariable), "77");
}

TEST(BlockSizeSetting, PresentSizeIsTheLibrarysOwnUnlessTheEnvironmentHasAnother) {
    Support::EnvironmentGuard variable(Support::BlockSizeVariable);
    EXPECT_EQ(BlockSizeSetting::present(), 209'715'200u);
    variable.set("4294967295");
    EXPECT_EQ(BlockSizeSetting::present(), 209'715'200u);
    variable.set("12abc");
    EXPECT_EQ(BlockSizeSetting::present(), 12u);
    variable.set("none");
    EXPECT_EQ(BlockSizeSetting::present(), 0u);
}
