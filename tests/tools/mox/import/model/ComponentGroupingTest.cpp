#include "import/model/ComponentGrouping.h"

#include <gtest/gtest.h>

#include <ostream>

namespace MoxTool {

static bool operator==(const VariableGroup& left, const VariableGroup& right) {
    return left.name == right.name && left.kind == right.kind && left.variables == right.variables;
}

static std::ostream& operator<<(std::ostream& stream, const VariableGroup& group) {
    stream << group.name << " kind " << static_cast<int>(group.kind) << ":";
    for (const auto variable : group.variables) {
        stream << " " << variable;
    }
    return stream;
}

} // namespace MoxTool

using MoxTool::ComponentGrouping;
using MoxTool::GroupKind;
using MoxTool::VariableGroup;
using Groups = std::vector<VariableGroup>;

TEST(ComponentGrouping, NoVariablesGiveNoGroups) {
    EXPECT_EQ(ComponentGrouping::group({}, 3), Groups{});
}

TEST(ComponentGrouping, VariableWithoutSuffixStaysSingle) {
    EXPECT_EQ(ComponentGrouping::group({"pressure"}, 3), (Groups{{"pressure", GroupKind::Single, {0}}}));
}

TEST(ComponentGrouping, ThreeComponentsMakeAVector) {
    EXPECT_EQ(ComponentGrouping::group({"disp_x", "disp_y", "disp_z"}, 3),
              (Groups{{"disp", GroupKind::Vector, {0, 1, 2}}}));
}

TEST(ComponentGrouping, SuffixIsRecognisedInAnyCaseAndWithoutUnderscore) {
    EXPECT_EQ(ComponentGrouping::group({"vel_X", "vel_y", "vel_Z", "DispX", "DispY", "DispZ"}, 3),
              (Groups{{"vel", GroupKind::Vector, {0, 1, 2}}, {"Disp", GroupKind::Vector, {3, 4, 5}}}));
}

TEST(ComponentGrouping, ColumnsFollowTheSuffixNotTheFile) {
    EXPECT_EQ(ComponentGrouping::group({"v_z", "v_x", "v_y"}, 3),
              (Groups{{"v", GroupKind::Vector, {1, 2, 0}}}));
}

TEST(ComponentGrouping, SixComponentsMakeATensorInItsOrder) {
    EXPECT_EQ(ComponentGrouping::group({"s_xy", "s_yz", "s_zx", "s_xx", "s_yy", "s_zz"}, 3),
              (Groups{{"s", GroupKind::Tensor, {3, 4, 5, 0, 1, 2}}}));
}

TEST(ComponentGrouping, TwoLettersOfDifferentCaseAreTheEndOfABaseAndAComponent) {
    EXPECT_EQ(ComponentGrouping::group({"VelocityX", "VelocityY", "VelocityZ"}, 3),
              (Groups{{"Velocity", GroupKind::Vector, {0, 1, 2}}}));
    EXPECT_EQ(ComponentGrouping::group({"SXX", "SYY", "SZZ", "SXY", "SYZ", "SZX"}, 3),
              (Groups{{"S", GroupKind::Tensor, {0, 1, 2, 3, 4, 5}}}));
}

TEST(ComponentGrouping, XzStandsForZx) {
    EXPECT_EQ(ComponentGrouping::group({"sxx", "syy", "szz", "sxy", "syz", "sxz"}, 3),
              (Groups{{"s", GroupKind::Tensor, {0, 1, 2, 3, 4, 5}}}));
}

TEST(ComponentGrouping, IntegrationPointsMakeGroupsOfTheirOwn) {
    EXPECT_EQ(ComponentGrouping::group(
                  {"f_x", "f_y", "f_z", "f_x_1", "f_y_1", "f_z_1", "f_x_12", "f_y_12", "f_z_12"}, 3),
              (Groups{{"f", GroupKind::Vector, {0, 1, 2}},
                      {"f_1", GroupKind::Vector, {3, 4, 5}},
                      {"f_12", GroupKind::Vector, {6, 7, 8}}}));
}

TEST(ComponentGrouping, IncompleteVectorStaysSingle) {
    EXPECT_EQ(ComponentGrouping::group({"disp_x", "disp_z"}, 3),
              (Groups{{"disp_x", GroupKind::Single, {0}}, {"disp_z", GroupKind::Single, {1}}}));
}

TEST(ComponentGrouping, IncompleteTensorStaysSingleAndIsNoVector) {
    EXPECT_EQ(ComponentGrouping::group({"sxx", "sxy", "sxz"}, 3), (Groups{{"sxx", GroupKind::Single, {0}},
                                                                          {"sxy", GroupKind::Single, {1}},
                                                                          {"sxz", GroupKind::Single, {2}}}));
}

