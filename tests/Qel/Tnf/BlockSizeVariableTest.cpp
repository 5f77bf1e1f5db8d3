#include <Qel/Tnf/BlockSizeVariable.h>

#include "Support/EnvironmentGuard.h"

#include <gtest/gtest.h>

#include <optional>
#include <ostream>

namespace {

/// A text of the variable and the number that it gives.
struct Text {
    const char* name;
    std::optional<std::string> text;
    std::optional<std::uint32_t> number;
};

void PrintTo(const Text& text, std::ostream* stream) {
    *stream << text.text.value_or("not set");
}

class BlockSizeVariable : public testing::TestWithParam<Text> {};

TEST_P(BlockSizeVariable, GivesTheNumberOfTheText) {
    const Support::EnvironmentGuard variable(Support::BlockSizeVariable, GetParam().text);
    EXPECT_EQ(QelTnf::blockSizeVariable(), GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, BlockSizeVariable,
    testing::Values(Text{"NotSet", {}, {}},                                                        //
                    Text{"Number", "1048576", 1'048'576},                                          //
                    Text{"Zero", "0", 0},                                                          //
                    Text{"LeadingZerosAreDecimal", "0010", 10},                                    //
                    Text{"DigitsBeforeLetters", "12abc", 12},                                      //
                    Text{"HexadecimalIsAZeroBeforeALetter", "0x10", 0},                            //
                    Text{"FractionIsCut", "7.9", 7},                                               //
                    Text{"LettersAreZero", "abc", 0},                                              //
                    Text{"BlanksAlone", " \t ", 0},                                                //
                    Text{"BlankBeforeANumber", " 7", 7},                                           //
                    Text{"BlanksBeforeASign", "  +7", 7},                                          //
                    Text{"AllKindsOfBlanks", " \t\n\v\f\r7", 7},                                   //
                    Text{"BlankAfterASign", "+ 7", 0},                                             //
                    Text{"SignAlone", "-", 0},                                                     //
                    Text{"TwoSigns", "--7", 0},                                                    //
                    Text{"PlusAndMinus", "+-7", 0},                                                //
                    Text{"LargestValid", "4294967294", 4'294'967'294},                             //
                    Text{"AllBitsSetCountsAsNotSet", "4294967295", {}},                            //
                    Text{"SaturatedCountsAsNotSet", "4294967296", {}},                             //
                    Text{"SaturatedBeyond64BitsCountsAsNotSet", "99999999999999999999999999", {}}, //
                    Text{"SaturatedBeforeLettersCountsAsNotSet", "4294967296abc", {}},             //
                    Text{"MinusOneCountsAsNotSet", "-1", {}},                                      //
                    Text{"MinusTwoIsTheLargestValid", "-2", 4'294'967'294},                        //
                    Text{"MinusAllBitsIsOne", "-4294967295", 1},                                   //
                    Text{"SaturatedWithAMinusCountsAsNotSet", "-4294967296", {}}),
    [](const testing::TestParamInfo<Text>& text) { return text.param.name; });

// Some systems can't hold an empty variable and remove it instead.
#if !defined(_WIN32)
TEST(BlockSizeVariableLookup, EmptyTextIsZero) {
    const Support::EnvironmentGuard variable(Support::BlockSizeVariable, "");
    EXPECT_EQ(QelTnf::blockSizeVariable(), 0U);
}
#endif

TEST(BlockSizeVariableLookup, IsLookedUpAnewEachTime) {
    Support::EnvironmentGuard variable(Support::BlockSizeVariable, "1");
    EXPECT_EQ(QelTnf::blockSizeVariable(), 1U);
    variable.set("2");
    EXPECT_EQ(QelTnf::blockSizeVariable(), 2U);
    variable.set({});
    EXPECT_EQ(QelTnf::blockSizeVariable(), std::nullopt);
}

} // namespace
