#include "api/Support/Failures.h"
#include "api/Support/OpenModel.h"
#include "api/Support/PublicNames.h"

#include <gtest/gtest.h>

namespace Api {

namespace {

using NodeCreation = OpenModel;

Failure invalidRootType() {
    return failure<Qel::Exception::InvalidArguments>(
        3, "Invalid node type for root node", "Qel/Mox2/Adder/Node", "Qel::Mox2::Adder::Node::addRootNode");
}

Failure invalidType() {
    return failure<Qel::Exception::InvalidArguments>(3, "Invalid node type", "Qel/Mox2/Adder/Node",
                                                     "Qel::Mox2::Adder::Node::addNonRootNode");
}

Failure noNodeOfThisId() {
    return failure<Qel::Exception::OutOfBounds>(11, "Out of bounds error", "Qel/Mox2/Modifier/CurrentNodeId",
                                                "Qel::Mox2::Modifier::CurrentNodeId::update");
}

} // namespace

// --- Creation

TEST_F(NodeCreation, WorkedOrderOfCalls) {
    EXPECT_EQ(model.addNode(Group, "root"), 1U);
    EXPECT_EQ(model.addNode(Group, "group"), 2U);
    EXPECT_EQ(model.addNode(Shape, "first"), 4U);
    model.moveToParentNode();
    model.moveToParentNode();
    EXPECT_EQ(model.addNode(Shape, "second"), 6U);

    const SavedModel file = saved();
    ASSERT_EQ(file.nodeCount(), 6U);
    EXPECT_EQ(file.node(2).parent, 1U);
    EXPECT_EQ(file.node(3).parent, 2U);
    EXPECT_EQ(file.node(3).typeName, "Shape");
    EXPECT_EQ(file.node(4).parent, 3U);
    EXPECT_EQ(file.node(4).typeName, "Geometry");
    EXPECT_EQ(file.node(4).name, "first");
    EXPECT_EQ(file.node(5).parent, 2U);
    EXPECT_EQ(file.node(5).name, "second");
    EXPECT_EQ(file.node(6).parent, 5U);
}

class FirstNode : public OpenModel, public testing::WithParamInterface<NodeType> {};

TEST_P(FirstNode, IsOneForEveryTypeAndASecondNodeIsTwo) {
    EXPECT_EQ(model.addNode(GetParam(), "root"), 1U);
    EXPECT_EQ(model.addNode(Group, "child"), 2U);
    EXPECT_EQ(saved().node(2).parent, 1U);
}

INSTANTIATE_TEST_SUITE_P(AllTypes, FirstNode,
                         testing::Values(NodeType(1), NodeType(2), NodeType(3), NodeType(4)));

TEST_F(NodeCreation, FirstShapeMakesNoGeometryAndTheNextNodeIsItsChild) {
    EXPECT_EQ(model.addNode(Shape, "root"), 1U);
    EXPECT_EQ(model.addNode(Group, "child"), 2U);
    const SavedModel file = saved();
    ASSERT_EQ(file.nodeCount(), 2U);
    EXPECT_EQ(file.node(1).typeName, "Shape");
    EXPECT_EQ(file.node(2).typeName, "Group");
    EXPECT_EQ(file.node(2).parent, 1U);
}

TEST_F(NodeCreation, FirstShapeAloneIsARecordWithoutChildren) {
    model.addNode(Shape, "root");
    const SavedModel file = saved();
    EXPECT_EQ(file.nodeCount(), 1U);
    EXPECT_EQ(file.node(1).firstChild, 0U);
    EXPECT_EQ(file.node(1).lastChild, 0U);
}

TEST_F(NodeCreation, OnlyARootMarkedGroupHasGroupKindOne) {
    model.addNode(RootMarkedGroup, "root");
    model.addNode(Group, "child");
    const SavedModel file = saved();
    EXPECT_EQ(file.group(1).kind, 1);
    EXPECT_EQ(file.group(2).kind, 0);
}

class PlainRoot : public OpenModel, public testing::WithParamInterface<NodeType> {};

TEST_P(PlainRoot, HasGroupKindZeroAndTheAttributes) {
    Attributes attributes;
    attributes.set("unit", "mm");
    model.addNode(GetParam(), "root", attributes);
    const SavedModel file = saved();
    EXPECT_EQ(file.group(1).kind, 0);
    EXPECT_EQ(std::get<std::string>(file.group(1).attributes.at("unit")), "mm");
}

INSTANTIATE_TEST_SUITE_P(RootGroupAndGroup, PlainRoot, testing::Values(RootGroup, Group));

TEST_F(NodeCreation, NewGroupHasTheDefaultTransform) {
    model.addNode(Group, "root");
    const SavedModel file = saved();
    EXPECT_EQ(file.node(1).version, "0.4");
    EXPECT_EQ(file.group(1).translation, (std::array<float, 3>{0, 0, 0}));
    EXPECT_EQ(file.group(1).rotation, (std::array<float, 4>{0, 0, 1, 0}));
    EXPECT_EQ(file.group(1).scale, (std::array<float, 3>{1, 1, 1}));
}

TEST_F(NodeCreation, ThreeGroupsInARowNestThreeLevels) {
    model.addNode(Group, "a");
    model.addNode(Group, "b");
    model.addNode(Group, "c");
    const SavedModel file = saved();
    EXPECT_EQ(file.node(2).parent, 1U);
    EXPECT_EQ(file.node(3).parent, 2U);
}

TEST_F(NodeCreation, SiblingsNeedAMoveToTheParentInBetween) {
    model.addNode(Group, "a");
    model.addNode(Group, "b");
    model.moveToParentNode();
    model.addNode(Group, "c");
    const SavedModel file = saved();
    EXPECT_EQ(file.node(2).parent, 1U);
    EXPECT_EQ(file.node(3).parent, 1U);
    EXPECT_EQ(file.node(2).next, 3U);
    EXPECT_EQ(file.node(3).previous, 2U);
}

TEST_F(NodeCreation, ShapeBelowTheRootReturnsTheIdOfItsGeometry) {
    model.addNode(Group, "root");
    EXPECT_EQ(model.addNode(Shape, "part"), 3U);
    const SavedModel file = saved();
    EXPECT_EQ(file.node(2).typeName, "Shape");
    EXPECT_EQ(file.node(2).version, "0.2");
    EXPECT_EQ(file.node(3).typeName, "Geometry");
    EXPECT_EQ(file.node(3).version, "0.7");
}

TEST_F(NodeCreation, NodeAddedRightAfterAShapeLandsBelowItsGeometry) {
    addRootAndShape();
    EXPECT_EQ(model.addNode(Shape, "inner"), 5U);
    const SavedModel file = saved();
    EXPECT_EQ(file.node(4).parent, 3U);
    EXPECT_EQ(file.node(5).parent, 4U);
}

TEST_F(NodeCreation, NamesAndAttributesAreCopied) {
    std::string name = "root";
    Attributes attributes;
    attributes.set("unit", "mm");
    model.addNode(Group, name, attributes);
    name = "other";
    attributes.set("unit", "inch");
    const SavedModel file = saved();
    EXPECT_EQ(file.node(1).name, "root");
    EXPECT_EQ(std::get<std::string>(file.group(1).attributes.at("unit")), "mm");
}

TEST_F(NodeCreation, NamesMayBeEmptyOrHoldAnyBytes) {
    const std::string odd("a\0/\x1e\xff", 5);
    model.addNode(Group, "");
    model.addNode(Group, odd);
    const SavedModel file = saved();
    EXPECT_EQ(file.node(1).name, "");
    EXPECT_EQ(file.node(2).name, odd);
}

// --- Types that are refused

TEST_F(NodeCreation, UnknownTypeAsFirstNodeIsRefusedAndTheTreeStaysWithoutARoot) {
    EXPECT_TRUE(fails([&] { model.addNode(NodeType(0), "root"); }, invalidRootType()));
    EXPECT_TRUE(fails([&] { model.addNode(NodeType(5), "root"); }, invalidRootType()));
    EXPECT_TRUE(fails([&] { model.addNode(NodeType(-1), "root"); }, invalidRootType()));
    const SavedModel file = saved();
    ASSERT_EQ(file.nodeCount(), 1U);
    EXPECT_EQ(file.node(1).typeName, "");
}

TEST_F(NodeCreation, RootTypesAreRefusedOnceARootExistsAndTheTreeIsUnchanged) {
    model.addNode(Group, "root");
    EXPECT_TRUE(fails([&] { model.addNode(RootGroup, "again"); }, invalidType()));
    EXPECT_TRUE(fails([&] { model.addNode(RootMarkedGroup, "again"); }, invalidType()));
    EXPECT_TRUE(fails([&] { model.addNode(NodeType(0), "again"); }, invalidType()));
    EXPECT_TRUE(fails([&] { model.addNode(NodeType(5), "again"); }, invalidType()));
    EXPECT_EQ(model.addNode(Group, "child"), 2U);
    const SavedModel file = saved();
    EXPECT_EQ(file.nodeCount(), 2U);
    EXPECT_EQ(file.node(1).name, "root");
}

// --- Attributes that are refused

TEST_F(NodeCreation, RootWithRefusedAttributesIsNotMade) {
    for (const NodeType type : {RootMarkedGroup, RootGroup, Group}) {
        EXPECT_TRUE(fails([&] { model.addNode(type, "root", refusedAttributes()); }, attributeRefused()));
    }
    EXPECT_EQ(model.addNode(Group, "root"), 1U);
    EXPECT_EQ(model.addNode(Group, "child"), 2U);
}

TEST_F(NodeCreation, GroupWithRefusedAttributesIsNotMade) {
    model.addNode(Group, "root");
    EXPECT_TRUE(fails([&] { model.addNode(Group, "child", refusedAttributes()); }, attributeRefused()));
    EXPECT_EQ(model.addNode(Group, "child"), 2U);
    EXPECT_EQ(saved().nodeCount(), 2U);
}

TEST_F(NodeCreation, AttributesOfShapesAreNotLookedAt) {
    EXPECT_EQ(model.addNode(Shape, "root", refusedAttributes()), 1U);
    EXPECT_EQ(model.addNode(Shape, "part", refusedAttributes()), 3U);
    EXPECT_EQ(saved().stream("Attributes").size(), 0U);
}

// --- Navigation

TEST_F(NodeCreation, MoveToParentAtTheRootLeavesTheRootCurrent) {
    EXPECT_NO_THROW(model.moveToParentNode());
    model.addNode(Group, "root");
    EXPECT_NO_THROW(model.moveToParentNode());
    model.addNode(Group, "child");
    EXPECT_EQ(saved().node(2).parent, 1U);
}

TEST_F(NodeCreation, SetCurrentNodeIdOneWorksBeforeAnyNodeIsAdded) {
    EXPECT_NO_THROW(model.setCurrentNodeId(1));
    EXPECT_EQ(model.addNode(Group, "root"), 1U);
}

TEST_F(NodeCreation, SetCurrentNodeIdSettlesWhereTheNextNodeGoes) {
    model.addNode(Group, "a");
    model.addNode(Group, "b");
    model.addNode(Group, "c");
    model.setCurrentNodeId(2);
    model.addNode(Group, "d");
    EXPECT_EQ(saved().node(4).parent, 2U);
}

TEST_F(NodeCreation, SetCurrentNodeIdOutOfBoundsLeavesTheCurrentNode) {
    model.addNode(Group, "a");
    model.addNode(Group, "b");
    EXPECT_TRUE(fails([&] { model.setCurrentNodeId(0); }, noNodeOfThisId()));
    EXPECT_TRUE(fails([&] { model.setCurrentNodeId(3); }, noNodeOfThisId()));
    EXPECT_TRUE(fails([&] { model.setCurrentNodeId(Model::INVALID_ID); }, noNodeOfThisId()));
    model.addNode(Group, "c");
    EXPECT_EQ(saved().node(3).parent, 2U);
}

} // namespace Api
