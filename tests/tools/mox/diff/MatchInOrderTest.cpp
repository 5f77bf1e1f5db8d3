#include "diff/matchInOrder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// A text such as "00 1- -1": the places of each pair.
std::string matched(const std::vector<std::string_view>& a, const std::vector<std::string_view>& b) {
    std::string text;
    for (const auto& match : MoxTool::matchInOrder(a, b)) {
        text += text.empty() ? "" : " ";
        text += match.a ? std::to_string(*match.a) : "-";
        text += match.b ? std::to_string(*match.b) : "-";
    }
    return text;
}

} // namespace

TEST(MatchInOrder, PairsTheSameKeysWhateverTheirPlaces) {
    EXPECT_EQ(matched({"x", "y"}, {"y", "x"}), "01 10");
}

TEST(MatchInOrder, PairsRepeatedKeysInTheirOrder) {
    EXPECT_EQ(matched({"x", "y", "x"}, {"x", "x", "y"}), "00 12 21");
}

TEST(MatchInOrder, ListsWhatHasNoPartner) {
    EXPECT_EQ(matched({"x", "gone", "x"}, {"new", "x"}), "01 1- 2- -0");
    EXPECT_EQ(matched({}, {"x"}), "-0");
    EXPECT_EQ(matched({}, {}), "");
}