TEST(ComponentGrouping, XAndYMakeAVectorInThePlaneAlone) {
    EXPECT_EQ(ComponentGrouping::group({"disp_x", "disp_y"}, 2),
              (Groups{{"disp", GroupKind::Vector, {0, 1}}}));
    EXPECT_EQ(ComponentGrouping::group({"disp_x", "disp_y"}, 3),
              (Groups{{"disp_x", GroupKind::Single, {0}}, {"disp_y", GroupKind::Single, {1}}}));
}

TEST(ComponentGrouping, ThreeComponentsMakeAVectorInThePlaneToo) {
    EXPECT_EQ(ComponentGrouping::group({"v_x", "v_y", "v_z"}, 2),
              (Groups{{"v", GroupKind::Vector, {0, 1, 2}}}));
}

TEST(ComponentGrouping, XAndZDoNotMakeAVectorInThePlane) {
    EXPECT_EQ(ComponentGrouping::group({"v_x", "v_z"}, 2),
              (Groups{{"v_x", GroupKind::Single, {0}}, {"v_z", GroupKind::Single, {1}}}));
}

TEST(ComponentGrouping, NamesWithoutABaseStaySingle) {
    EXPECT_EQ(ComponentGrouping::group({"x", "y", "z"}, 3), (Groups{{"x", GroupKind::Single, {0}},
                                                                    {"y", GroupKind::Single, {1}},
                                                                    {"z", GroupKind::Single, {2}}}));
}

TEST(ComponentGrouping, BasesMustAgreeToTheLetter) {
    EXPECT_EQ(ComponentGrouping::group({"Disp_x", "disp_y", "disp_z"}, 3).size(), 3U);
    EXPECT_EQ(ComponentGrouping::group({"dispx", "disp_y", "disp_z"}, 3).size(), 3U);
}

TEST(ComponentGrouping, SecondNameOfAComponentStaysSingle) {
    EXPECT_EQ(ComponentGrouping::group({"d_x", "d_X", "d_y", "d_z"}, 3),
              (Groups{{"d", GroupKind::Vector, {0, 2, 3}}, {"d_X", GroupKind::Single, {1}}}));
}

TEST(ComponentGrouping, GroupsStandInTheOrderOfTheirFirstVariables) {
    EXPECT_EQ(ComponentGrouping::group({"z_y", "mass", "z_x", "z_z", "aux"}, 3),
              (Groups{{"z", GroupKind::Vector, {2, 0, 3}},
                      {"mass", GroupKind::Single, {1}},
                      {"aux", GroupKind::Single, {4}}}));
}

TEST(ComponentGrouping, RotationJoinsTheDisplacement) {
    const Groups groups = {{"Disp", GroupKind::Vector, {0, 1, 2}}, {"Rot", GroupKind::Vector, {3, 4, 5}}};
    EXPECT_EQ(MoxTool::joinRotation(groups), (Groups{{"Disp", GroupKind::VectorPair, {0, 1, 2, 3, 4, 5}}}));
}

TEST(ComponentGrouping, RotationBeforeTheDisplacementJoinsToo) {
    const Groups groups = {{"rotation", GroupKind::Vector, {0, 1, 2}},
                           {"displ", GroupKind::Vector, {3, 4, 5}}};
    EXPECT_EQ(MoxTool::joinRotation(groups), (Groups{{"displ", GroupKind::VectorPair, {3, 4, 5, 0, 1, 2}}}));
}

TEST(ComponentGrouping, RotationAloneStays) {
    const Groups groups = {{"rot", GroupKind::Vector, {0, 1, 2}}};
    EXPECT_EQ(MoxTool::joinRotation(groups), groups);
}

TEST(ComponentGrouping, RotationDoesNotJoinOneOfTwoDisplacements) {
    const Groups groups = {{"disp", GroupKind::Vector, {0, 1, 2}},
                           {"Disp", GroupKind::Vector, {3, 4, 5}},
                           {"rot", GroupKind::Vector, {6, 7, 8}}};
    EXPECT_EQ(MoxTool::joinRotation(groups), groups);
}

TEST(ComponentGrouping, TensorNamedDispIsNoDisplacement) {
    EXPECT_FALSE(MoxTool::isDisplacement({"disp", GroupKind::Tensor, {0, 1, 2, 3, 4, 5}}));
    EXPECT_FALSE(MoxTool::isDisplacement({"disp", GroupKind::Single, {0}}));
    EXPECT_TRUE(MoxTool::isDisplacement({"Displacement", GroupKind::Vector, {0, 1, 2}}));
}

TEST(ComponentGrouping, NamesMayHaveAnyLength) {
    const std::string base(1'000'000, 'a');
    EXPECT_EQ(ComponentGrouping::group({base + "_x", base + "_y", base + "_z"}, 3),
              (Groups{{base, GroupKind::Vector, {0, 1, 2}}}));
    const std::string blank(1'000'000, '_');
    EXPECT_EQ(ComponentGrouping::group({blank + "x"}, 3), (Groups{{blank + "x", GroupKind::Single, {0}}}));
}
