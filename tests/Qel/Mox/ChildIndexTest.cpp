#include <Qel/Mox/ChildIndex.h>

#include "Qel/Mox/OlderGeometry.h"
#include "Qel/Support/textsWithEqualHashes.h"

#include <Qel/Adt/AdtTree.h>
#include <Qel/Mox/Geometry.h>
#include <Qel/Mox/Group.h>
#include <Qel/Mox/Node.h>
#include <Qel/Mox/Shape.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <typeinfo>
#include <vector>

namespace {

using QelMox::Geometry;
using QelMox::Group;
using QelMox::Shape;

class ChildIndex : public testing::Test {
protected:
    static constexpr unsigned int RootId = 1;

    ChildIndex() {
        owned.push_back(std::make_unique<Group>("root", QelUtil::AttributeList()));
        tree.GetCurrentNode().data = owned.back().get();
    }

    unsigned int add(unsigned int parent, std::unique_ptr<QelMox::Node> node) {
        tree.SetCurrentId(parent);
        tree.AddChild();
        tree.GetCurrentNode().data = node.get();
        owned.push_back(std::move(node));
        return tree.GetCurrentId();
    }
    unsigned int addGroup(unsigned int parent, const std::string& name) {
        return add(parent, std::make_unique<Group>(name, QelUtil::AttributeList()));
    }
    unsigned int addShape(unsigned int parent, const std::string& name) {
        return add(parent, std::make_unique<Shape>(name));
    }
    unsigned int addGeometry(unsigned int parent, const std::string& name) {
        return add(parent, std::make_unique<Geometry>(name));
    }

