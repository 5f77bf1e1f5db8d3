#include "api/Support/PublicNames.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

namespace Api {

namespace {

// A size with bit 31 set is read as this value: -2,147,483,648 sign-extended.
constexpr auto NegativeSize = static_cast<std::size_t>(0xFFFFFFFF80000000);

template <typename T>
std::vector<T> valuesOf(const Array1d<T>& array) {
    std::vector<T> values;
    for (std::size_t i = 0; i < array.size(); ++i) {
        values.push_back(array[i]);
    }
    return values;
}

template <typename T>
std::vector<T> valuesOf(const Array2d<T>& array) {
    std::vector<T> values;
    for (std::size_t row = 0; row < array.rows(); ++row) {
        for (std::size_t col = 0; col < array.cols(); ++col) {
            values.push_back(array(row, col));
        }
    }
    return values;
}

template <typename T>
class Array1dOf : public testing::Test {};
template <typename T>
class Array2dOf : public testing::Test {};

using ElementTypes = testing::Types<float, unsigned int>;

} // namespace

TYPED_TEST_SUITE(Array1dOf, ElementTypes);
TYPED_TEST_SUITE(Array2dOf, ElementTypes);

static_assert(
    std::is_same_v<decltype(std::declval<Array1d<float>&>() = std::declval<const Array1d<float>&>()),
                   const Array1d<float>&>);
static_assert(
    std::is_same_v<decltype(std::declval<Array2d<float>&>() = std::declval<const Array2d<float>&>()),
                   const Array2d<float>&>);

// --- Array1d

TYPED_TEST(Array1dOf, SizeZeroIsTheDefaultAndHoldsNothing) {
    EXPECT_EQ(Array1d<TypeParam>().size(), 0U);
    EXPECT_EQ(Array1d<TypeParam>(0).size(), 0U);
}

TYPED_TEST(Array1dOf, SizeAndValueFillAllElements) {
    const TypeParam value = 7;
    const Array1d<TypeParam> array(3, value);
    EXPECT_EQ(valuesOf(array), (std::vector<TypeParam>{7, 7, 7}));
}

TYPED_TEST(Array1dOf, RangeVectorAndListAreCopiedInOrder) {
    std::vector<TypeParam> values = {1, 2, 3};
    const Array1d<TypeParam> fromRange(values.data(), values.data() + 2);
    const Array1d<TypeParam> fromVector(values);
    const Array1d<TypeParam> fromList({4, 5});
    values[0] = 9;
    EXPECT_EQ(valuesOf(fromRange), (std::vector<TypeParam>{1, 2}));
    EXPECT_EQ(valuesOf(fromVector), (std::vector<TypeParam>{1, 2, 3}));
    EXPECT_EQ(valuesOf(fromList), (std::vector<TypeParam>{4, 5}));
}

TYPED_TEST(Array1dOf, EmptySequencesGiveEmptyArrays) {
    EXPECT_EQ(Array1d<TypeParam>(std::vector<TypeParam>()).size(), 0U);
    EXPECT_EQ(Array1d<TypeParam>(std::initializer_list<TypeParam>()).size(), 0U);
    EXPECT_EQ(Array1d<TypeParam>(nullptr, nullptr).size(), 0U);
}

TYPED_TEST(Array1dOf, ElementsAreReachedByBrackets) {
    Array1d<TypeParam> array({1, 2, 3});
    array[0] = 4;
    array(2) = 5;
    const Array1d<TypeParam>& constant = array;
    EXPECT_EQ(constant[0], TypeParam(4));
    EXPECT_EQ(constant(1), TypeParam(2));
    EXPECT_EQ(constant[2], TypeParam(5));
    EXPECT_EQ(&constant(1), &constant[0] + 1);
}

TYPED_TEST(Array1dOf, CopyIsDeep) {
    const Array1d<TypeParam> original({1, 2});
    Array1d<TypeParam> copy(original);
    copy[0] = 9;
    EXPECT_EQ(valuesOf(original), (std::vector<TypeParam>{1, 2}));
    EXPECT_EQ(valuesOf(copy), (std::vector<TypeParam>{9, 2}));
}

TYPED_TEST(Array1dOf, AssignmentTakesSizeAndElementsDeeply) {
    Array1d<TypeParam> original({1, 2, 3});
    Array1d<TypeParam> array({9});
    EXPECT_EQ(&(array = original), &array);
    original[0] = 8;
    EXPECT_EQ(valuesOf(array), (std::vector<TypeParam>{1, 2, 3}));
    array = Array1d<TypeParam>();
    EXPECT_EQ(array.size(), 0U);
}

TYPED_TEST(Array1dOf, AssignmentOfTheSameSizeKeepsTheBlock) {
    Array1d<TypeParam> array({1, 2});
    const TypeParam* const block = &array[0];
    array = Array1d<TypeParam>({3, 4});
    EXPECT_EQ(&array[0], block);
    EXPECT_EQ(valuesOf(array), (std::vector<TypeParam>{3, 4}));
}

TYPED_TEST(Array1dOf, AssignmentToItselfChangesNothing) {
    Array1d<TypeParam> array({1, 2});
    const Array1d<TypeParam>& same = array;
    array = same;
    EXPECT_EQ(valuesOf(array), (std::vector<TypeParam>{1, 2}));
}

TYPED_TEST(Array1dOf, CopyFromFillsAllElements) {
    const TypeParam values[] = {1, 2, 3};
    Array1d<TypeParam> array(2);
    array.copy_from(values);
    EXPECT_EQ(valuesOf(array), (std::vector<TypeParam>{1, 2}));
}

// A size of 32 bits has no higher ones.
#if SIZE_MAX > 0xFFFFFFFF
TYPED_TEST(Array1dOf, SizeBeyond32BitsLosesItsHigherBits) {
    EXPECT_EQ(Array1d<TypeParam>(0x100000000).size(), 0U);
    EXPECT_EQ(Array1d<TypeParam>(0x100000003, TypeParam(7)).size(), 3U);
}
#endif

TYPED_TEST(Array1dOf, SizeWithBit31SetBecomesNegativeAndHoldsNothing) {
    EXPECT_EQ(Array1d<TypeParam>(0x80000000).size(), NegativeSize);
    EXPECT_EQ(Array1d<TypeParam>(0xFFFFFFFF).size(), SIZE_MAX);
    EXPECT_EQ(Array1d<TypeParam>(0x80000000, TypeParam(7)).size(), NegativeSize);
}

TYPED_TEST(Array1dOf, NegativeSizeIsAssignedButCantBeCopied) {
    const Array1d<TypeParam> negative(0x80000000);
    Array1d<TypeParam> array({1, 2});
    array = negative;
    EXPECT_EQ(array.size(), NegativeSize);
    EXPECT_THROW(Array1d<TypeParam>{negative}, std::bad_alloc);
    array = Array1d<TypeParam>({3});
    EXPECT_EQ(valuesOf(array), (std::vector<TypeParam>{3}));
}

// --- Array2d

TYPED_TEST(Array2dOf, DefaultHoldsNothing) {
    const Array2d<TypeParam> array;
    EXPECT_EQ(array.rows(), 0U);
    EXPECT_EQ(array.cols(), 0U);
    EXPECT_EQ(array.size(), 0U);
}

TYPED_TEST(Array2dOf, SizeIsRowsTimesColumns) {
    const Array2d<TypeParam> array(2, 3);
    EXPECT_EQ(array.rows(), 2U);
    EXPECT_EQ(array.cols(), 3U);
    EXPECT_EQ(array.size(), 6U);
    EXPECT_EQ(Array2d<TypeParam>(5).size(), 0U);
    EXPECT_EQ(Array2d<TypeParam>(5).rows(), 5U);
}

TYPED_TEST(Array2dOf, SizeAndValueFillAllElements) {
    EXPECT_EQ(valuesOf(Array2d<TypeParam>(2, 2, TypeParam(7))), (std::vector<TypeParam>{7, 7, 7, 7}));
}

TYPED_TEST(Array2dOf, SequencesFillRowByRow) {
    std::vector<TypeParam> values = {1, 2, 3, 4, 5, 6};
    const std::initializer_list<TypeParam> list = {1, 2, 3, 4, 5, 6};
    EXPECT_EQ(valuesOf(Array2d<TypeParam>(2, 3, values)), values);
    EXPECT_EQ(valuesOf(Array2d<TypeParam>(2, 3, list)), values);
    EXPECT_EQ(valuesOf(Array2d<TypeParam>(2, 3, values.data(), values.data() + 6)), values);
    const Array2d<TypeParam> array(2, 3, values);
    EXPECT_EQ(array(0, 2), TypeParam(3));
    EXPECT_EQ(array(1, 0), TypeParam(4));
}

TYPED_TEST(Array2dOf, ShortSequenceSetsTheElementsThatItReaches) {
    std::vector<TypeParam> values = {1, 2, 3, 4};
    const std::initializer_list<TypeParam> list = {1, 2, 3, 4};
    const auto expectReached = [](const Array2d<TypeParam>& array) {
        EXPECT_EQ(array.size(), 6U);
        EXPECT_EQ(array(0, 0), TypeParam(1));
        EXPECT_EQ(array(0, 1), TypeParam(2));
        EXPECT_EQ(array(0, 2), TypeParam(3));
        EXPECT_EQ(array(1, 0), TypeParam(4));
    };
    expectReached(Array2d<TypeParam>(2, 3, values));
    expectReached(Array2d<TypeParam>(2, 3, list));
    expectReached(Array2d<TypeParam>(2, 3, values.data(), values.data() + 4));
}

TYPED_TEST(Array2dOf, SurplusInputIsIgnored) {
    const std::vector<TypeParam> values = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    EXPECT_EQ(valuesOf(Array2d<TypeParam>(2, 3, values)), (std::vector<TypeParam>{1, 2, 3, 4, 5, 6}));
}

TYPED_TEST(Array2dOf, ZeroRowsOrColumnsTakeNothingFromASequence) {
    const std::vector<TypeParam> values = {1, 2, 3};
    const Array2d<TypeParam> noRows(0, 3, values);
    EXPECT_EQ(noRows.rows(), 0U);
    EXPECT_EQ(noRows.cols(), 3U);
    EXPECT_EQ(noRows.size(), 0U);
    const Array2d<TypeParam> noColumns(3, 0, values);
    EXPECT_EQ(noColumns.rows(), 3U);
    EXPECT_EQ(noColumns.cols(), 0U);
    EXPECT_EQ(noColumns.size(), 0U);
}

TYPED_TEST(Array2dOf, EmptySequenceFillsNothing) {
    EXPECT_EQ(Array2d<TypeParam>(2, 3, std::vector<TypeParam>()).size(), 6U);
    EXPECT_EQ(Array2d<TypeParam>(2, 3, std::initializer_list<TypeParam>()).size(), 6U);
    EXPECT_EQ(Array2d<TypeParam>(2, 3, nullptr, nullptr).size(), 6U);
}

TYPED_TEST(Array2dOf, ElementsAreReachedRowMajor) {
    Array2d<TypeParam> array(2, 3, TypeParam(0));
    array(1, 2) = 5;
    const Array2d<TypeParam>& constant = array;
    EXPECT_EQ(constant(1, 2), TypeParam(5));
    EXPECT_EQ(&constant(1, 2), &constant(0, 0) + 5);
    EXPECT_EQ(&constant(1, 0), &constant(0, 0) + 3);
}

TYPED_TEST(Array2dOf, CopyIsDeep) {
    const Array2d<TypeParam> original(1, 2, {1, 2});
    Array2d<TypeParam> copy(original);
    copy(0, 0) = 9;
    EXPECT_EQ(valuesOf(original), (std::vector<TypeParam>{1, 2}));
    EXPECT_EQ(valuesOf(copy), (std::vector<TypeParam>{9, 2}));
}

TYPED_TEST(Array2dOf, AssignmentOfAnotherShapeWithAsManyElementsKeepsTheBlock) {
    Array2d<TypeParam> array(2, 3, TypeParam(0));
    const TypeParam* const block = &array(0, 0);
    EXPECT_EQ(&(array = Array2d<TypeParam>(3, 2, {1, 2, 3, 4, 5, 6})), &array);
    EXPECT_EQ(&array(0, 0), block);
    EXPECT_EQ(array.rows(), 3U);
    EXPECT_EQ(array.cols(), 2U);
    EXPECT_EQ(valuesOf(array), (std::vector<TypeParam>{1, 2, 3, 4, 5, 6}));
}

TYPED_TEST(Array2dOf, AssignmentTakesSizesAndElementsDeeply) {
    Array2d<TypeParam> original(1, 2, {1, 2});
    Array2d<TypeParam> array(4, 4, TypeParam(0));
    array = original;
    original(0, 0) = 8;
    EXPECT_EQ(array.rows(), 1U);
    EXPECT_EQ(array.cols(), 2U);
    EXPECT_EQ(valuesOf(array), (std::vector<TypeParam>{1, 2}));
    array = Array2d<TypeParam>(0, 5);
    EXPECT_EQ(array.rows(), 0U);
    EXPECT_EQ(array.cols(), 5U);
}

TYPED_TEST(Array2dOf, AssignmentToItselfChangesNothing) {
    Array2d<TypeParam> array(1, 2, {1, 2});
    const Array2d<TypeParam>& same = array;
    array = same;
    EXPECT_EQ(valuesOf(array), (std::vector<TypeParam>{1, 2}));
}

TYPED_TEST(Array2dOf, CopyFromFillsInStorageOrder) {
    const TypeParam values[] = {1, 2, 3, 4, 5};
    Array2d<TypeParam> array(2, 2);
    array.copy_from(values);
    EXPECT_EQ(valuesOf(array), (std::vector<TypeParam>{1, 2, 3, 4}));
}

// A size of 32 bits has no higher ones.
#if SIZE_MAX > 0xFFFFFFFF
TYPED_TEST(Array2dOf, SizesBeyond32BitsLoseTheirHigherBits) {
    const Array2d<TypeParam> array(0x100000002, 0x300000003);
    EXPECT_EQ(array.rows(), 2U);
    EXPECT_EQ(array.cols(), 3U);
    EXPECT_EQ(Array2d<TypeParam>(0x100000000, 3).rows(), 0U);
}
#endif

TYPED_TEST(Array2dOf, RowsWithBit31SetBecomeNegativeAndHoldNothing) {
    const Array2d<TypeParam> array(0x80000000, 3);
    EXPECT_EQ(array.rows(), NegativeSize);
    EXPECT_EQ(array.cols(), 3U);
    EXPECT_EQ(Array2d<TypeParam>(0x80000000, 3, TypeParam(7)).rows(), NegativeSize);
    EXPECT_EQ(Array2d<TypeParam>(0x80000000, 3, std::vector<TypeParam>{7}).rows(), NegativeSize);
}

TYPED_TEST(Array2dOf, NegativeRowsAreAssignedButCantBeCopied) {
    const Array2d<TypeParam> negative(0x80000000, 3);
    Array2d<TypeParam> array(1, 2, {1, 2});
    array = negative;
    EXPECT_EQ(array.rows(), NegativeSize);
    EXPECT_THROW(Array2d<TypeParam>{negative}, std::bad_alloc);
}

TYPED_TEST(Array2dOf, NegativeColumnsWithAnyRowsFailTheOverflowTest) {
    EXPECT_THROW(Array2d<TypeParam>(1, 0x80000000), std::bad_alloc);
    EXPECT_THROW(Array2d<TypeParam>(0xFFFFFFFF, 0xFFFFFFFF), std::bad_alloc);
    EXPECT_EQ(Array2d<TypeParam>(0, 0x80000000).cols(), NegativeSize);
}

TYPED_TEST(Array2dOf, MoreElementsThanMemoryHoldsIsBadAlloc) {
    EXPECT_THROW(Array2d<TypeParam>(0x7FFFFFFF, 0x7FFFFFFF), std::bad_alloc);
}

} // namespace Api
