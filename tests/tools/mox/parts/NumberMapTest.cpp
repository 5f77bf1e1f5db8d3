#include "parts/NumberMap.h"

#include <gtest/gtest.h>

TEST(NumberMap, FindsWhereEachByteGets) {
    MoxTool::NumberMap map;
    map.add(10, 5, 100);
    map.add(20, 5, 105);
    EXPECT_EQ(map.find(9), std::nullopt);
    EXPECT_EQ(map.find(10), 100u);
    EXPECT_EQ(map.find(14), 104u);
    EXPECT_EQ(map.find(15), std::nullopt);
    EXPECT_EQ(map.find(22), 107u);
    EXPECT_EQ(map.find(25), std::nullopt);
}

TEST(NumberMap, ContainsWhatGetsThereAsOneRun) {
    MoxTool::NumberMap map;
    map.add(0, 10, 100);
    map.add(10, 10, 110);
    map.add(20, 10, 200);
    EXPECT_TRUE(map.contains(5, 15));
    EXPECT_FALSE(map.contains(5, 16));
    EXPECT_TRUE(map.contains(20, 10));
    EXPECT_FALSE(map.contains(20, UINT64_MAX));
    EXPECT_FALSE(map.contains(30, 1));
}

TEST(NumberMap, OfNothingHasNothing) {
    MoxTool::NumberMap map;
    map.add(0, 0, 0);
    EXPECT_EQ(map.find(0), std::nullopt);
}
