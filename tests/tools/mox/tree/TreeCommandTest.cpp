#include "../common/MoxRun.h"
#include "../common/SampleModel.h"
#include "../common/SteppedModel.h"
#include "Support/TemporaryFolder.h"

namespace {

class TreeCommand : public testing::Test {
protected:
    void SetUp() override { saveSampleModel(path); }

    Support::TemporaryFolder folder;
    std::string path = folder.path("sample.mox");
};

} // namespace

TEST_F(TreeCommand, ShowsNodesWithDifferencesFromTheDefaultAndDatasets) {
    const auto run = runMox({"tree", path});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.messages, "");
    EXPECT_EQ(run.output, R"(Assembly  Group 1  translation 1 2 3
  Cube  Shape 2  diffuse 1 0 0 1
    Cube  Geometry 3
      - Coordinates  Coordinates  float 2 x 3
      - Temperature  NodeScalar   float 2 x 1  step 1
      - Temperature  NodeScalar   float 2 x 1  step 2  -> Temperature, step 1 of node 3
  \x1B[2Jü\n  Group 4
)");
}

TEST_F(TreeCommand, DatasetOfSeveralStepsIsOneLine) {
    saveSteppedModel(path);
    EXPECT_EQ(runMox({"tree", path}).output, R"(Root  Group 1
  A  Shape 2
    A  Geometry 3
      - T  NodeScalar  float 2 x 1  steps 1, 3, 5
  B  Shape 4
    B  Geometry 5
      - T     NodeScalar  float 2 x 1  steps 1 to 5
      - Mode  NodeVector  float 2 x 3  steps 6 to 7 ("Mode 1" to "Mode 2")
)");
}

TEST_F(TreeCommand, ShowsEachStepWithItsTimeOrFrequencyOnRequest) {
    saveSteppedModel(path);
    const auto run = runMox({"tree", "--steps", "--name", "B", path});
    EXPECT_NE(run.output.find(R"(
      - T     NodeScalar  float 2 x 1  step 1 @0
      - T     NodeScalar  float 2 x 1  step 2 @0.25
)"),
              std::string::npos)
        << run.output;
    EXPECT_NE(run.output.find("\n      - Mode  NodeVector  float 2 x 3  step 7 \"Mode 2\" @20\n"),
              std::string::npos)
        << run.output;
}

TEST_F(TreeCommand, ShowsTheDatasetsOfChosenStepsAlone) {
    saveSteppedModel(path);
    EXPECT_EQ(runMox({"tree", "--step", "@0.5", "--name", "B", path}).output, R"(Root  Group 1
  B  Shape 4
    B  Geometry 5
      - T  NodeScalar  float 2 x 1  step 3 @0.5
)");
    const auto run = runMox({"tree", "--step", "9", path});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.says("has no step \"9\"; its steps are: 1 @0, ")) << run.messages;
}

TEST_F(TreeCommand, AttributeThatDiffersFromStepToStepShowsItsEnds) {
    saveSteppedModel(path);
    const auto run = runMox({"tree", "--attributes", "--name", "B", path});
    EXPECT_NE(run.output.find("        Time = 0 (float) ... 1 (float)\n"), std::string::npos) << run.output;
    EXPECT_NE(run.output.find("        Category = \"Vibration\"\n"), std::string::npos) << run.output;
}

// Such as a result that is the same in all steps, given in one call.
TEST_F(TreeCommand, StepsThatShareTheNumbersOfOneAreOneLine) {
    {
        Qel::Mox2::Model model;
        model.saveTo(path, {true, "", "", ""});
        model.addNode(Qel::Mox2::Group, "G");
        const auto shape = model.addNode(Qel::Mox2::Shape, "S");
        Qel::Mox2::StepList steps(3);
        for (std::size_t i = 0; i < 3; ++i) {
            steps.set(i, {"Step " + std::to_string(i + 1), {}});
        }
        model.addArrayProperty("T", Qel::Mox2::NodeScalar, Qel::Mox2::Array1d<float>{1}, shape, steps);
        model.close();
    }
    EXPECT_NE(runMox({"tree", path}).output.find(R"(
      - T  NodeScalar  float 1 x 1  step 1
      - T  NodeScalar  float 1 x 1  steps 2 to 3  -> T, step 1 of node 3
)"),
              std::string::npos);
}

TEST_F(TreeCommand, ShowsAttributesOnRequest) {
    const auto run = runMox({"tree", "--attributes", "--depth", "1", path});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, R"(Assembly  Group 1  translation 1 2 3  (+ 2 below)
  Count = 7 (integer)
  Mass = 0.1 (float)
  Title = "a "b"\n"
)");
}

TEST_F(TreeCommand, NameFilterKeepsTheWayToTheMatches) {
    const auto run = runMox({"tree", "--name", "*[2J?*", path});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "Assembly  Group 1  translation 1 2 3\n  \\x1B[2Jü\\n  Group 4\n");
}

TEST_F(TreeCommand, DepthLimitsTheNameFilterToo) {
    EXPECT_EQ(runMox({"tree", "--name", "Cube", "--depth", "2", path}).output,
              "Assembly  Group 1  translation 1 2 3\n  Cube  Shape 2  diffuse 1 0 0 1  (+ 1 below)\n");
}

TEST_F(TreeCommand, NameThatNoNodeHasIsAFailure) {
    const auto run = runMox({"tree", "--name", "Sphere", path});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.messages,
              "mox tree: " + path + ": no node has such a name; mox tree without --name lists all\n");
}

TEST_F(TreeCommand, DepthOf0IsWrongUsage) {
    EXPECT_EQ(runMox({"tree", "--depth", "0", path}).exitCode, 2);
}

TEST_F(TreeCommand, BelowLevel32LinesBearTheirLevelInsteadOfMoreBlanks) {
    {
        Qel::Mox2::Model model;
        model.saveTo(path, {true, "", "", ""});
        for (int level = 1; level <= 34; ++level) {
            model.addNode(Qel::Mox2::Group, "G");
        }
        model.close();
    }
    const auto output = runMox({"tree", path}).output;
    const auto end = std::string(62, ' ') + "G  Group 32\n" + std::string(64, ' ') + "[33] G  Group 33\n" +
                     std::string(64, ' ') + "[34] G  Group 34\n";
    EXPECT_TRUE(output.ends_with(end)) << output;
}
