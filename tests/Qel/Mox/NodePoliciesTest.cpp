#include <Qel/Mox/NodePolicies.h>

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

class OlderGeometry final : public QelMox::Geometry {
public:
    using Geometry::Geometry;

    std::string GetVersion() const override { return "0.5"; }
};

const Group group("a", {});
const Group sameGroup("a", {});
const Group otherGroup("b", {});
const Group upperCaseGroup("A", {});
const Shape shape("a");
const Node plain("a");

TEST(NodesWithSameName, NeedsNameTypeAndVersion) {
    EXPECT_TRUE(NodesWithSameName()(&group, &sameGroup));
    EXPECT_FALSE(NodesWithSameName()(&group, &otherGroup));
    EXPECT_FALSE(NodesWithSameName()(&group, &shape));
    const QelMox::NodeSets nodeSets("a");
    ASSERT_EQ(nodeSets.GetVersion(), plain.GetVersion());
    EXPECT_FALSE(NodesWithSameName()(&nodeSets, &plain));
    const QelMox::Geometry geometry("a");
    const OlderGeometry older("a");
    EXPECT_FALSE(NodesWithSameName()(&geometry, &older));
}

TEST(NodesWithSameName, ComparesWholeByteStringsWithCase) {
    EXPECT_FALSE(NodesWithSameName()(&group, &upperCaseGroup));
    const Group longer(std::string("a\0b", 3), {});
    const Group other(std::string("a\0c", 3), {});
    EXPECT_FALSE(NodesWithSameName()(&longer, &other));
    EXPECT_FALSE(NodesWithSameName()(&longer, &group));
}

TEST(VirtualNodesWithSameName, NeedsTheNameAlone) {
    EXPECT_TRUE(VirtualNodesWithSameName()(&group, &shape));
    EXPECT_TRUE(VirtualNodesWithSameName()(&shape, &plain));
    EXPECT_FALSE(VirtualNodesWithSameName()(&group, &otherGroup));
    EXPECT_FALSE(VirtualNodesWithSameName()(&group, &upperCaseGroup));
}

} // namespace