    std::vector<std::unique_ptr<QelMox::Node>> owned;
    QelAdt::Tree<QelMox::Node*> tree;
    QelMox::ChildIndex index{tree.GetNodes()};
};

TEST_F(ChildIndex, NothingIsBelowARootAlone) {
    EXPECT_EQ(index.Find(RootId, "root"), 0U);
    EXPECT_EQ(index.Find(RootId, "root", typeid(Group)), 0U);
}

TEST_F(ChildIndex, NothingIsBelowNodesThatAreNotThere) {
    addGroup(RootId, "a");
    addGroup(RootId, "b");
    for (const unsigned int unknown : {0U, 4U, 99U, 0xFFFFFFFFU}) {
        EXPECT_EQ(index.Find(unknown, "root"), 0U);
        EXPECT_EQ(index.Find(unknown, "b"), 0U);
        EXPECT_EQ(index.Find(unknown, "b", typeid(Group)), 0U);
    }
}

TEST_F(ChildIndex, ChildIsFoundBelowItsParentAlone) {
    const unsigned int a = addGroup(RootId, "a");
    const unsigned int b = addGroup(RootId, "b");
    const unsigned int c = addGroup(a, "c");
    EXPECT_EQ(index.Find(RootId, "a"), a);
    EXPECT_EQ(index.Find(RootId, "b"), b);
    EXPECT_EQ(index.Find(RootId, "b", typeid(Group)), b);
    EXPECT_EQ(index.Find(a, "c"), c);
    EXPECT_EQ(index.Find(RootId, "c"), 0U);
    EXPECT_EQ(index.Find(a, "b"), 0U);
    EXPECT_EQ(index.Find(b, "c"), 0U);
    EXPECT_EQ(index.Find(c, "c"), 0U);
}

TEST_F(ChildIndex, NamesAreComparedAsWholeByteStrings) {
    addGroup(RootId, "first");
    const unsigned int lower = addGroup(RootId, "a");
    const unsigned int upper = addGroup(RootId, "A");
    const unsigned int withZero = addGroup(RootId, std::string("a\0b", 3));
    const unsigned int unnamed = addGroup(RootId, "");
    EXPECT_EQ(index.Find(RootId, "a"), lower);
    EXPECT_EQ(index.Find(RootId, "A"), upper);
    EXPECT_EQ(index.Find(RootId, std::string_view("a\0b", 3)), withZero);
    EXPECT_EQ(index.Find(RootId, std::string_view("a\0", 2)), 0U);
    EXPECT_EQ(index.Find(RootId, ""), unnamed);
}

TEST_F(ChildIndex, ByNameTheOldestIsFoundAndByClassTheOldestOfTheClass) {
    for (const char* const parentName : {"with an elder sibling", "without"}) {
        const unsigned int parent = addGroup(RootId, parentName);
        if (parentName == std::string("with an elder sibling")) {
            addGroup(parent, "elder");
        }
        const unsigned int shape = addShape(parent, "a");
        const unsigned int group = addGroup(parent, "a");
        addGroup(parent, "a");
        addShape(parent, "a");
        const unsigned int geometry = addGeometry(parent, "a");
        EXPECT_EQ(index.Find(parent, "a"), shape);
        EXPECT_EQ(index.Find(parent, "a", typeid(Shape)), shape);
        EXPECT_EQ(index.Find(parent, "a", typeid(Group)), group);
        EXPECT_EQ(index.Find(parent, "a", typeid(Geometry)), geometry);
    }
}

TEST_F(ChildIndex, ClassIsComparedExactly) {
    addGroup(RootId, "elder");
    const unsigned int older = add(RootId, std::make_unique<Support::OlderGeometry>("a"));
    EXPECT_EQ(index.Find(RootId, "a", typeid(Geometry)), 0U);
    const unsigned int geometry = addGeometry(RootId, "a");
    EXPECT_EQ(index.Find(RootId, "a", typeid(Geometry)), geometry);
    EXPECT_EQ(index.Find(RootId, "a", typeid(Support::OlderGeometry)), older);
    EXPECT_EQ(index.Find(RootId, "a"), older);
}

TEST_F(ChildIndex, NamesWithEqualHashesAreToldApart) {
    const auto [first, second] = Support::textsWithEqualHashes();
    addGroup(RootId, "elder");
    const unsigned int one = addGroup(RootId, first);
    EXPECT_EQ(index.Find(RootId, second), 0U);
    EXPECT_EQ(index.Find(RootId, second, typeid(Group)), 0U);
    const unsigned int other = addGroup(RootId, second);
    EXPECT_EQ(index.Find(RootId, first), one);
    EXPECT_EQ(index.Find(RootId, second), other);
}

// A parent's id, times 0x9E3779B97F4A7C15, changes the bits of a name's hash.
TEST_F(ChildIndex, NodesBelowDifferentParentsWhoseHashesAreEqualAreToldApart) {
    const unsigned int left = addGroup(RootId, "left");
    const unsigned int right = addGroup(RootId, "right");
    ASSERT_EQ(left, 2U);
    ASSERT_EQ(right, 3U);
    const auto [name, other] = Support::textsWithEqualHashes((2 * 0x7F4A7C15U) ^ (3 * 0x7F4A7C15U));
    addGroup(left, "elder");
    addGroup(right, "elder");
    const unsigned int child = addGroup(left, name);
    EXPECT_EQ(index.Find(left, name), child);
    EXPECT_EQ(index.Find(right, other), 0U);
    EXPECT_EQ(index.Find(right, other, typeid(Group)), 0U);
}

TEST_F(ChildIndex, NodesThatWereAddedAfterASearchAreFound) {
    EXPECT_EQ(index.Find(RootId, "a"), 0U);
    const unsigned int a = addGroup(RootId, "a");
    EXPECT_EQ(index.Find(RootId, "a"), a);
    EXPECT_EQ(index.Find(RootId, "b"), 0U);
    const unsigned int b = addGroup(RootId, "b");
    const unsigned int c = addGroup(RootId, "c");
    EXPECT_EQ(index.Find(RootId, "b"), b);
    EXPECT_EQ(index.Find(RootId, "c"), c);
    addGroup(RootId, "b");
    EXPECT_EQ(index.Find(RootId, "b"), b);
}

// With an entry for each of them, this would take minutes.
TEST_F(ChildIndex, OldestOfManyTwinsIsFound) {
    addGroup(RootId, "elder");
    const unsigned int oldest = addGroup(RootId, "a");
    for (unsigned int i = 0; i < 100'000; ++i) {
        addGroup(RootId, "a");
    }
    EXPECT_EQ(index.Find(RootId, "a"), oldest);
}

TEST_F(ChildIndex, FindsWhatAWalkAlongAllNodesOfARandomTreeFinds) {
    const std::vector<std::string> names = {
        "", "a", "b", "A", std::string("a\0b", 3), "a name that needs memory of its own", "aa"};
    const std::vector<const std::type_info*> classes = {&typeid(Group), &typeid(Shape), &typeid(Geometry),
                                                        &typeid(Support::OlderGeometry)};
    std::mt19937 random(1);
    const auto below = [&](std::size_t count) { return static_cast<unsigned int>(random() % count); };
    const auto walk = [&](unsigned int parent, const std::string& name, const std::type_info* nodeClass) {
        const auto match = std::ranges::find_if(tree.GetNodes(), [&](const auto& node) {
            return node.parent == parent && node.data->GetName() == name &&
                   (nodeClass == nullptr || typeid(*node.data) == *nodeClass);
        });
        return match == tree.GetNodes().end() ? 0 : match->id;
    };
    for (int step = 0; step < 3000; ++step) {
        // Mostly below young nodes, so that the tree is deep, and some have hundreds of children.
        const unsigned int newest = tree.GetNextId() - 1;
        const unsigned int parent =
            below(2) == 0 ? RootId + below(std::min(newest, 5U)) : RootId + below(newest);
        const std::string name =
            below(3) == 0 ? "number " + std::to_string(below(500)) : names[below(names.size())];
        switch (below(8)) {
        case 0:
            addGroup(parent, name);
            break;
        case 1:
            addShape(parent, name);
            break;
        case 2:
            addGeometry(parent, name);
            break;
        case 3:
            add(parent, std::make_unique<Support::OlderGeometry>(name));
            break;
        case 4:
            ASSERT_EQ(index.Find(parent, name), walk(parent, name, nullptr)) << step;
            break;
        default:
            const std::type_info* const nodeClass = classes[below(classes.size())];
            ASSERT_EQ(index.Find(parent, name, *nodeClass), walk(parent, name, nodeClass)) << step;
        }
    }
}

} // namespace
