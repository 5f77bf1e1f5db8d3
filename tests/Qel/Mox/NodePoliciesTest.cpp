#include <Qel/Mox/NodePolicies.h>

#include "Qel/Mox/OlderGeometry.h"

#include <Qel/Mox/Geometry.h>
#include <Qel/Mox/Group.h>
#include <Qel/Mox/Node.h>
#include <Qel/Mox/NodeSets.h>
#include <Qel/Mox/Shape.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using QelMox::Group;
using QelMox::Node;
using QelMox::NodesWithSameName;
using QelMox::Shape;
using QelMox::VirtualNodesWithSameName;

const Group GroupA("a", {});
const Group SameGroupA("a", {});
const Group GroupB("b", {});
const Group UpperCaseGroup("A", {});
const Shape ShapeA("a");
const Node PlainNode("a");

TEST(NodesWithSameName, NeedsNameTypeAndVersion) {
    EXPECT_TRUE(NodesWithSameName()(&GroupA, &SameGroupA));
    EXPECT_FALSE(NodesWithSameName()(&GroupA, &GroupB));
    EXPECT_FALSE(NodesWithSameName()(&GroupA, &ShapeA));
    const QelMox::NodeSets nodeSets("a");
    ASSERT_EQ(nodeSets.GetVersion(), PlainNode.GetVersion());
    EXPECT_FALSE(NodesWithSameName()(&nodeSets, &PlainNode));
    const QelMox::Geometry geometry("a");
    const Support::OlderGeometry older("a");
    EXPECT_FALSE(NodesWithSameName()(&geometry, &older));
}

TEST(NodesWithSameName, ComparesWholeByteStringsWithCase) {
    EXPECT_FALSE(NodesWithSameName()(&GroupA, &UpperCaseGroup));
    const Group longer(std::string("a\0b", 3), {});
    const Group other(std::string("a\0c", 3), {});
    EXPECT_FALSE(NodesWithSameName()(&longer, &other));
    EXPECT_FALSE(NodesWithSameName()(&longer, &GroupA));
}

TEST(VirtualNodesWithSameName, NeedsTheNameAlone) {
    EXPECT_TRUE(VirtualNodesWithSameName()(&GroupA, &ShapeA));
    EXPECT_TRUE(VirtualNodesWithSameName()(&ShapeA, &PlainNode));
    EXPECT_FALSE(VirtualNodesWithSameName()(&GroupA, &GroupB));
    EXPECT_FALSE(VirtualNodesWithSameName()(&GroupA, &UpperCaseGroup));
}

} // namespace
