#include "import/model/safeBlockSize.h"

#include <gtest/gtest.h>

using MoxTool::safeBlockSize;

TEST(SafeBlockSize, IsAboveTheDatasetAndAboveOneOfTwiceItsSize) {
    EXPECT_EQ(safeBlockSize(0), 1u);
    EXPECT_EQ(safeBlockSize(100), 201u);
    EXPECT_EQ(safeBlockSize(209'715'200), 419'430'401u);
}

TEST(SafeBlockSize, LeavesRoomForOneMoreDatasetInTheLargestBlockThatCanBeCompressed) {
    EXPECT_EQ(safeBlockSize(1'200'000'000), 2'300'000'000u);
    EXPECT_EQ(safeBlockSize(1'749'999'999), 1'750'000'001u);
}

TEST(SafeBlockSize, IsNotThereForDatasetsOfMoreThanHalfOfThat) {
    EXPECT_EQ(safeBlockSize(1'750'000'000), std::nullopt);
    EXPECT_EQ(safeBlockSize(UINT64_MAX), std::nullopt);
}
