#include "common/numberText.h"
#include "common/utf8.h"
#include "common/visibleText.h"

#include <gtest/gtest.h>

#include <limits>

using namespace MoxTool;

TEST(VisibleText, LeavesPlainTextAndUtf8AsTheyAre) {
    EXPECT_EQ(visibleText("Größe 5 → 6"), "Größe 5 → 6");
}

TEST(VisibleText, ShowsControlCharactersEscaped) {
    EXPECT_EQ(visibleText("a\n\t\r\x1B[0m\x7F"), "a\\n\\t\\r\\x1B[0m\\x7F");
}

TEST(VisibleText, ShowsControlCharactersOfTwoBytesEscaped) {
    EXPECT_EQ(visibleText("\xC2\x9B"), "\\xC2\\x9B");
    EXPECT_EQ(visibleText("\xC2\xA0"), "\xC2\xA0");
}

TEST(VisibleText, ShowsBytesThatAreNoUtf8Escaped) {
    EXPECT_EQ(visibleText("a\xFFz\xC3"), "a\\xFFz\\xC3");
}

TEST(VisibleText, DoublesABackslashSoThatItIsNoEscape) {
    EXPECT_EQ(visibleText("a\\n"), "a\\\\n");
}

TEST(Utf8, KnowsTheBordersOfEachForm) {
    EXPECT_EQ(utf8CharacterSize("\x7F"), 1U);
    EXPECT_EQ(utf8CharacterSize("\xC2\x80"), 2U);
    EXPECT_EQ(utf8CharacterSize("\xE0\xA0\x80"), 3U);
    EXPECT_EQ(utf8CharacterSize("\xF4\x8F\xBF\xBF"), 4U);
}

TEST(Utf8, RefusesOverlongSurrogateCutAndTooLargeForms) {
    EXPECT_EQ(utf8CharacterSize("\xC1\xBF"), 0U);
    EXPECT_EQ(utf8CharacterSize("\xE0\x9F\xBF"), 0U);
    EXPECT_EQ(utf8CharacterSize("\xED\xA0\x80"), 0U);
    EXPECT_EQ(utf8CharacterSize("\xF4\x90\x80\x80"), 0U);
    EXPECT_EQ(utf8CharacterSize("\xE2\x82"), 0U);
    EXPECT_EQ(utf8CharacterSize(""), 0U);
}

TEST(Utf8, CountsCharactersAndStrayBytes) {
    EXPECT_EQ(utf8Length("aü→\xFF"), 4U);
}

TEST(NumberText, IsTheShortestThatReadsBackEqual) {
    EXPECT_EQ(numberText(0.1F), "0.1");
    EXPECT_EQ(numberText(0.1), "0.1");
    EXPECT_EQ(numberText(static_cast<double>(0.1F)), "0.10000000149011612");
    EXPECT_EQ(numberText(1e20F), "1e+20");
    EXPECT_EQ(numberText(16777216.0F), "16777216");
    EXPECT_EQ(numberText(-0.0F), "-0");
    EXPECT_EQ(numberText(std::numeric_limits<float>::denorm_min()), "1e-45");
}

TEST(NumberText, NamesWhatIsNotFinite) {
    EXPECT_EQ(numberText(-std::numeric_limits<float>::quiet_NaN()), "nan");
    EXPECT_EQ(numberText(std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(numberText(-std::numeric_limits<float>::infinity()), "-inf");
}

TEST(ByteText, ChangesTheUnitBeforeItRoundsUpTo1024) {
    EXPECT_EQ(byteText(0), "0 B");
    EXPECT_EQ(byteText(1023), "1023 B");
    EXPECT_EQ(byteText(1536), "1.5 KiB");
    EXPECT_EQ(byteText(1048575), "1.0 MiB");
    EXPECT_EQ(byteText(50ULL << 30U), "50.0 GiB");
    EXPECT_EQ(byteText(5000ULL << 40U), "5000.0 TiB");
}

TEST(VisibleLine, KeepsTheBackslashesOfTextThatIsVisibleAlready) {
    EXPECT_EQ(visibleLine(visibleText("a\n\\")), "a\\n\\\\");
    EXPECT_EQ(visibleLine("a\n\xC2\x9B\xFF"), "a\\n\\xC2\\x9B\\xFF");
}
