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
    EXPECT_EQ(AttributeValue(std::string_view("seven")).AsText(), "seven");
}

TEST(AttributeValue, ShortTextIsZeroTerminated) {
    EXPECT_STREQ(AttributeValue(std::string_view("seven")).text, "seven");
}

TEST(AttributeValue, TextOf255BytesIsTheLongestWithATerminator) {
    const std::string text(255, 'x');
    EXPECT_STREQ(AttributeValue(std::string_view(text)).text, text.c_str());
}

TEST(AttributeValue, TextOf256BytesHasNoTerminator) {
    const std::string text(256, 'x');
    const AttributeValue value{std::string_view(text)};
    EXPECT_EQ(value.text[255], 'x');
    EXPECT_EQ(value.AsText(), text);
}

TEST(AttributeValue, LongerTextIsCutTo256Bytes) {
    const std::string text = std::string(256, 'x') + "y";
    EXPECT_EQ(AttributeValue(std::string_view(text)).AsText(), std::string(256, 'x'));
}

TEST(AttributeValue, TextEndsAtItsFirstZeroByte) {
    EXPECT_EQ(AttributeValue(std::string_view("ab\0cd", 5)).AsText(), "ab");
}

TEST(AttributeValue, EmptyTextIsAText) {
    const AttributeValue value{std::string_view("")};
    EXPECT_EQ(value.kind, 2);
    EXPECT_EQ(value.AsText(), "");
}

} // namespace
