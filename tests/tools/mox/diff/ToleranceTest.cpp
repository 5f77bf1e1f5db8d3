#include "diff/Tolerance.h"

#include <gtest/gtest.h>

#include <limits>

using MoxTool::Tolerance;

namespace {

constexpr double InfiniteDouble = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

} // namespace

TEST(Tolerance, WithoutAnyOnlyEqualNumbersAreEqual) {
    const Tolerance none;
    EXPECT_TRUE(none.areEqual(1, 1));
    EXPECT_TRUE(none.areEqual(0.0, -0.0));
    EXPECT_FALSE(none.areEqual(0, 1e-300));
    EXPECT_EQ(none.excess(2, 5), 3);
}

TEST(Tolerance, LimitItselfIsAllowed) {
    EXPECT_TRUE((Tolerance{0.5, 0}.areEqual(1, 1.5)));
    EXPECT_FALSE((Tolerance{0.5, 0}.areEqual(1, 1.75)));
    EXPECT_TRUE((Tolerance{0, 0.5}.areEqual(1, 2)));
    EXPECT_FALSE((Tolerance{0, 0.5}.areEqual(1, 2.25)));
}

TEST(Tolerance, RelativePartLooksAtTheLargerNumberWhicheverSideItIsOn) {
    EXPECT_TRUE((Tolerance{0, 0.5}.areEqual(-2, -1)));
    EXPECT_TRUE((Tolerance{0, 0.5}.areEqual(-1, -2)));
}

TEST(Tolerance, NearZeroOnlyTheAbsolutePartAllowsAnything) {
    EXPECT_FALSE((Tolerance{0, 0.5}.areEqual(0, 1e-12)));
    EXPECT_TRUE((Tolerance{1e-9, 0.5}.areEqual(0, 1e-12)));
    EXPECT_TRUE((Tolerance{1e-9, 0.5}.areEqual(-1e-12, 1e-12)));
}

TEST(Tolerance, GreaterOfBothPartsCounts) {
    EXPECT_TRUE((Tolerance{1, 0.001}.areEqual(10, 11)));
    EXPECT_TRUE((Tolerance{1, 0.001}.areEqual(10000, 10010)));
}

TEST(Tolerance, InfinityEqualsItselfAloneWhateverIsAllowed) {
    const Tolerance wide{1e300, 1};
    EXPECT_TRUE(wide.areEqual(InfiniteDouble, InfiniteDouble));
    EXPECT_FALSE(wide.areEqual(InfiniteDouble, -InfiniteDouble));
    EXPECT_FALSE(wide.areEqual(InfiniteDouble, 1));
    EXPECT_EQ(wide.excess(1, InfiniteDouble), InfiniteDouble);
}

TEST(Tolerance, NaNEqualsItselfAlone) {
    EXPECT_TRUE(Tolerance{}.areEqual(NotANumber, -NotANumber));
    EXPECT_FALSE((Tolerance{1e300, 1}.areEqual(NotANumber, 0)));
    EXPECT_FALSE((Tolerance{1e300, 1}.areEqual(InfiniteDouble, NotANumber)));
}

TEST(Tolerance, ExcessIsAMultipleOfWhatIsAllowed) {
    EXPECT_EQ((Tolerance{0.5, 0}.excess(1, 2)), 2);
    EXPECT_EQ((Tolerance{0, 0.25}.excess(8, 2)), 3);
    EXPECT_EQ((Tolerance{0.5, 0}.excess(1, 1.25)), 0);
}
