#include "api/Support/Failures.h"
#include "api/Support/OpenModel.h"
#include "api/Support/PublicNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace Api {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Paths = std::vector<std::string>;
using PathMap = std::map<std::string, Attributes>;

Failure relativePath() {
    return failure<Qel::Exception::InvalidArguments>(
        3, "Relative paths not supported", "Qel/Mox2/Adder/Components", "Qel::Mox2::Adder::Components");
}

Failure otherRoot() {
    return failure<Qel::Exception::NotYetImplemented>(20, "Not yet implemented", "Qel/Mox2/Adder/Components",
                                                      "Qel::Mox2::Adder::Components");
}

std::vector<unsigned int> toVector(const Array1d<unsigned int>& ids) {
    std::vector<unsigned int> result(ids.size());
    for (std::size_t i = 0; i < result.size(); ++i) {
        result[i] = ids[i];
    }
    return result;
}

class AssemblyComponents : public OpenModel {
protected:
    std::vector<unsigned int> add(const Paths& paths, const std::string& separator = "/") {
        return toVector(model.addAssemblyComponents(paths, separator));
    }
    std::vector<unsigned int> addMap(const PathMap& paths) {
        return toVector(model.addAssemblyComponents(paths));
    }

    // "parent:type name" of each node in ascending id.
    std::vector<std::string> savedNodes() {
        const SavedModel file = saved();
        std::vector<std::string> nodes;
        for (const MoxReader::Node& node : file.model().nodes()) {
            nodes.push_back(std::to_string(node.parent) + ":" + node.typeName + " " + node.name);
        }
        return nodes;
    }
};

} // namespace

// --- Nothing to do

TEST(AssemblyComponentsOfEmptyModel, NoPathsGiveAnEmptyArrayWithoutAnException) {
    Model model;
    EXPECT_EQ(model.addAssemblyComponents(Paths()).size(), 0U);
    EXPECT_EQ(model.addAssemblyComponents(PathMap()).size(), 0U);
}

TEST(AssemblyComponentsOfEmptyModel, OneEmptyPathFindsTheFileNotOpen) {
    Model model;
    EXPECT_TRUE(fails([&] { model.addAssemblyComponents(Paths{""}); }, fileNotOpen()));
    EXPECT_TRUE(fails([&] { model.addAssemblyComponents(PathMap{{"", {}}}); }, fileNotOpen()));
}

TEST_F(AssemblyComponents, NoPathsGiveAnEmptyArray) {
    EXPECT_THAT(add({}), IsEmpty());
    EXPECT_THAT(addMap({}), IsEmpty());
}

TEST_F(AssemblyComponents, EmptyPathGivesZeroAndNoNode) {
    EXPECT_THAT(add({""}), ElementsAre(0U));
    EXPECT_THAT(savedNodes(), ElementsAre("0: "));
}

TEST_F(AssemblyComponents, PathOfSeparatorsAloneGivesZeroAndMakesNoRoot) {
    EXPECT_THAT(add({"/", "//"}), ElementsAre(0U, 0U));
    EXPECT_THAT(savedNodes(), ElementsAre("0: "));
}

TEST_F(AssemblyComponents, SkippedPathsLeaveZerosBetweenTheOthers) {
    EXPECT_THAT(add({"", "/a/b/", "/", "/a/c/"}), ElementsAre(0U, 2U, 0U, 3U));
}

// --- Making and finding nodes

TEST_F(AssemblyComponents, EmptyTreeGetsRootGroupsShapesAndGeometries) {
    EXPECT_THAT(add({"/a/b/c", "/a/b/d", "/a/e/"}), ElementsAre(4U, 6U, 7U));
    EXPECT_THAT(savedNodes(), ElementsAre("0:Group a", "1:Group b", "2:Shape c", "3:Geometry c", "2:Shape d",
                                          "5:Geometry d", "1:Group e"));
}

