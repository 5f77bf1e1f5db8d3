#include "common/matchesGlob.h"

#include <gtest/gtest.h>

#include <string>

using MoxTool::matchesGlob;

TEST(MatchesGlob, WithoutWildcardsTheTextsAreEqual) {
    EXPECT_TRUE(matchesGlob("door", "door"));
    EXPECT_FALSE(matchesGlob("door", "doors"));
    EXPECT_FALSE(matchesGlob("doors", "door"));
    EXPECT_TRUE(matchesGlob("", ""));
}

TEST(MatchesGlob, StarStandsForAnyText) {
    EXPECT_TRUE(matchesGlob("*", ""));
    EXPECT_TRUE(matchesGlob("*door*", "left door 2"));
    EXPECT_TRUE(matchesGlob("a*b*c", "a-b-b-c"));
    EXPECT_FALSE(matchesGlob("a*b*c", "a-c-b"));
    EXPECT_FALSE(matchesGlob("*x", "y"));
}

TEST(MatchesGlob, QuestionMarkStandsForOneCharacterOfUtf8) {
    EXPECT_TRUE(matchesGlob("T?r", "Tür"));
    EXPECT_FALSE(matchesGlob("T?r", "Tr"));
    EXPECT_FALSE(matchesGlob("?", ""));
    EXPECT_TRUE(matchesGlob("?", "\xFF"));
}

TEST(MatchesGlob, ManyStarsEndSoon) {
    const std::string text(20000, 'a');
    EXPECT_FALSE(matchesGlob("*a*a*a*a*a*a*a*a*b", text));
}
