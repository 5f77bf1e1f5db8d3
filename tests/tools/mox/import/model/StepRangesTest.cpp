#include "import/model/StepRanges.h"

#include "common/Failure.h"

#include <gtest/gtest.h>

using MoxTool::StepRanges;

TEST(StepRanges, EveryStepIsTakenWithoutARange) {
    EXPECT_TRUE(StepRanges({}).takes(0));
    EXPECT_NO_THROW(StepRanges({}).check("a.e", 0));
}

TEST(StepRanges, RangesIncludeTheirEnds) {
    const StepRanges choice({"2", "4:5", "9:last"});
    std::string taken;
    for (std::size_t index = 0; index < 11; ++index) {
        taken += choice.takes(index) ? 'x' : '.';
    }
    EXPECT_EQ(taken, ".x.xx...xxx");
}

TEST(StepRanges, OtherTextsAreNoRanges) {
    for (const auto* text :
         {"", "0", "x", "-3", "3x", "3:x", "3::5", "3:", "last", " 3", "99999999999999999999"}) {
        EXPECT_EQ(StepRanges::problemOf(text), "no range of steps: such as 3, 2:5 or 7:last is one") << text;
    }
    EXPECT_EQ(StepRanges::problemOf("5:2"), "no range of steps: it ends before it begins");
    EXPECT_EQ(StepRanges::problemOf("5:5"), "");
}

TEST(StepRanges, RangeOfNoStepIsAnErrorThatSaysWhichThereAre) {
    const auto failure = [](std::size_t count) -> std::string {
        try {
            StepRanges({"3:last"}).check("a.e", count);
        } catch (const MoxTool::Failure& refused) {
            return refused.what();
        }
        return "";
    };
    EXPECT_EQ(failure(2), "a.e: --step 3:last: no step has this number; there are steps 1 to 2");
    EXPECT_EQ(failure(1), "a.e: --step 3:last: no step has this number; there is step 1 alone");
    EXPECT_EQ(failure(0), "a.e: --step 3:last: no step has this number; the file has no steps");
    EXPECT_EQ(failure(3), "");
}