TEST_F(AssemblyComponents, SameListOnceMoreAddsNothingAndGivesTheSameResult) {
    const Paths paths = {"/a/b/c", "/a/b/d", "/a/e/"};
    add(paths);
    EXPECT_THAT(add(paths), ElementsAre(4U, 6U, 7U));
    EXPECT_EQ(saved().nodeCount(), 7U);
}

TEST_F(AssemblyComponents, NodesMadeHereHaveDefaultsAndNoAttributes) {
    add({"/a/b/c"});
    const SavedModel file = saved();
    for (const unsigned int id : {1U, 2U}) {
        EXPECT_EQ(file.group(id).kind, 0);
        EXPECT_EQ(file.group(id).translation, (std::array<float, 3>{0, 0, 0}));
        EXPECT_EQ(file.group(id).rotation, (std::array<float, 4>{0, 0, 1, 0}));
        EXPECT_EQ(file.group(id).scale, (std::array<float, 3>{1, 1, 1}));
        EXPECT_THAT(file.group(id).attributes, IsEmpty());
    }
    EXPECT_EQ(file.material(3).diffuse, (std::array<float, 4>{0.8F, 0.8F, 0.8F, 1}));
    EXPECT_THAT(file.datasets(4), IsEmpty());
}

TEST_F(AssemblyComponents, PathOfOneComponentMakesAShapeOfTheRootsNameBelowTheRoot) {
    EXPECT_THAT(add({"/a"}), ElementsAre(3U));
    EXPECT_THAT(savedNodes(), ElementsAre("0:Group a", "1:Shape a", "2:Geometry a"));
}

TEST_F(AssemblyComponents, GroupPathOfOneComponentMakesAGroupOfTheRootsNameBelowTheRoot) {
    EXPECT_THAT(add({"/a/"}), ElementsAre(2U));
    EXPECT_THAT(savedNodes(), ElementsAre("0:Group a", "1:Group a"));
}

TEST_F(AssemblyComponents, GroupAndShapeOfOneNameAreSiblingsAndPathsPassThroughTheGroup) {
    EXPECT_THAT(add({"/a/b", "/a/b/", "/a/b/c"}), ElementsAre(3U, 4U, 6U));
    EXPECT_THAT(savedNodes(), ElementsAre("0:Group a", "1:Shape b", "2:Geometry b", "1:Group b", "4:Shape c",
                                          "5:Geometry c"));
}

TEST_F(AssemblyComponents, DuplicatesGiveTheSameId) {
    EXPECT_THAT(add({"/a/b", "/a/c/", "/a/b", "/a/c/"}), ElementsAre(3U, 4U, 3U, 4U));
}

TEST_F(AssemblyComponents, GroupMadeByAddNodeIsReused) {
    model.addNode(Group, "a");
    EXPECT_EQ(model.addNode(Group, "b"), 2U);
    EXPECT_THAT(add({"/a/b/"}), ElementsAre(2U));
    EXPECT_EQ(saved().nodeCount(), 2U);
}

TEST_F(AssemblyComponents, ShapeMadeByAddNodeIsMergedAndItsGeometryReturned) {
    addRootAndShape();
    EXPECT_THAT(add({"/root/part"}), ElementsAre(3U));
    EXPECT_EQ(saved().nodeCount(), 3U);
}

TEST_F(AssemblyComponents, AmongNodesOfOneNameTheLowestIdIsFound) {
    model.addNode(Group, "a");
    model.addNode(Group, "b");
    model.moveToParentNode();
    model.addNode(Group, "b");
    EXPECT_THAT(add({"/a/b/"}), ElementsAre(2U));
}

TEST_F(AssemblyComponents, ShapeAsRootCountsByItsNameAlone) {
    model.addNode(Shape, "s");
    EXPECT_THAT(add({"/s/x", "/s/y/"}), ElementsAre(3U, 4U));
    EXPECT_THAT(savedNodes(), ElementsAre("0:Shape s", "1:Shape x", "2:Geometry x", "1:Group y"));
}

TEST_F(AssemblyComponents, CurrentNodeAtTheCallDoesNotMatter) {
    model.addNode(Group, "a");
    model.addNode(Group, "b");
    add({"/a/c/"});
    EXPECT_EQ(saved().node(3).parent, 1U);
}

