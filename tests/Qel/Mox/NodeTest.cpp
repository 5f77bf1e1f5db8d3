#include <Qel/Mox/Node.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace {

static_assert(std::has_virtual_destructor_v<QelMox::Node>);

TEST(MoxNode, NamesItsTypeAndVersion) {
    const QelMox::Node node("part");
    EXPECT_EQ(node.GetName(), "part");
    EXPECT_EQ(node.GetTypeName(), "Node");
    EXPECT_EQ(node.GetVersion(), "0.1");
}

TEST(MoxNode, FlagIsFalse) {
    EXPECT_FALSE(QelMox::Node("part").GetFlag());
}

} // namespace
