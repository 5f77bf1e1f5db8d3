#include "common/nodePath.h"

#include "Support/TemporaryFolder.h"
#include "common/OpenModel.h"

#include <Qel/Mox2/Model.h>

namespace {

namespace Mox = Qel::Mox2;

// Group 1 "car", below it: Shape 2 with Geometry 3 "door", Group 4 "a/b" with Group 5 "door", Shape 6 with
// Geometry 7 "door".
class NodePath : public testing::Test {
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

    std::uint32_t find(const std::string& path, const std::string& separator = "/") const {
        const auto* node = MoxTool::findNode(opened.model(), path, separator);
        return node == nullptr ? 0 : node->id;
    }

    Support::TemporaryFolder folder;
    MoxTool::OpenModel opened{save(folder.path("car.mox"))};
};

} // namespace

TEST_F(NodePath, NamesEachLevelFromTheRootOn) {
    EXPECT_EQ(MoxTool::nodePath(opened.model(), 1), "/car");
    EXPECT_EQ(MoxTool::nodePath(opened.model(), 2), "/car/door");
    EXPECT_EQ(MoxTool::nodePath(opened.model(), 5, "|"), "|car|a/b|door");
}

TEST_F(NodePath, GeometryOfAShapeSharesItsPath) {
    EXPECT_EQ(MoxTool::nodePath(opened.model(), 3), "/car/door");
    EXPECT_EQ(MoxTool::geometryOf(opened.model(), opened.model().node(2))->id, 3U);
    EXPECT_EQ(MoxTool::geometryOf(opened.model(), opened.model().node(3))->id, 3U);
    EXPECT_EQ(MoxTool::geometryOf(opened.model(), opened.model().node(4)), nullptr);
}

TEST_F(NodePath, IsFoundAgain) {
    EXPECT_EQ(find("/car"), 1U);
    EXPECT_EQ(find("/car/door/door"), 3U);
    EXPECT_EQ(find("::car::a/b::door", "::"), 5U);
}

TEST_F(NodePath, FindsTheFirstAmongSiblingsOfOneName) {
    EXPECT_EQ(find("/car/door"), 2U);
}

TEST_F(NodePath, LeadsNowhereUnlessEveryNameIsThere) {
    for (const auto* path :
         {"", "car", "/", "/van", "/car/", "/car/bonnet", "/car/door/door/door", "/car/a/b"}) {
        EXPECT_EQ(find(path), 0U) << path;
    }
}

TEST(NodePathOfADeepTree, IsCutToItsEnd) {
    const Support::TemporaryFolder folder;
    Mox::Model file;
    file.saveTo(folder.path("deep.mox"), {});
    for (int level = 0; level < 2100; ++level) {
        file.addNode(Mox::Group, "g");
    }
    file.close();
    const MoxTool::OpenModel opened(folder.path("deep.mox"));
    std::string wholePath;
    for (int level = 0; level < 2048; ++level) {
        wholePath += "/g";
    }
    EXPECT_TRUE(MoxTool::nodePath(opened.model(), 2048) == wholePath);
    EXPECT_TRUE(MoxTool::nodePath(opened.model(), 2049) == "..." + wholePath);
    EXPECT_TRUE(MoxTool::nodePath(opened.model(), 2100) == "..." + wholePath);
}
