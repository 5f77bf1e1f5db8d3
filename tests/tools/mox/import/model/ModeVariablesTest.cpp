#include "import/model/ModeVariables.h"

#include <gtest/gtest.h>

using MoxTool::findModeVariables;

TEST(ModeVariables, ModeNumberAndEigenFrequencyMakeModeShapes) {
    const auto found = findModeVariables({"EigenFrequency", "energy", "ModeNumber"});
    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(found->frequency, 0U);
    EXPECT_EQ(found->number, 2U);
}

TEST(ModeVariables, CaseAndUnderscoresDoNotMatter) {
    EXPECT_TRUE(findModeVariables({"MODE_NUMBER", "natural_frequency"}).has_value());
    EXPECT_TRUE(findModeVariables({"mode", "frequency"}).has_value());
}

TEST(ModeVariables, FrequencyAloneMakesNoModeShapes) {
    EXPECT_FALSE(findModeVariables({"frequency", "time"}).has_value());
    EXPECT_FALSE(findModeVariables({"ModeNumber"}).has_value());
    EXPECT_FALSE(findModeVariables({}).has_value());
}
