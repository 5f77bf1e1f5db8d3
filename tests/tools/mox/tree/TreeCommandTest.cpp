#include "../common/MoxRun.h"
#include "../common/SampleModel.h"
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
      - Temperature, step "Step 1"  NodeScalar  float 2 x 1
      - Temperature, step "Step 2"  NodeScalar  float 2 x 1  -> Temperature, step "Step 1" of node 3
  \x1B[2Jü\n  Group 4
)");
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
