#include "import/model/FloatNarrowing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using MoxTool::FloatNarrowing;
using Sentences = std::vector<std::string>;

TEST(FloatNarrowing, NumbersThatAFloatCanHoldCostNothing) {
    FloatNarrowing narrowing;
    EXPECT_EQ(narrowing.narrow(0.5), 0.5F);
    EXPECT_EQ(narrowing.narrow(-3), -3.0F);
    EXPECT_EQ(narrowing.narrow(0), 0.0F);
    EXPECT_EQ(narrowing.report(), Sentences{});
}

TEST(FloatNarrowing, LargestRelativeLossIsTold) {
    FloatNarrowing narrowing;
    EXPECT_EQ(narrowing.narrow(16777217.0), 16777216.0F); // 2^24 + 1
    EXPECT_EQ(narrowing.narrow(2147483649.0), 2147483648.0F);
    EXPECT_EQ(narrowing.report(),
              Sentences{"double precision: 2 numbers rounded to float, largest relative loss 6.0e-08"});
}

TEST(FloatNarrowing, NumbersBeyondTheRangeBecomeInfinite) {
    FloatNarrowing narrowing;
    EXPECT_EQ(narrowing.narrow(-1e300), -std::numeric_limits<float>::infinity());
    EXPECT_EQ(narrowing.report(),
              Sentences{"double precision: 1 numbers beyond the range of float became infinite"});
}

TEST(FloatNarrowing, NumbersNearZeroAreCountedApart) {
    FloatNarrowing narrowing;
    EXPECT_EQ(narrowing.narrow(1e-300), 0.0F);
    EXPECT_EQ(narrowing.report(),
              Sentences{"double precision: 1 numbers below 1.2e-38 became 0 or lost digits"});
}

TEST(FloatNarrowing, InfinityAndNotANumberPassWithoutLoss) {
    FloatNarrowing narrowing;
    EXPECT_EQ(narrowing.narrow(std::numeric_limits<double>::infinity()),
              std::numeric_limits<float>::infinity());
    EXPECT_TRUE(std::isnan(narrowing.narrow(std::numeric_limits<double>::quiet_NaN())));
    EXPECT_EQ(narrowing.report(), Sentences{});
}
