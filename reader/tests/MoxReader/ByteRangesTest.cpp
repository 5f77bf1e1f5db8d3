#include "MoxReader/ByteRanges.h"

#include <gtest/gtest.h>

using MoxReader::ByteRanges;

TEST(ByteRanges, NothingTouchesAnEmptySet) {
    EXPECT_FALSE(ByteRanges().touch(0, 100));
}

TEST(ByteRanges, ARangeIsTouchedByWhatSharesAByteWithIt) {
    ByteRanges ranges;
    ranges.add(10, 20);
    EXPECT_TRUE(ranges.touch(0, 11));
    EXPECT_TRUE(ranges.touch(19, 30));
    EXPECT_TRUE(ranges.touch(14, 15));
    EXPECT_TRUE(ranges.touch(0, 30));
    EXPECT_FALSE(ranges.touch(0, 10));
    EXPECT_FALSE(ranges.touch(20, 30));
}

TEST(ByteRanges, EmptyRangesNeitherTouchNorAreTouched) {
    ByteRanges ranges;
    ranges.add(10, 20);
    ranges.add(40, 40);
    EXPECT_FALSE(ranges.touch(15, 15));
    EXPECT_FALSE(ranges.touch(39, 41));
}

TEST(ByteRanges, RangesThatOverlapOrTouchBecomeOne) {
    ByteRanges ranges;
    ranges.add(30, 40);
    ranges.add(10, 20);
    ranges.add(50, 60);
    EXPECT_FALSE(ranges.touch(20, 30));
    ranges.add(20, 30);
    ranges.add(35, 55);
    ranges.add(12, 18);
    EXPECT_TRUE(ranges.touch(25, 26));
    EXPECT_TRUE(ranges.touch(45, 46));
    EXPECT_TRUE(ranges.touch(59, 70));
    EXPECT_FALSE(ranges.touch(60, 70));
    EXPECT_FALSE(ranges.touch(0, 10));
}
