#include "import/model/makeStep.h"

#include <gtest/gtest.h>

using MoxTool::findModeVariables;

TEST(AnalysisSteps, ModeNumberAndEigenFrequencyMakeModeShapes) {
    const auto found = findModeVariables({"EigenFrequency", "energy", "ModeNumber"});
    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(found->frequency, 0U);
    EXPECT_EQ(found->number, 2U);
}

TEST(AnalysisSteps, CaseAndUnderscoresDoNotMatter) {
    EXPECT_TRUE(findModeVariables({"MODE_NUMBER", "natural_frequency"}).has_value());
    EXPECT_TRUE(findModeVariables({"mode", "frequency"}).has_value());
}

TEST(AnalysisSteps, FrequencyAloneMakesNoModeShapes) {
    EXPECT_FALSE(findModeVariables({"frequency", "time"}).has_value());
    EXPECT_FALSE(findModeVariables({"ModeNumber"}).has_value());
    EXPECT_FALSE(findModeVariables({}).has_value());
}

TEST(AnalysisSteps, StepsAreNumberedFromOne) {
    EXPECT_EQ(MoxTool::makeStep(0, 0.25, std::nullopt).name, "Step 1");
    EXPECT_EQ(MoxTool::makeStep(11, 0.25, std::nullopt).name, "Step 12");
}
