#include "Qel/Support/AddressSpaceLimit.h"

#include <Qel/Mox2/ArrayStorage.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <new>

namespace {

using Qel::Mox2::assignStorage;
using Qel::Mox2::ColumnArray;
using Qel::Mox2::narrowedSize;
using Qel::Mox2::TableArray;

constexpr std::int64_t Smallest = -2147483648;

TEST(ArrayStorage, SizesAreNarrowedToSigned32BitsAndExtendedAgain) {
    EXPECT_EQ(narrowedSize(0), 0);
    EXPECT_EQ(narrowedSize(0x7FFFFFFF), 2147483647);
    EXPECT_EQ(narrowedSize(0x80000000), Smallest);
    EXPECT_EQ(narrowedSize(0xFFFFFFFF), -1);
#if SIZE_MAX > 0xFFFFFFFF
    EXPECT_EQ(narrowedSize(0x100000000), 0);
    EXPECT_EQ(narrowedSize(0x300000005), 5);
#endif
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

TEST(ArrayStorage, AssignmentKeepsTheMemoryIfTheNumberOfElementsStays) {
    TableArray<unsigned int> target(2, 3);
    TableArray<unsigned int> source(3, 2);
    source << 1, 2, 3, 4, 5, 6;
    const unsigned int* const memory = target.data();
    assignStorage(target, source);
    EXPECT_EQ(target.data(), memory);
    EXPECT_EQ(target.rows(), 3);
    EXPECT_EQ(target.cols(), 2);
    EXPECT_EQ(target(2, 0), 5U);
}

TEST(ArrayStorage, AssignmentTakesNegativeSizesAsTheyAre) {
    ColumnArray<float> target = ColumnArray<float>::Constant(3, 1.5F);
    assignStorage(target, ColumnArray<float>(narrowedSize(0x80000000)));
    EXPECT_EQ(target.data(), nullptr);
    EXPECT_EQ(target.size(), Smallest);
    assignStorage(target, ColumnArray<float>(ColumnArray<float>::Constant(2, 2.5F)));
    ASSERT_EQ(target.size(), 2);
    EXPECT_EQ(target[1], 2.5F);
}

// When memory runs out during the assignment, whatever the array then holds must be its own.
TEST(ArrayStorage, AssignmentWithoutMemoryLeavesAnEmptyArray) {
    if (!Support::AddressSpaceLimit::isAvailable()) {
        GTEST_SKIP() << "needs a limit on memory";
    }
    constexpr Eigen::Index many = 300'000'000;
    const ColumnArray<float> source(many);
    const TableArray<float> sourceTable(many / 3, 3);
    ColumnArray<float> target = ColumnArray<float>::Constant(1000, 1.5F);
    TableArray<float> targetTable = TableArray<float>::Constant(1000, 3, 1.5F);
    {
        const Support::AddressSpaceLimit limit;
        EXPECT_THROW(assignStorage(target, source), std::bad_alloc);
        EXPECT_THROW(assignStorage(targetTable, sourceTable), std::bad_alloc);
    }
    EXPECT_EQ(target.size(), 0);
    EXPECT_EQ(target.data(), nullptr);
    EXPECT_EQ(targetTable.size(), 0);
    EXPECT_EQ(targetTable.data(), nullptr);
}

} // namespace
