#include <Qel/Mox/ChildIndex.h>

#include <Qel/Mox/Group.h>
#include <Qel/Mox/Node.h>
#include <Qel/Mox/Shape.h>

#include <gtest/gtest.h>

namespace {

class ChildIndex : public testing::Test {
protected:
    const QelMox::Group group{"a", {}};
    const QelMox::Group sameGroup{"a", {}};
    const QelMox::Shape shape{"a"};
    QelMox::ChildIndex index;
};

TEST_F(ChildIndex, EmptyIndexFindsNothing) {
    EXPECT_EQ(index.find(1, "a"), 0U);
    EXPECT_EQ(index.findLike(1, group), 0U);
}

TEST_F(ChildIndex, ChildIsFoundBelowItsParentAlone) {
    index.add(1, 2, group);
    EXPECT_EQ(index.find(1, "a"), 2U);
    EXPECT_EQ(index.findLike(1, sameGroup), 2U);
    EXPECT_EQ(index.find(2, "a"), 0U);
    EXPECT_EQ(index.findLike(2, sameGroup), 0U);
    EXPECT_EQ(index.find(1, "b"), 0U);
}

TEST_F(ChildIndex, ByNameTheOldestIsFoundAndByClassTheOldestOfTheClass) {
    index.add(1, 2, shape);
    index.add(1, 3, group);
    index.add(1, 4, sameGroup);
    EXPECT_EQ(index.find(1, "a"), 2U);
    EXPECT_EQ(index.findLike(1, sameGroup), 3U);
    EXPECT_EQ(index.findLike(1, shape), 2U);
}

TEST_F(ChildIndex, RemovedChildIsNotFound) {
    index.add(1, 2, group);
    index.add(1, 3, shape);
    index.remove(1, 2, group);
    EXPECT_EQ(index.find(1, "a"), 3U);
    EXPECT_EQ(index.findLike(1, sameGroup), 0U);
}

TEST_F(ChildIndex, RemovingAYoungerTwinLeavesTheOlder) {
    index.add(1, 2, group);
    index.add(1, 3, sameGroup);
    index.remove(1, 3, sameGroup);
    EXPECT_EQ(index.findLike(1, group), 2U);
}

} // namespace
