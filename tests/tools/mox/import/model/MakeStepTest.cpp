#include "import/model/makeStep.h"

#include <gtest/gtest.h>

TEST(MakeStep, StepsAreNumberedFromOne) {
    EXPECT_EQ(MoxTool::makeStep(0, 0.25, std::nullopt).name, "Step 1");
    EXPECT_EQ(MoxTool::makeStep(11, 0.25, std::nullopt).name, "Step 12");
}

TEST(MakeStep, StepsToChooseFromHaveTheNamesThatTheModelWillHave) {
    const auto steps = MoxTool::stepsAt({0.25, 0.5});
    ASSERT_EQ(steps.all().size(), 2U);
    EXPECT_EQ(steps.all()[1].name, "Step 2");
    EXPECT_EQ(steps.all()[1].position(), 0.5);
    EXPECT_EQ(steps.find("Step 1"), 0U);
}
