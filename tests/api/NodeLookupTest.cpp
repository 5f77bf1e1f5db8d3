#include "api/Support/OpenModel.h"
#include "api/Support/PublicNames.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace Api {

namespace {

// A root "a" (1) with a group "b" (2), which is current.
class NodeLookup : public OpenModel {
protected:
    NodeLookup() {
        model.addNode(Group, "a");
        model.addNode(Group, "b");
    }

    // The parent that a node added now would get.
    unsigned int currentNode() {
        const unsigned int added = model.addNode(Group, "probe");
        return saved().node(added).parent;
    }
};

using NodeLookupWithoutRoot = OpenModel;
using Names = std::vector<std::string>;

template <typename Action>
void expectInvalidStringPosition(Action action) {
    try {
        action();
        FAIL() << "nothing was thrown";
    } catch (const std::out_of_range& caught) {
        EXPECT_STREQ(caught.what(), "invalid string position");
    }
}

} // namespace

TEST_F(NodeLookup, PathGivesTheIdAndLeavesTheRootCurrent) {
    EXPECT_EQ(model.getNodeId("/a/b"), 2U);
    EXPECT_EQ(currentNode(), 1U);
}

TEST_F(NodeLookup, PathWithATrailingSeparatorGivesZeroAndLeavesTheRootCurrent) {
    EXPECT_EQ(model.getNodeId("/a/b/"), 0U);
    EXPECT_EQ(currentNode(), 1U);
}

TEST_F(NodeLookup, PathThatIsNotBelowTheRootGivesZeroAndLeavesTheRootCurrent) {
    EXPECT_EQ(model.getNodeId("a/b"), 0U);
    EXPECT_EQ(model.getNodeId("/x/b"), 0U);
    EXPECT_EQ(model.getNodeId("/"), 0U);
    EXPECT_EQ(currentNode(), 1U);
}

TEST_F(NodeLookup, ComponentThatIsNotThereGivesZeroAndLeavesTheRootCurrent) {
    EXPECT_EQ(model.getNodeId("/a/c"), 0U);
    EXPECT_EQ(model.getNodeId("/a/b/c"), 0U);
    EXPECT_EQ(model.getNodeId("/a/B"), 0U);
    EXPECT_EQ(currentNode(), 1U);
}

TEST_F(NodeLookup, PathOfTheRootAloneThrowsAndLeavesTheRootCurrent) {
    expectInvalidStringPosition([&] { model.getNodeId("/a"); });
    EXPECT_EQ(currentNode(), 1U);
}

TEST_F(NodeLookup, VectorOfTheRootsNameAloneThrows) {
    expectInvalidStringPosition([&] { model.getNodeId(Names{"a"}); });
}

TEST_F(NodeLookup, CharacterAfterTheRootsNameIsSkippedWithoutALook) {
    EXPECT_EQ(model.getNodeId("/aXb"), 2U);
    EXPECT_EQ(model.getNodeId("/ab"), 0U);
}

TEST_F(NodeLookup, VectorOfNamesGivesTheId) {
    EXPECT_EQ(model.getNodeId(Names{"a", "b"}), 2U);
    EXPECT_EQ(model.getNodeId(Names{"a", "c"}), 0U);
    EXPECT_EQ(currentNode(), 1U);
}

TEST_F(NodeLookup, EmptyPathAndEmptyVectorGiveZeroAndLeaveTheCurrentNode) {
    EXPECT_EQ(model.getNodeId(""), 0U);
    EXPECT_EQ(model.getNodeId(Names()), 0U);
    EXPECT_EQ(currentNode(), 2U);
}

TEST_F(NodeLookup, ComponentsOfAShapeGiveTheShapeAndItsNameTwiceTheGeometry) {
    model.setCurrentNodeId(1);
    EXPECT_EQ(model.addNode(Shape, "part"), 4U);
    EXPECT_EQ(model.getNodeId("/a/part"), 3U);
    EXPECT_EQ(model.getNodeId(Names{"a", "part"}), 3U);
    EXPECT_EQ(model.getNodeId("/a/part/part"), 4U);
    EXPECT_EQ(model.getNodeId(Names{"a", "part", "part"}), 4U);
}

