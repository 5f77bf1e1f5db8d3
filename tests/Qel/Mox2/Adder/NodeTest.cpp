#include <Qel/Mox2/Adder/Node.h>

#include "Qel/Mox2/OpenDatabase.h"
#include "Qel/Mox2/RefusedAttribute.h"
#include "Qel/Mox2/StateFailures.h"
#include "Support/Thrown.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Qel::Exception::InvalidArguments;
using Qel::Exception::KeyNotFound;
using Qel::Mox2::AttributeMap;
using Qel::Mox2::NodeType;
using Support::Thrown;
using Support::throws;

const Thrown InvalidRootType = {3, "Invalid node type for root node", "Qel/Mox2/Adder/Node",
                                "Qel::Mox2::Adder::Node::addRootNode"};
const Thrown InvalidType = {3, "Invalid node type", "Qel/Mox2/Adder/Node",
                            "Qel::Mox2::Adder::Node::addNonRootNode"};

class NodeAdder : public Support::OpenDatabase {
protected:
    unsigned int add(int type, const std::string& name, const AttributeMap& attributes = {}) {
        Qel::Mox2::Adder::Node adder(NodeType(type), name, attributes);
        adder.update(database);
        return adder.result();
    }
};

TEST(NodeAdderState, NeedsWriteMode) {
    Support::expectThatItNeedsWriteMode([](Qel::Mox2::Database& database) {
        Qel::Mox2::Adder::Node(Qel::Mox2::Group, "a", {}).update(database);
    });
}

TEST_F(NodeAdder, DefaultIsAnUnnamedRootGroup) {
    Qel::Mox2::Adder::Node adder;
    EXPECT_EQ(adder.result(), 0U);
    adder.update(database);
    EXPECT_EQ(adder.result(), 1U);
    EXPECT_EQ(dataOf<QelMox::Group>(1).GetName(), "");
    EXPECT_EQ(dataOf<QelMox::Group>(1).GetGroupKind(), 0);
}

TEST_F(NodeAdder, ResultIsZeroBeforeTheUpdate) {
    const AttributeMap none;
    EXPECT_EQ(Qel::Mox2::Adder::Node(Qel::Mox2::Group, "a", none).result(), 0U);
}

TEST_F(NodeAdder, NumbersOfTheTypesAreThoseOfTheInterface) {
    EXPECT_EQ(int{Qel::Mox2::RootMarkedGroup}, 1);
    EXPECT_EQ(int{Qel::Mox2::RootGroup}, 2);
    EXPECT_EQ(int{Qel::Mox2::Group}, 3);
    EXPECT_EQ(int{Qel::Mox2::Shape}, 4);
}

TEST_F(NodeAdder, RootMarkedGroupHasKindOneAndTheAttributes) {
    EXPECT_EQ(add(1, "root", {{"a", 7}}), 1U);
    EXPECT_EQ(dataOf<QelMox::Group>(1).GetGroupKind(), 1);
    EXPECT_EQ(dataOf<QelMox::Group>(1).GetAttributes().at("a").integer, 7U);
}

TEST_F(NodeAdder, RootGroupAndGroupAsRootHaveKindZeroAndTheAttributes) {
    for (const int type : {2, 3}) {
        database.close();
        database.open();
        EXPECT_EQ(add(type, "root", {{"a", 7}}), 1U);
        EXPECT_EQ(dataOf<QelMox::Group>(1).GetGroupKind(), 0);
        EXPECT_EQ(dataOf<QelMox::Group>(1).GetAttributes().at("a").integer, 7U);
    }
}

TEST_F(NodeAdder, ShapeAsRootHasNoGeometry) {
    EXPECT_EQ(add(4, "root", {{"a", 7U}}), 1U);
    EXPECT_EQ(dataOf<QelMox::Shape>(1).GetName(), "root");
    EXPECT_EQ(tree().GetNodes().size(), 1U);
}

TEST_F(NodeAdder, FirstNodeIsTheRootWhateverNodeIsCurrent) {
    tree().PutCurrentId(99);
    EXPECT_EQ(add(3, "root"), 1U);
}

TEST_F(NodeAdder, GroupBelowTheRootHasKindZeroAndTheAttributes) {
    add(1, "root");
    EXPECT_EQ(add(3, "child", {{"a", 7}}), 2U);
    EXPECT_EQ(dataOf<QelMox::Group>(2).GetGroupKind(), 0);
    EXPECT_EQ(dataOf<QelMox::Group>(2).GetAttributes().at("a").integer, 7U);
    EXPECT_EQ(tree().GetReqNode(2).parent, 1U);
}

TEST_F(NodeAdder, ShapeBelowTheRootHasAGeometryOfItsNameWhichIsTheResult) {
    add(3, "root");
    EXPECT_EQ(add(4, "part", {{"a", 7U}}), 3U);
    EXPECT_EQ(dataOf<QelMox::Shape>(2).GetName(), "part");
    EXPECT_EQ(dataOf<QelMox::Geometry>(3).GetName(), "part");
    EXPECT_EQ(tree().GetReqNode(3).parent, 2U);
    EXPECT_EQ(tree().GetCurrentId(), 3U);
}

TEST_F(NodeAdder, SameNameTwiceMakesTwoNodes) {
    add(3, "root");
    add(3, "child");
    tree().SetCurrentId(1);
    EXPECT_EQ(add(3, "child"), 3U);
}

TEST_F(NodeAdder, UnknownTypeAsRootIsRefusedAndTheRootStaysWithoutData) {
    for (const int type : {0, 5, -1}) {
        EXPECT_TRUE(throws<InvalidArguments>(InvalidRootType, [&] { add(type, "root"); }));
    }
    EXPECT_EQ(tree().GetReqNode(1).data, nullptr);
}

TEST_F(NodeAdder, RootTypesAndUnknownTypesAreRefusedBelowARoot) {
    add(3, "root");
    for (const int type : {0, 1, 2, 5, -1}) {
        EXPECT_TRUE(throws<InvalidArguments>(InvalidType, [&] { add(type, "child"); }));
    }
    EXPECT_EQ(tree().GetNodes().size(), 1U);
}

TEST_F(NodeAdder, RefusedAttributesLeaveTheTreeUnchanged) {
    for (const int type : {1, 2, 3}) {
        EXPECT_TRUE(throws<InvalidArguments>(Support::RefusedAttribute, [&] {
            add(type, "root", {{"a", 7U}});
        }));
    }
    EXPECT_EQ(tree().GetReqNode(1).data, nullptr);
    add(3, "root");
    EXPECT_TRUE(throws<InvalidArguments>(Support::RefusedAttribute, [&] { add(3, "child", {{"a", 7U}}); }));
    EXPECT_EQ(tree().GetNodes().size(), 1U);
}

TEST_F(NodeAdder, UnknownCurrentNodeFailsWithNothingChanged) {
    add(3, "root");
    for (const unsigned int unknown : {0U, 2U}) {
        tree().PutCurrentId(unknown);
        for (const int type : {3, 4}) {
            EXPECT_TRUE(throws<KeyNotFound>({14, "Key not found", "Qel/Adt/AdtTree", "::GetCurrentNode"},
                                            [&] { add(type, "child"); }));
        }
        EXPECT_EQ(tree().GetCurrentId(), unknown);
    }
    EXPECT_EQ(tree().GetNodes().size(), 1U);
    EXPECT_EQ(tree().GetNextId(), 2U);
}

} // namespace
