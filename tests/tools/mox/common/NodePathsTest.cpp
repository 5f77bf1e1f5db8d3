#include "common/NodePaths.h"

#include "Support/TemporaryFolder.h"
#include "common/OpenModel.h"
#include "common/geometryOf.h"
#include "common/utf8.h"

#include <Qel/Mox2/Model.h>

namespace {

namespace Mox = Qel::Mox2;

// Group 1 "car", below it: Shape 2 with Geometry 3 "door", Group 4 "a/b" with Group 5 "door", Shape 6 with
// Geometry 7 "door".
class PathsOfNodes : public testing::Test {
protected:
    static std::string save(const std::string& path) {
        Mox::Model file;
        file.saveTo(path, {});
        file.addNode(Mox::Group, "car");
        file.addNode(Mox::Shape, "door");
        file.setCurrentNodeId(1);
        file.addNode(Mox::Group, "a/b");
        file.addNode(Mox::Group, "door");
        file.setCurrentNodeId(1);
        file.addNode(Mox::Shape, "door");
        file.close();
        return path;
    }

    std::uint32_t find(const std::string& path) const {
        const auto* node = paths.find(path);
        return node == nullptr ? 0 : node->id;
    }

    Support::TemporaryFolder folder;
    MoxTool::OpenModel opened{save(folder.path("car.mox"))};
    MoxTool::NodePaths paths{opened.model().nodes()};
};

std::vector<MoxReader::Node> groupsBelowARoot(const std::vector<std::string>& names) {
    std::vector<MoxReader::Node> nodes(1 + names.size());
    nodes[0].id = 1;
    nodes[0].name = "root";
    for (std::uint32_t i = 0; i < names.size(); ++i) {
        nodes[i + 1].id = i + 2;
        nodes[i + 1].parent = 1;
        nodes[i + 1].name = names[i];
    }
    return nodes;
}

} // namespace

TEST_F(PathsOfNodes, NamesEachLevelFromTheRootOn) {
    EXPECT_EQ(paths.of(1), "/car");
    EXPECT_EQ(paths.of(2), "/car/door");
}

TEST_F(PathsOfNodes, SlashInANameHasABackslash) {
    EXPECT_EQ(paths.of(5), "/car/a\\/b/door");
    EXPECT_EQ(find("/car/a\\/b/door"), 5U);
}

TEST_F(PathsOfNodes, GeometryOfAShapeSharesItsPath) {
    EXPECT_EQ(paths.of(3), "/car/door");
    EXPECT_EQ(MoxTool::geometryOf(opened.model(), opened.model().node(2))->id, 3U);
    EXPECT_EQ(MoxTool::geometryOf(opened.model(), opened.model().node(3))->id, 3U);
    EXPECT_EQ(MoxTool::geometryOf(opened.model(), opened.model().node(4)), nullptr);
}

TEST_F(PathsOfNodes, GeometryOfAShapeCanBeNamed) {
    EXPECT_EQ(find("/car/door/door"), 3U);
}

TEST_F(PathsOfNodes, FirstOfSiblingsOfOneNameHasThePathAndTheOthersTheirIdsToo) {
    EXPECT_EQ(find("/car/door"), 2U);
    EXPECT_EQ(paths.of(6), "/car/door#6");
    EXPECT_EQ(paths.of(7), "/car/door#7");
    EXPECT_EQ(find("/car/door#6"), 6U);
    EXPECT_EQ(find("/car/door#7"), 7U);
}

TEST_F(PathsOfNodes, IdAloneIsAPath) {
    EXPECT_EQ(find("#1"), 1U);
    EXPECT_EQ(find("#7"), 7U);
}

TEST_F(PathsOfNodes, IdOfAnotherNodeThanThePathsLeadsNowhere) {
    EXPECT_EQ(find("/car/bonnet#6"), 0U);
    EXPECT_EQ(find("/car#6"), 0U);
}

TEST_F(PathsOfNodes, LeadsNowhereUnlessEveryNameIsThere) {
    for (const auto* path :
         {"", "car", "/", "/van", "/car/", "/car/bonnet", "/car/door/door/door", "/car/a/b", "#0", "#8",
          "#99999999999", "#", "x#1", "/car\\", "/car\\q", "/c\\x61", "/c\\x6"}) {
        EXPECT_EQ(find(path), 0U) << path;
    }
}

