#include "common/wrapText.h"

#include <gtest/gtest.h>

namespace {

using MoxTool::readableWidth;
using MoxTool::refillText;
using MoxTool::wrapLine;

TEST(WrapLine, BreaksAtBlanksAndIndentsFromTheSecondLineOn) {
    EXPECT_EQ(wrapLine("one two three four", 9), "one two\nthree\nfour");
    EXPECT_EQ(wrapLine("one two three four", 9, 2), "one two\n  three\n  four");
    EXPECT_EQ(wrapLine("one two", 7), "one two");
    EXPECT_EQ(wrapLine("", 7), "");
}

TEST(WrapLine, LongWordHasALineOfItsOwn) {
    EXPECT_EQ(wrapLine("a veryverylong b", 6), "a\nveryverylong\nb");
}

TEST(WrapLine, BlanksWithinALineStay) {
    EXPECT_EQ(wrapLine("  x  two words", 9, 5), "  x  two\n     words");
}

TEST(WrapLine, CountsCharactersNotBytes) {
    EXPECT_EQ(wrapLine("\xC3\xA4\xC3\xB6\xC3\xBC \xC3\xA4\xC3\xB6\xC3\xBC", 7),
              "\xC3\xA4\xC3\xB6\xC3\xBC \xC3\xA4\xC3\xB6\xC3\xBC");
}

TEST(RefillText, StaysAsItIsWhereThereIsRoom) {
    EXPECT_EQ(refillText("one\ntwo", 110), "one\ntwo");
}

TEST(RefillText, FillsParagraphsAndKeepsThemApart) {
    EXPECT_EQ(refillText("A long sentence that goes on and\non here.\n\nSecond one.\n", 40),
              "A long sentence that goes on and on\nhere.\n\nSecond one.\n");
}

TEST(RefillText, SentenceThatEndsEarlyEndsItsLine) {
    EXPECT_EQ(refillText("Short.\nNext line that is long enough to be broken.", 40),
              "Short.\nNext line that is long enough to be\nbroken.");
}

TEST(RefillText, MeaningOfATermStaysBesideIt) {
    EXPECT_EQ(refillText("  csv  for spreadsheets, one line for each\n       node\n  npy  for NumPy", 40),
              "  csv  for spreadsheets, one line for\n       each node\n  npy  for NumPy");
}

TEST(RefillText, CommandsAreNotBroken) {
    const auto* command = "  mox import --block 'web*' --variable 'stress_*' --step 7:last bracket.e end.mox";
    EXPECT_EQ(refillText(command, 40), command);
}

TEST(ReadableWidth, IsThatOfTheTerminalWithinBounds) {
    EXPECT_EQ(readableWidth(0), 110U);
    EXPECT_EQ(readableWidth(80), 80U);
    EXPECT_EQ(readableWidth(300), 110U);
    EXPECT_EQ(readableWidth(7), 40U);
}

} // namespace
