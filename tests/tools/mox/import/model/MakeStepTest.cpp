#include "import/model/makeStep.h"

#include <gtest/gtest.h>

TEST(MakeStep, StepsAreNumberedFromOne) {
    EXPECT_EQ(MoxTool::makeStep(0, 0.25, std::nullopt).name, "Step 1");
    EXPECT_EQ(MoxTool::makeStep(11, 0.25, std::nullopt).name, "Step 12");
}