TEST_F(AssemblyComponents, LastPathThatWasNotSkippedLeavesItsEndCurrent) {
    add({"/a/b/c", "/a/e/", "", "/"});
    EXPECT_EQ(model.addNode(Group, "below e"), 6U);
    add({"/a/b/c"});
    EXPECT_EQ(model.addNode(Group, "below the geometry"), 7U);
    const SavedModel file = saved();
    EXPECT_EQ(file.node(5).name, "e");
    EXPECT_EQ(file.node(6).parent, 5U);
    EXPECT_EQ(file.node(7).parent, 4U);
}

TEST_F(AssemblyComponents, GroupsGetAttributesThroughTheirReturnedIds) {
    const unsigned int id = add({"/a/b/"}).at(0);
    Attributes attributes;
    attributes.set("unit", "mm");
    model.setNodeData(id, NodeProperties(), attributes);
    EXPECT_EQ(std::get<std::string>(saved().group(id).attributes.at("unit")), "mm");
}

// --- Separators

TEST_F(AssemblyComponents, RunsOfSeparatorsNameOneNode) {
    EXPECT_THAT(add({"/a//b", "/a/b", "/a/b//", "/a/b/"}), ElementsAre(3U, 3U, 4U, 4U));
}

TEST_F(AssemblyComponents, RepeatedCharacterOfTheSeparatorSplitsAlsoAlone) {
    EXPECT_THAT(add({"::a::b", "::a:b", "::a::c::"}, "::"), ElementsAre(3U, 3U, 4U));
    EXPECT_THAT(savedNodes(), ElementsAre("0:Group a", "1:Shape b", "2:Geometry b", "1:Group c"));
}

TEST_F(AssemblyComponents, EachCharacterOfTheSeparatorSplits) {
    EXPECT_THAT(add({"|:a|b:c|:d", "|:a:b|c|:e|:", "|:a|:b|:c|:f:g"}, "|:"), ElementsAre(5U, 6U, 9U));
    EXPECT_THAT(savedNodes(), ElementsAre("0:Group a", "1:Group b", "2:Group c", "3:Shape d", "4:Geometry d",
                                          "3:Group e", "3:Group f", "7:Shape g", "8:Geometry g"));
}

TEST_F(AssemblyComponents, StartIsComparedWithTheWholeSeparator) {
    EXPECT_TRUE(fails([&] { add({":a"}, "::"); }, relativePath()));
    EXPECT_TRUE(fails([&] { add({":"}, "::"); }, relativePath()));
}

TEST_F(AssemblyComponents, EndIsComparedWithTheWholeSeparator) {
    // One colon at the end splits nothing off and makes no group path.
    EXPECT_THAT(add({"::a::b:"}, "::"), ElementsAre(3U));
    EXPECT_EQ(saved().node(2).typeName, "Shape");
}

TEST_F(AssemblyComponents, NamesMayHoldOtherCharacters) {
    EXPECT_THAT(add({"/a b.c/d-e:f"}), ElementsAre(3U));
    EXPECT_THAT(savedNodes(), ElementsAre("0:Group a b.c", "1:Shape d-e:f", "2:Geometry d-e:f"));
}

// --- Failures

TEST_F(AssemblyComponents, RelativePathFailsAndNodesOfEarlierPathsStay) {
    EXPECT_TRUE(fails([&] { add({"/a/x/", "a/b", "/a/y/"}); }, relativePath()));
    EXPECT_THAT(add({"/a/x/"}), ElementsAre(2U));
    EXPECT_THAT(savedNodes(), ElementsAre("0:Group a", "1:Group x"));
}

TEST_F(AssemblyComponents, RelativePathMakesNoRoot) {
    EXPECT_TRUE(fails([&] { add({"a/b"}); }, relativePath()));
    EXPECT_EQ(model.addNode(Group, "root"), 1U);
    EXPECT_EQ(saved().node(1).name, "root");
}

