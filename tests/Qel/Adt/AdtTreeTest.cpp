#include <Qel/Adt/AdtTree.h>

#include "Support/Thrown.h"

#include <Qel/Mox/Group.h>
#include <Qel/Mox/Node.h>
#include <Qel/Mox/NodePolicies.h>
#include <Qel/Mox/Shape.h>

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace {

using Qel::Exception::KeyNotFound;
using QelMox::Group;
using QelMox::Node;
using QelMox::NodesWithSameName;
using QelMox::Shape;
using QelMox::VirtualNodesWithSameName;
using Support::Thrown;
using Support::throws;

Thrown keyNotFoundIn(std::string_view function) {
    return {14, "Key not found", "Qel/Adt/AdtTree", function};
}

template <typename T>
std::array<unsigned int, 6> linksOf(const QelAdt::TreeNode<T>& node) {
    return {node.id, node.parent, node.previous, node.next, node.firstChild, node.lastChild};
}

using Links = std::array<unsigned int, 6>;

// Payloads without any class of nodes.
class AdtTree : public testing::Test {
protected:
    QelAdt::Tree<int> tree;
};

// Payloads as the model has them, which the tree doesn't own.
class AdtTreeOfNodes : public testing::Test {
protected:
    template <typename NodeClass>
    void setData(std::unique_ptr<NodeClass> node) {
        tree.GetCurrentNode().data = node.get();
        owned.push_back(std::move(node));
    }

    template <typename NodeClass>
    void addChild(std::unique_ptr<NodeClass> node) {
        tree.AddChild();
        setData(std::move(node));
    }

    static std::unique_ptr<Group> group(const std::string& name) {
        return std::make_unique<Group>(name, QelUtil::AttributeList());
    }

    QelAdt::Tree<Node*> tree;
    std::vector<std::unique_ptr<Node>> owned;
};

TEST(AdtTreeNode, NewOneHasNeitherAnIdNorRelatives) {
    const QelAdt::TreeNode<int> node;
    EXPECT_EQ(linksOf(node), (Links{0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(node.data, 0);
}

TEST_F(AdtTree, NewTreeHasARootWithoutLinksAndPayload) {
    EXPECT_EQ(tree.GetNodes().size(), 1U);
    EXPECT_EQ(linksOf(tree.GetCurrentNode()), (Links{1, 0, 0, 0, 0, 0}));
    EXPECT_EQ(tree.GetCurrentNode().data, 0);
    EXPECT_EQ(&tree.GetReqNode(1), &tree.GetCurrentNode());
    EXPECT_EQ(tree.GetCurrentId(), 1U);
    EXPECT_EQ(tree.GetNextId(), 2U);
}

TEST_F(AdtTreeOfNodes, PayloadOfANewRootIsNull) {
    EXPECT_EQ(tree.GetCurrentNode().data, nullptr);
}

TEST_F(AdtTree, AddChildMakesTheNewNodeCurrent) {
    tree.AddChild();
    EXPECT_EQ(tree.GetCurrentId(), 2U);
    EXPECT_EQ(tree.GetNextId(), 3U);
    EXPECT_EQ(linksOf(tree.GetReqNode(1)), (Links{1, 0, 0, 0, 2, 2}));
    EXPECT_EQ(linksOf(tree.GetCurrentNode()), (Links{2, 1, 0, 0, 0, 0}));
}

TEST_F(AdtTree, TwoChildrenOfTheRootAreLinkedToEachOther) {
    tree.AddChild();
    tree.SetCurrentId(1);
    tree.AddChild();
    EXPECT_EQ(linksOf(tree.GetReqNode(1)), (Links{1, 0, 0, 0, 2, 3}));
    EXPECT_EQ(linksOf(tree.GetReqNode(2)), (Links{2, 1, 0, 3, 0, 0}));
    EXPECT_EQ(linksOf(tree.GetReqNode(3)), (Links{3, 1, 2, 0, 0, 0}));
}

TEST_F(AdtTree, LateChildIsLinkedAfterItsSiblingsAndNotAfterTheNewestNode) {
    tree.AddChild(); // 2 below 1
    tree.AddChild(); // 3 below 2
    tree.SetCurrentId(1);
    tree.AddChild(); // 4 below 1
    tree.SetCurrentId(2);
    tree.AddChild(); // 5 below 2
    EXPECT_EQ(linksOf(tree.GetReqNode(1)), (Links{1, 0, 0, 0, 2, 4}));
    EXPECT_EQ(linksOf(tree.GetReqNode(2)), (Links{2, 1, 0, 4, 3, 5}));
    EXPECT_EQ(linksOf(tree.GetReqNode(3)), (Links{3, 2, 0, 5, 0, 0}));
    EXPECT_EQ(linksOf(tree.GetReqNode(4)), (Links{4, 1, 2, 0, 0, 0}));
    EXPECT_EQ(linksOf(tree.GetReqNode(5)), (Links{5, 2, 3, 0, 0, 0}));
}

TEST_F(AdtTree, NodesAreListedInAscendingId) {
    tree.AddChild();
    tree.AddChild();
    std::vector<unsigned int> ids;
    for (const auto& node : tree.GetNodes()) {
        ids.push_back(node.id);
    }
    EXPECT_EQ(ids, (std::vector<unsigned int>{1, 2, 3}));
}

TEST_F(AdtTree, ReferencesToPayloadsStayValidWhileNodesAreAdded) {
    int& payload = tree.GetCurrentNode().data;
    for (int i = 0; i < 1000; ++i) {
        tree.AddChild();
    }
    payload = 7;
    EXPECT_EQ(tree.GetReqNode(1).data, 7);
}

TEST_F(AdtTree, SetCurrentIdToTheNextIdOrALaterOneThrowsAndToTheLastSucceeds) {
    tree.AddChild();
    for (const unsigned int unknown : {3U, 4U, 0xFFFFFFFFU}) {
        EXPECT_TRUE(
            throws<KeyNotFound>(keyNotFoundIn("::SetCurrentId"), [&] { tree.SetCurrentId(unknown); }));
        EXPECT_EQ(tree.GetCurrentId(), 2U);
    }
    EXPECT_NO_THROW(tree.SetCurrentId(2));
    EXPECT_NO_THROW(tree.SetCurrentId(1));
    EXPECT_EQ(tree.GetCurrentId(), 1U);
}

TEST_F(AdtTree, SetCurrentIdToZeroSucceedsAndTheNextUseOfTheCursorThrows) {
    EXPECT_NO_THROW(tree.SetCurrentId(0));
    EXPECT_TRUE(throws<KeyNotFound>(keyNotFoundIn("::GetCurrentNode"), [&] { tree.GetCurrentNode(); }));
}

TEST_F(AdtTree, GetReqNodeThrowsForAnIdThatIsNotThere) {
    EXPECT_TRUE(throws<KeyNotFound>(keyNotFoundIn("::GetReqNode"), [&] { tree.GetReqNode(0); }));
    EXPECT_TRUE(throws<KeyNotFound>(keyNotFoundIn("::GetReqNode"), [&] { tree.GetReqNode(2); }));
    EXPECT_TRUE(throws<KeyNotFound>(keyNotFoundIn("::GetReqNode"), [&] { tree.GetReqNode(0xFFFFFFFF); }));
}

TEST_F(AdtTree, AddChildBelowAnUnknownCurrentNodeThrowsAndChangesNothing) {
    for (const unsigned int unknown : {0U, 2U, 0xFFFFFFFFU}) {
        tree.PutCurrentId(unknown);
        EXPECT_TRUE(throws<KeyNotFound>(keyNotFoundIn("::GetCurrentNode"), [&] { tree.AddChild(); }));
        EXPECT_EQ(tree.GetCurrentId(), unknown);
        EXPECT_EQ(tree.GetNextId(), 2U);
        EXPECT_EQ(tree.GetNodes().size(), 1U);
    }
}

// --- Searching

TEST_F(AdtTreeOfNodes, MoveToChildMakesTheMatchingChildCurrent) {
    setData(group("root"));
    addChild(group("a"));
    tree.SetCurrentId(1);
    addChild(group("b"));
    tree.SetCurrentId(1);
    tree.MoveToChild(owned.back().get(), NodesWithSameName());
    EXPECT_EQ(tree.GetCurrentId(), 3U);
}

TEST_F(AdtTreeOfNodes, ProbeThatEqualsAChildOfAnotherNodeThrowsAndLeavesTheCursor) {
    setData(group("root"));
    addChild(group("a"));
    addChild(group("b"));
    tree.SetCurrentId(1);
    const auto probe = group("b");
    EXPECT_TRUE(throws<KeyNotFound>(keyNotFoundIn("::MoveToChild"),
                                    [&] { tree.MoveToChild(probe.get(), NodesWithSameName()); }));
    EXPECT_TRUE(throws<KeyNotFound>(keyNotFoundIn("::MoveToChild"),
                                    [&] { tree.MoveToChild(probe.get(), VirtualNodesWithSameName()); }));
    EXPECT_EQ(tree.GetCurrentId(), 1U);
}

TEST_F(AdtTreeOfNodes, ChildItselfIsNoChildOfItself) {
    setData(group("root"));
    addChild(group("a"));
    const auto probe = group("a");
    EXPECT_TRUE(throws<KeyNotFound>(keyNotFoundIn("::MoveToChild"),
                                    [&] { tree.MoveToChild(probe.get(), NodesWithSameName()); }));
    EXPECT_EQ(tree.GetCurrentId(), 2U);
}

TEST_F(AdtTreeOfNodes, AmongChildrenOfOneNameTheLowestIdIsReached) {
    setData(group("root"));
    addChild(group("a"));
    tree.SetCurrentId(1);
    addChild(group("a"));
    tree.SetCurrentId(1);
    const auto probe = group("a");
    tree.MoveToChild(probe.get(), NodesWithSameName());
    EXPECT_EQ(tree.GetCurrentId(), 2U);
}

TEST_F(AdtTreeOfNodes, GroupAndShapeOfOneNameAreDifferentButNotByNameAlone) {
    setData(group("root"));
    addChild(std::make_unique<Shape>("a"));
    tree.SetCurrentId(1);
    addChild(group("a"));
    tree.SetCurrentId(1);
    const auto groupProbe = group("a");
    tree.MoveToChild(groupProbe.get(), NodesWithSameName());
    EXPECT_EQ(tree.GetCurrentId(), 3U);
    tree.SetCurrentId(1);
    Node nameProbe("a");
    tree.MoveToChild(&nameProbe, VirtualNodesWithSameName());
    EXPECT_EQ(tree.GetCurrentId(), 2U);
}

TEST_F(AdtTree, PolicyIsAskedAboutEveryNodeUpToTheMatch) {
    tree.GetCurrentNode().data = 10;
    tree.AddChild();
    tree.GetCurrentNode().data = 20;
    tree.AddChild();
    tree.GetCurrentNode().data = 30;
    tree.SetCurrentId(1);
    tree.AddChild();
    tree.GetCurrentNode().data = 40;
    tree.SetCurrentId(2);
    std::vector<int> asked;
    tree.MoveToChild(30, [&](int data, int probe) {
        asked.push_back(data);
        return data == probe;
    });
    EXPECT_EQ(tree.GetCurrentId(), 3U);
    EXPECT_EQ(asked, (std::vector<int>{10, 20, 30}));
}

} // namespace
