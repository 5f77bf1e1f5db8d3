#include <Qel/Mox2/ArrayStorage.h>

#include <gtest/gtest.h>

#include <cstdint>

namespace {

using Qel::Mox2::ColumnArray;
using Qel::Mox2::narrowedSize;
using Qel::Mox2::TableArray;

constexpr std::int64_t Smallest = -2147483648;

TEST(ArrayStorage, SizesAreNarrowedToSigned32BitsAndExtendedAgain) {
    EXPECT_EQ(narrowedSize(0), 0);
    EXPECT_EQ(narrowedSize(0x7FFFFFFF), 2147483647);
    EXPECT_EQ(narrowedSize(0x80000000), Smallest);
    EXPECT_EQ(narrowedSize(0xFFFFFFFF), -1);
    EXPECT_EQ(narrowedSize(0x100000000), 0);
    EXPECT_EQ(narrowedSize(0x300000005), 5);
}

TEST(ArrayStorage, NoElementsHaveANullPointer) {
    EXPECT_EQ(ColumnArray<float>().data(), nullptr);
    EXPECT_EQ(ColumnArray<float>(narrowedSize(0)).data(), nullptr);
    EXPECT_EQ(TableArray<float>(narrowedSize(0), narrowedSize(3)).data(), nullptr);
    EXPECT_EQ(TableArray<float>(narrowedSize(3), narrowedSize(0)).data(), nullptr);
}

TEST(ArrayStorage, NegativeSizesHaveANullPointerAndAreStoredAsTheyAre) {
    const ColumnArray<float> column(narrowedSize(0x80000000));
    EXPECT_EQ(column.data(), nullptr);
    EXPECT_EQ(column.size(), Smallest);
    const TableArray<unsigned int> table(narrowedSize(0x80000000), narrowedSize(3));
    EXPECT_EQ(table.data(), nullptr);
    EXPECT_EQ(table.rows(), Smallest);
    EXPECT_EQ(table.cols(), 3);
}

TEST(ArrayStorage, TablesAreRowMajor) {
    TableArray<unsigned int> table(2, 3);
    table << 1, 2, 3, 4, 5, 6;
    EXPECT_EQ(table.data()[2], 3U);
    EXPECT_EQ(table.data()[3], 4U);
    EXPECT_EQ(table(1, 0), 4U);
}

} // namespace
