#include "common/closestWord.h"

#include <gtest/gtest.h>

using namespace MoxTool;

namespace {

const std::vector<std::string> Commands = {"import", "info", "stat", "diff", "extract", "export"};
const std::vector<std::string> Options = {"--attributes", "--depth", "-a", "-o"};

} // namespace

TEST(ClosestWord, IsThatWithTheFewestMistakes) {
    EXPECT_EQ(closestWord("inof", Commands), "info");
    EXPECT_EQ(closestWord("stats", Commands), "stat");
    EXPECT_EQ(closestWord("dif", Commands), "diff");
    EXPECT_EQ(closestWord("exprot", Commands), "export");
    EXPECT_EQ(closestWord("extarct", Commands), "extract");
    EXPECT_EQ(closestWord("--dept", Options), "--depth");
}

TEST(ClosestWord, IsTheOnlyOneThatBeginsAsTyped) {
    EXPECT_EQ(closestWord("--att", Options), "--attributes");
    EXPECT_EQ(closestWord("ex", Commands), std::nullopt);
}

TEST(ClosestWord, IsNoneIfAllAreFar) {
    EXPECT_EQ(closestWord("embroider", Commands), std::nullopt);
    EXPECT_EQ(closestWord("x", Commands), std::nullopt);
    EXPECT_EQ(closestWord("-z", Options), std::nullopt);
    EXPECT_EQ(closestWord("--", Options), std::nullopt);
    EXPECT_EQ(closestWord("", Commands), std::nullopt);
}

TEST(ClosestWord, OfALongWordIsFoundAtOnce) {
    EXPECT_EQ(closestWord(std::string(1000000, 'x'), Commands), std::nullopt);
}

TEST(DidYouMean, AsksOrSaysNothing) {
    EXPECT_EQ(didYouMean("inof", Commands), "; did you mean info?");
    EXPECT_EQ(didYouMean("embroider", Commands), "");
}
