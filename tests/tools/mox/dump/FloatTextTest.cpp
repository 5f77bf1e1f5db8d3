#include "dump/floatText.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using MoxTool::floatText;

TEST(FloatText, HasTheFewestDigitsThatReadBackEqual) {
    EXPECT_EQ(floatText(0.1F), "0.1");
    EXPECT_EQ(floatText(0.1), "0.1");
    EXPECT_EQ(floatText(1.0F / 3), "0.33333334");
    EXPECT_EQ(floatText(1.0 / 3), "0.3333333333333333");
    EXPECT_EQ(floatText(std::numeric_limits<float>::max()), "3.4028235e+38");
    EXPECT_EQ(floatText(std::numeric_limits<float>::denorm_min()), "1e-45");
}

TEST(FloatText, HasTheNextHigherDigitsOfAPowerOfTwoIfTheNearestAreThoseOfTheFloatBelow) {
    EXPECT_EQ(floatText(0x1p87F), "1.5474251e+26");
}

TEST(FloatText, HasAPointAndADigitAfterItFrom1em4UpTo1e16) {
    EXPECT_EQ(floatText(0.0001F), "0.0001");
    EXPECT_EQ(floatText(-123.5F), "-123.5");
    EXPECT_EQ(floatText(20.0F), "20.0");
    EXPECT_EQ(floatText(1e15), "1000000000000000.0");
    EXPECT_EQ(floatText(1234567890123456.0), "1234567890123456.0");
}

TEST(FloatText, HasAnExponentOfTwoDigitsOrMoreOutside) {
    EXPECT_EQ(floatText(0.00001F), "1e-05");
    EXPECT_EQ(floatText(-1.5e-7), "-1.5e-07");
    EXPECT_EQ(floatText(1e16F), "1e+16");
    EXPECT_EQ(floatText(1.25e100), "1.25e+100");
}

TEST(FloatText, KeepsTheSignOfZero) {
    EXPECT_EQ(floatText(0.0F), "0.0");
    EXPECT_EQ(floatText(-0.0F), "-0.0");
}

TEST(FloatText, IsInQuotesForWhatIsNotFinite) {
    EXPECT_EQ(floatText(-std::numeric_limits<float>::quiet_NaN()), "\"nan\"");
    EXPECT_EQ(floatText(std::numeric_limits<float>::infinity()), "\"inf\"");
    EXPECT_EQ(floatText(-std::numeric_limits<double>::infinity()), "\"-inf\"");
}

} // namespace