TEST_F(AssemblyComponents, PathBelowAnotherRootIsNotYetImplementedAndLeavesNothing) {
    model.addNode(Group, "a");
    EXPECT_TRUE(fails([&] { add({"/a/x/", "/x/y"}); }, otherRoot()));
    EXPECT_EQ(model.addNode(Group, "below x"), 3U);
    EXPECT_THAT(savedNodes(), ElementsAre("0:Group a", "1:Group x", "2:Group below x"));
}

TEST_F(AssemblyComponents, RootMadeByAnEarlierPathIsKnownToTheLaterOnes) {
    EXPECT_TRUE(fails([&] { add({"/a/x/", "/b/y/"}); }, otherRoot()));
    EXPECT_EQ(saved().nodeCount(), 2U);
}

TEST_F(AssemblyComponents, BothFlavoursFailAlike) {
    EXPECT_TRUE(fails([&] { addMap({{"a/b", {}}}); }, relativePath()));
    EXPECT_TRUE(fails([&] { addMap({{"/a/x/", {}}, {"/b/y/", {}}}); }, otherRoot()));
}

TEST_F(AssemblyComponents, CallingAgainAfterAFailureReturnsTheIds) {
    EXPECT_TRUE(fails([&] { add({"/a/x/", "/a/y", "relative"}); }, relativePath()));
    EXPECT_THAT(add({"/a/x/", "/a/y"}), ElementsAre(2U, 4U));
}

// --- Paths with attributes

TEST_F(AssemblyComponents, ResultOfAMapFollowsTheSortedKeys) {
    EXPECT_THAT(addMap({{"/r/b", {}}, {"/r/a", {}}}), ElementsAre(3U, 5U));
    const SavedModel file = saved();
    EXPECT_EQ(file.node(3).name, "a");
    EXPECT_EQ(file.node(5).name, "b");
}

TEST_F(AssemblyComponents, AttributesOfPathsAreLost) {
    Attributes attributes;
    attributes.set("unit", "mm");
    EXPECT_THAT(addMap({{"/a/b/", attributes}, {"/a/c", attributes}}), ElementsAre(2U, 4U));
    const SavedModel file = saved();
    EXPECT_THAT(file.group(2).attributes, IsEmpty());
    // The empty records of the groups a and b, six empty lists each.
    EXPECT_EQ(file.stream("Attributes"), std::vector<std::uint8_t>(48, 0));
}

TEST_F(AssemblyComponents, RefusedAttributesOfAGroupPathFailWhenItsNodesAreMade) {
    EXPECT_TRUE(fails([&] { addMap({{"/a/b/c/", refusedAttributes()}}); }, attributeRefused()));
    EXPECT_THAT(savedNodes(), ElementsAre("0:Group a", "1:Group b", "2:Group c"));
}

TEST_F(AssemblyComponents, AttributesOfAShapePathAreNotLookedAt) {
    EXPECT_THAT(addMap({{"/a/b", refusedAttributes()}}), ElementsAre(3U));
}

TEST_F(AssemblyComponents, ArgumentsAreNotChanged) {
    Attributes attributes;
    attributes.set("unit", "mm");
    const PathMap map = {{"/a/b/", attributes}, {"/a/c", Attributes()}};
    const Paths paths = {"::a::d::", "", "::a::e", "::a::d::"};
    const std::string separator = "::";
    addMap(map);
    add(paths, separator);
    EXPECT_EQ(paths, (Paths{"::a::d::", "", "::a::e", "::a::d::"}));
    EXPECT_EQ(separator, "::");
    ASSERT_EQ(map.size(), 2U);
    ASSERT_TRUE(map.contains("/a/c"));
    model.setNodeData(1, NodeProperties(), map.at("/a/c"));
    model.setNodeData(2, NodeProperties(), map.at("/a/b/"));
    const SavedModel file = saved();
    EXPECT_THAT(file.group(1).attributes, IsEmpty());
    EXPECT_EQ(file.group(2).attributes, (MoxReader::Attributes{{"unit", "mm"}}));
}

} // namespace Api
