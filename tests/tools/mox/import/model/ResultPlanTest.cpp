#include "import/model/ResultPlan.h"

#include <gtest/gtest.h>

using MoxTool::ResultDataset;
using MoxTool::ResultPlan;
using Qel::Mox2::DatasetType;
using Names = std::vector<std::string>;

namespace {

void expectDataset(const ResultDataset& dataset, const std::string& name, DatasetType type, std::size_t width,
                   const std::vector<std::size_t>& variables) {
    EXPECT_EQ(dataset.name, name);
    EXPECT_EQ(dataset.type, type);
    EXPECT_EQ(dataset.width, width);
    EXPECT_EQ(dataset.variables, variables);
}

} // namespace

TEST(ResultPlan, NodeResultsTakeTheirTypesFromTheComponents) {
    const auto plan =
        ResultPlan(3).nodeResults({"t", "v_x", "v_y", "v_z", "s_xx", "s_yy", "s_zz", "s_xy", "s_yz", "s_zx"});
    ASSERT_EQ(plan.size(), 3U);
    expectDataset(plan[0], "t", DatasetType::NodeScalar, 1, {0});
    expectDataset(plan[1], "v", DatasetType::NodeVector, 3, {1, 2, 3});
    expectDataset(plan[2], "s", DatasetType::NodeSixA, 6, {4, 5, 6, 7, 8, 9});
}

TEST(ResultPlan, ElementResultsTakeTheirTypesFromTheComponents) {
    const auto plan = ResultPlan(3).elementResults(
        {"t", "v_x", "v_y", "v_z", "s_xx", "s_yy", "s_zz", "s_xy", "s_yz", "s_zx"});
    ASSERT_EQ(plan.size(), 3U);
    expectDataset(plan[0], "t", DatasetType::ElementScalar, 1, {0});
    expectDataset(plan[1], "v", DatasetType::ElementVector, 3, {1, 2, 3});
    expectDataset(plan[2], "s", DatasetType::ElementSixA, 6, {4, 5, 6, 7, 8, 9});
}

TEST(ResultPlan, DisplacementGetsTheNameThatMarksIt) {
    const auto plan = ResultPlan(3).nodeResults({"disp_x", "disp_y", "disp_z"});
    ASSERT_EQ(plan.size(), 1U);
    expectDataset(plan[0], "Displacement", DatasetType::DisplacementVector, 3, {0, 1, 2});
}

TEST(ResultPlan, DisplacementInThePlaneLeavesItsThirdColumn) {
    const auto plan = ResultPlan(2).nodeResults({"disp_x", "disp_y"});
    ASSERT_EQ(plan.size(), 1U);
    expectDataset(plan[0], "Displacement", DatasetType::DisplacementVector, 3, {0, 1});
}

TEST(ResultPlan, RotationBecomesTheSecondHalfOfTheDisplacement) {
    const auto plan = ResultPlan(3).nodeResults({"RotX", "RotY", "RotZ", "DispX", "DispY", "DispZ"});
    ASSERT_EQ(plan.size(), 1U);
    expectDataset(plan[0], "Displacement", DatasetType::DisplacementSix, 6, {3, 4, 5, 0, 1, 2});
}

TEST(ResultPlan, ElementVectorNamedDispIsAVectorLikeOthers) {
    const auto plan = ResultPlan(3).elementResults({"disp_x", "disp_y", "disp_z"});
    ASSERT_EQ(plan.size(), 1U);
    expectDataset(plan[0], "disp", DatasetType::ElementVector, 3, {0, 1, 2});
}

TEST(ResultPlan, SingleVariableKeepsItsNameBeforeAGroup) {
    const auto plan = ResultPlan(3).nodeResults({"v_x", "v_y", "v_z", "v"});
    ASSERT_EQ(plan.size(), 2U);
    EXPECT_EQ(plan[0].name, "v (2)");
    EXPECT_EQ(plan[0].wantedName, "v");
    EXPECT_EQ(plan[1].name, "v");
}

TEST(ResultPlan, ElementResultGivesWayToANodeResultOfItsName) {
    ResultPlan plan(3);
    plan.nodeResults({"pressure"});
    const auto results = plan.elementResults({"pressure", "mass"});
    ASSERT_EQ(results.size(), 2U);
    EXPECT_EQ(results[0].name, "pressure (2)");
    EXPECT_EQ(results[1].name, "mass");
}

TEST(ResultPlan, CopiesOfAPlanDoNotShareNames) {
    ResultPlan nodes(3);
    nodes.nodeResults({"t"});
    auto first = nodes;
    auto second = nodes;
    EXPECT_EQ(first.elementResults({"p"})[0].name, "p");
    EXPECT_EQ(second.elementResults({"p"})[0].name, "p");
}

TEST(ResultPlan, NamesOfTheMeshAreTaken) {
    const auto plan = ResultPlan(3).nodeResults({"Coordinates", "Node Ids", "Polylength"});
    ASSERT_EQ(plan.size(), 3U);
    EXPECT_EQ(plan[0].name, "Coordinates (2)");
    EXPECT_EQ(plan[1].name, "Node Ids (2)");
    EXPECT_EQ(plan[2].name, "Polylength (2)");
}
