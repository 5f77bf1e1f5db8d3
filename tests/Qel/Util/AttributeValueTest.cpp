#include <Qel/Util/AttributeValue.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using QelUtil::AttributeValue;

TEST(AttributeValue, KindsAreTheNumbersOfTheFile) {
    EXPECT_EQ(AttributeValue(7U).kind, 0);
    EXPECT_EQ(AttributeValue(7.0F).kind, 1);
    EXPECT_EQ(AttributeValue(std::string_view("seven")).kind, 2);
    EXPECT_EQ(AttributeValue(7.0).kind, 3);
}

TEST(AttributeValue, KindHas32Bits) {
    EXPECT_EQ(sizeof(AttributeValue::kind), 4U);
}

TEST(AttributeValue, HoldsWhatItWasGiven) {
    EXPECT_EQ(AttributeValue(0xFFFFFFFFU).integer, 4294967295U);
    EXPECT_EQ(AttributeValue(0.25F).real, 0.25F);
    EXPECT_EQ(AttributeValue(1e300).longReal, 1e300);
    EXPECT_EQ(AttributeValue(std::string_view("seven")).text, "seven");
}

TEST(AttributeValue, NumberHasNoText) {
    EXPECT_EQ(AttributeValue().text, "");
    EXPECT_EQ(AttributeValue(7U).text, "");
    EXPECT_EQ(AttributeValue(7.0F).text, "");
    EXPECT_EQ(AttributeValue(7.0).text, "");
}

TEST(AttributeValue, TextOf256BytesIsTheLongestThatIsKeptWhole) {
    for (const std::size_t length : {15U, 16U, 255U, 256U}) {
        const std::string text(length, 'x');
        EXPECT_EQ(AttributeValue(std::string_view(text)).text, text);
    }
}

TEST(AttributeValue, LongerTextIsCutTo256Bytes) {
    const std::string text = std::string(256, 'x') + "y";
    EXPECT_EQ(AttributeValue(std::string_view(text)).text, std::string(256, 'x'));
}

TEST(AttributeValue, TextEndsAtItsFirstZeroByte) {
    EXPECT_EQ(AttributeValue(std::string_view("ab\0cd", 5)).text, "ab");
}

TEST(AttributeValue, EmptyTextIsAText) {
    const AttributeValue value{std::string_view("")};
    EXPECT_EQ(value.kind, 2);
    EXPECT_EQ(value.text, "");
}

} // namespace
