#include "diff/NumberDifference.h"

#include <gtest/gtest.h>

#include <limits>

using MoxTool::compareNumbers;

namespace {

using Floats = std::vector<float>;
using Integers = std::vector<std::uint32_t>;

} // namespace

TEST(NumberDifference, EqualNumbersHaveNone) {
    EXPECT_FALSE(compareNumbers(Floats{1, 2, 3}, Floats{1, 2, 3}, 3, {}));
    EXPECT_FALSE(compareNumbers(Integers{7}, Integers{7}, 1, {}));
    EXPECT_FALSE(compareNumbers(Floats{}, Floats{}, 0, {}));
}

TEST(NumberDifference, CountsAndReportsTheGreatestWithItsPlace) {
    const auto found = compareNumbers(Floats{1, 2, 3, 4, 5, 6}, Floats{1, 2, 3.5F, 4, 8, 6}, 3, {});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->differing, 2U);
    EXPECT_EQ(found->count, 6U);
    EXPECT_EQ(found->row, 1U);
    EXPECT_EQ(found->component, 1U);
    EXPECT_EQ(found->a, 5);
    EXPECT_EQ(found->b, 8);
}

TEST(NumberDifference, WithAToleranceTheWorstIsFarthestBeyondIt) {
    const auto found = compareNumbers(Floats{1000, 1}, Floats{1100, 2}, 1, {0, 0.05});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->differing, 2U);
    EXPECT_EQ(found->row, 1U); // Differs by 0.5 of the larger one, the first by 0.09.
}

TEST(NumberDifference, NumberThatIsNotFiniteIsWorseThanAllOthers) {
    const auto infinity = std::numeric_limits<float>::infinity();
    const auto found = compareNumbers(Floats{0, 1, 2}, Floats{1e30F, infinity, 9}, 1, {1, 1});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->row, 1U);
}

TEST(NumberDifference, FirstOfEquallyBadOnesIsShown) {
    EXPECT_EQ(compareNumbers(Floats{0, 0, 0}, Floats{0, 1, 1}, 1, {})->row, 1U);
}

TEST(NumberDifference, IntegersAreComparedExactly) {
    const auto found = compareNumbers(Integers{4294967295, 5}, Integers{4294967294, 5}, 1, {100, 1});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->differing, 1U);
    EXPECT_EQ(found->a, 4294967295.0);
    EXPECT_EQ(found->b, 4294967294.0);
}