TEST_F(PathsOfNodes, PathThatDoesNotBeginAtTheRootIsCompleted) {
    EXPECT_EQ(paths.whyNone("/door"), "has no node \"/door\", but /car/door; mox tree shows all nodes");
    EXPECT_EQ(paths.whyNone("a\\/b/door"),
              "has no node \"a\\\\/b/door\", but /car/a\\/b/door; mox tree shows all nodes");
    EXPECT_EQ(paths.whyNone("/oor"), "has no node \"/oor\"; mox tree shows all nodes");
    EXPECT_EQ(paths.whyNone(""), "has no node \"\"; mox tree shows all nodes");
}

TEST_F(PathsOfNodes, EscapesStandForTheirBytesAnywhere) {
    EXPECT_EQ(find("/c\\x61r/\\x64oor"), 2U);
}

TEST(NodePathsOfHostileNames, LeadBackToTheirNodes) {
    const auto nodes =
        groupsBelowARoot({"a/b",  "/",        "//",       "",     "\"",   "'",       "two words",
                          " ",    "#2",       "#",        "a#12", "a#b",  "a\\",     "\\",
                          "\\#3", "\\/",      "\\n",      "\n",   "\t\r", "\x1B[2J", std::string("\0", 1),
                          "\x7F", "\xC2\x9B", "\xFF\xFE", "\xC3", "ü→",   "...",     ".",
                          "..",   "-o",       "$HOME",    "`x`",  "*",    "a#12",    "",
                          "/"});
    const MoxTool::NodePaths paths(nodes);
    std::set<std::string> known;
    for (const auto& node : nodes) {
        const auto path = paths.of(node.id);
        EXPECT_EQ(paths.find(path), &node) << path;
        EXPECT_TRUE(known.insert(path).second) << path;
        EXPECT_TRUE(MoxTool::isUtf8(path)) << path;
        EXPECT_EQ(path.find_first_of(std::string("\0\n\t\r\x1B\x7F", 6)), std::string::npos) << path;
    }
}

TEST(NodePathsOfHostileNames, AreWrittenByTheirRules) {
    const auto nodes = groupsBelowARoot({"a/b", "", "#2", "a#12", "a#b", "\\", "\n\x01\xFF", "a#12"});
    const MoxTool::NodePaths paths(nodes);
    EXPECT_EQ(paths.of(2), "/root/a\\/b");
    EXPECT_EQ(paths.of(3), "/root/");
    EXPECT_EQ(paths.of(4), "/root/\\#2");
    EXPECT_EQ(paths.of(5), "/root/a\\#12");
    EXPECT_EQ(paths.of(6), "/root/a#b");
    EXPECT_EQ(paths.of(7), "/root/\\\\");
    EXPECT_EQ(paths.of(8), "/root/\\n\\x01\\xFF");
    EXPECT_EQ(paths.of(9), "/root/a#12#9");
}

TEST(NodePathsOfADamagedTree, AreIdsWhereNoPathLeads) {
    auto nodes = groupsBelowARoot({"a", "b", "c"});
    nodes[1].parent = 3; // after its child
    nodes[2].parent = 0; // a second root
    nodes[3].parent = 9; // no node
    const MoxTool::NodePaths paths(nodes);
    EXPECT_EQ(paths.of(2), "/a#2");
    EXPECT_EQ(paths.of(3), "/b#3");
    EXPECT_EQ(paths.of(4), "/c#4");
    EXPECT_EQ(paths.of(5), "#5");
    EXPECT_EQ(paths.find("/c#4"), &nodes[3]);
    EXPECT_EQ(paths.find("/b"), nullptr);
}

TEST(NodePathsOfADeepTree, AreCutToTheirEndAndHaveTheId) {
    const Support::TemporaryFolder folder;
    Mox::Model file;
    file.saveTo(folder.path("deep.mox"), {});
    for (int level = 0; level < 2100; ++level) {
        file.addNode(Mox::Group, "g");
    }
    file.close();
    const MoxTool::OpenModel opened(folder.path("deep.mox"));
    const MoxTool::NodePaths paths(opened.model().nodes());
    std::string wholePath;
    for (int level = 0; level < 2048; ++level) {
        wholePath += "/g";
    }
    EXPECT_TRUE(paths.of(2048) == wholePath);
    EXPECT_TRUE(paths.of(2049) == "..." + wholePath + "#2049");
    EXPECT_TRUE(paths.of(2100) == "..." + wholePath + "#2100");
    EXPECT_EQ(paths.find(wholePath)->id, 2048U);
    EXPECT_EQ(paths.find(paths.of(2100))->id, 2100U);
}
