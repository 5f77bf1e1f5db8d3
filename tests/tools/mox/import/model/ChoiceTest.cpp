#include "import/model/Choice.h"

#include "common/Failure.h"

#include <gtest/gtest.h>

using MoxTool::Choice;

namespace {

std::string failureOf(const Choice& choice) {
    try {
        choice.check("a.e");
    } catch (const MoxTool::Failure& failure) {
        return failure.what();
    }
    return "";
}

} // namespace

TEST(Choice, EverythingIsTakenIfNothingIsNamed) {
    Choice choice("block", {});
    EXPECT_TRUE(choice.takes("web"));
    EXPECT_EQ(failureOf(choice), "");
}

TEST(Choice, NamesIdsAndPatternsAreTaken) {
    Choice choice("block", {"web", "7", "flange_?"});
    EXPECT_TRUE(choice.takes("web", {"1"}));
    EXPECT_TRUE(choice.takes("plate", {"7"}));
    EXPECT_TRUE(choice.takes("flange_a", {"3"}));
    EXPECT_FALSE(choice.takes("flange_ab", {"77"}));
    EXPECT_EQ(failureOf(choice), "");
}

TEST(Choice, WhatIsNotThereIsAnErrorThatListsWhatThereIs) {
    Choice choice("block", {"w*", "rib"});
    choice.takes("web");
    choice.takes("web");
    choice.takes("pl\x1B"
                 "ate");
    EXPECT_EQ(failureOf(choice), "a.e: --block rib: no block has this name; there are: web, pl\\x1Bate");
    EXPECT_EQ(failureOf(Choice("block", {"rib"})),
              "a.e: --block rib: no block has this name; the file has no blocks");
}

TEST(Choice, LongListsAreCut) {
    Choice choice("variable", {"x"});
    for (int i = 0; i < 22; ++i) {
        choice.takes("v" + std::to_string(i));
    }
    EXPECT_TRUE(failureOf(choice).ends_with(", v18, v19 and 2 more")) << failureOf(choice);
}