TEST_F(NodeLookup, AmongChildrenOfOneNameTheLowerIdIsFound) {
    model.setCurrentNodeId(1);
    EXPECT_EQ(model.addNode(Shape, "b"), 4U);
    EXPECT_EQ(model.getNodeId("/a/b"), 2U);
}

TEST_F(NodeLookup, NodeAddedAfterALookupLandsBelowTheRoot) {
    model.getNodeId("/a/b");
    EXPECT_EQ(model.addNode(Group, "c"), 3U);
    EXPECT_EQ(saved().node(3).parent, 1U);
}

TEST_F(NodeLookup, SeparatorIsOneTextThatStandsWholeBetweenComponents) {
    EXPECT_EQ(model.getNodeId("::a::b", "::"), 2U);
    EXPECT_EQ(model.getNodeId(":a:b", "::"), 0U);
    EXPECT_EQ(model.getNodeId("/a/b", "::"), 0U);
}

TEST_F(NodeLookup, NamesMayHoldOneCharacterOfALongerSeparator) {
    EXPECT_EQ(model.addNode(Group, "c:d"), 3U);
    EXPECT_EQ(model.addNode(Group, "e|f"), 4U);
    EXPECT_EQ(model.getNodeId("|:a|:b|:c:d", "|:"), 3U);
    EXPECT_EQ(model.getNodeId("|:a|:b|:c:d|:e|f", "|:"), 4U);
    EXPECT_EQ(model.getNodeId("|:a|:b|:c|:d|:e|f", "|:"), 0U);
}

TEST_F(NodeLookup, NamesInAVectorMayHoldAnySeparator) {
    EXPECT_EQ(model.addNode(Group, "c/d"), 3U);
    EXPECT_EQ(model.addNode(Group, "e::f"), 4U);
    EXPECT_EQ(model.getNodeId(Names{"a", "b", "c/d", "e::f"}), 4U);
    EXPECT_EQ(model.getNodeId("/a/b/c/d"), 0U);
    EXPECT_EQ(model.addNode(Group, "\x1d\x1f"), 5U);
    EXPECT_EQ(model.getNodeId(Names{"a", "\x1d\x1f"}), 5U);
}

TEST_F(NodeLookup, Byte1EInANameOfAVectorSeparatesTwoNames) {
    EXPECT_EQ(model.getNodeId(Names{"a\x1e"
                                    "b"}),
              2U);
}

TEST_F(NodeLookup, EmptyNamesInAVectorStandForNodesWithoutName) {
    EXPECT_EQ(model.getNodeId(Names{"a", "", "b"}), 0U);
    EXPECT_EQ(model.getNodeId(Names{"", "a", "b"}), 0U);
    EXPECT_EQ(model.getNodeId(Names{"a", "b", ""}), 0U);
    EXPECT_EQ(model.addNode(Group, ""), 3U);
    EXPECT_EQ(model.addNode(Group, "b"), 4U);
    EXPECT_EQ(model.getNodeId(Names{"a", ""}), 3U);
    EXPECT_EQ(model.getNodeId(Names{"a", "", "b"}), 4U);
    EXPECT_EQ(model.getNodeId(Names{"a", "b"}), 2U);
}

TEST_F(NodeLookup, RootOfEmptyNameIsFoundByASeparatorAlone) {
    model.close();
    model.saveTo(folder.path("other.mox"), SaverOptions());
    model.addNode(Group, "");
    model.addNode(Group, "b");
    EXPECT_EQ(model.getNodeId("//b"), 2U);
}

TEST_F(NodeLookupWithoutRoot, PathOnAnOpenModelWithoutRootGivesZero) {
    EXPECT_EQ(model.getNodeId("/a/b"), 0U);
    EXPECT_EQ(model.getNodeId("/a"), 0U);
    EXPECT_EQ(model.getNodeId(Names{"a", "b"}), 0U);
    EXPECT_EQ(model.addNode(Group, "a"), 1U);
}

} // namespace Api
