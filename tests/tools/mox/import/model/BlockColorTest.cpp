#include "import/model/blockColor.h"

#include <gtest/gtest.h>

#include <cmath>

using MoxTool::blockColor;

TEST(BlockColor, FirstBlockIsRed) {
    const auto color = blockColor(0);
    ASSERT_EQ(color.size(), 3U);
    EXPECT_FLOAT_EQ(color[0], 0.9F);
    EXPECT_FLOAT_EQ(color[1], 0.35F);
    EXPECT_FLOAT_EQ(color[2], 0.35F);
}

TEST(BlockColor, HundredBlocksHaveHundredColours) {
    for (std::size_t i = 0; i < 100; ++i) {
        for (std::size_t k = 0; k < i; ++k) {
            EXPECT_NE(blockColor(i), blockColor(k)) << i << " and " << k;
        }
    }
}

TEST(BlockColor, NeighboursDifferClearly) {
    for (std::size_t i = 0; i < 100; ++i) {
        const auto first = blockColor(i);
        const auto second = blockColor(i + 1);
        float distance = 0;
        for (std::size_t c = 0; c < 3; ++c) {
            distance += std::abs(first[c] - second[c]);
        }
        EXPECT_GT(distance, 0.5F) << i;
    }
}
