#include <Qel/Mox/VariableType.h>

#include <gtest/gtest.h>

namespace {

using QelMox::VariableType;

constexpr unsigned int numberOf(VariableType type) {
    return static_cast<unsigned int>(type);
}

static_assert(sizeof(VariableType) == 4);

TEST(VariableType, NumbersAreThoseOfTheFile) {
    EXPECT_EQ(numberOf(VariableType::Coordinates), 1U);
    EXPECT_EQ(numberOf(VariableType::Connectivity0), 4U);
    EXPECT_EQ(numberOf(VariableType::Connectivity1), 5U);
    EXPECT_EQ(numberOf(VariableType::Connectivity2), 6U);
    EXPECT_EQ(numberOf(VariableType::Polylength), 9U);
    EXPECT_EQ(numberOf(VariableType::NodeScalar), 12U);
    EXPECT_EQ(numberOf(VariableType::NodeVector), 13U);
    EXPECT_EQ(numberOf(VariableType::NodeSixA), 14U);
    EXPECT_EQ(numberOf(VariableType::NodeSixB), 15U);
    EXPECT_EQ(numberOf(VariableType::ElementScalar), 16U);
    EXPECT_EQ(numberOf(VariableType::ElementVector), 17U);
    EXPECT_EQ(numberOf(VariableType::ElementSixA), 18U);
    EXPECT_EQ(numberOf(VariableType::ElementSixB), 19U);
    EXPECT_EQ(numberOf(VariableType::ThirdScalar), 20U);
    EXPECT_EQ(numberOf(VariableType::ThirdVector), 21U);
    EXPECT_EQ(numberOf(VariableType::ThirdSixA), 22U);
    EXPECT_EQ(numberOf(VariableType::ThirdSixB), 23U);
    EXPECT_EQ(numberOf(VariableType::FourthScalarA), 24U);
    EXPECT_EQ(numberOf(VariableType::FourthScalarB), 25U);
    EXPECT_EQ(numberOf(VariableType::FourthVector), 26U);
    EXPECT_EQ(numberOf(VariableType::FourthSixA), 27U);
    EXPECT_EQ(numberOf(VariableType::FourthSixB), 28U);
}

} // namespace
