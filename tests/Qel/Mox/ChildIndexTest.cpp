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
    EXPECT_EQ(index.Find(1, "a"), 0U);
    EXPECT_EQ(index.FindLike(1, group), 0U);
}

TEST_F(ChildIndex, ChildIsFoundBelowItsParentAlone) {
    index.Add(1, 2, group);
    EXPECT_EQ(index.Find(1, "a"), 2U);
    EXPECT_EQ(index.FindLike(1, sameGroup), 2U);
    EXPECT_EQ(index.Find(2, "a"), 0U);
    EXPECT_EQ(index.FindLike(2, sameGroup), 0U);
    EXPECT_EQ(index.Find(1, "b"), 0U);
}

TEST_F(ChildIndex, ByNameTheOldestIsFoundAndByClassTheOldestOfTheClass) {
    index.Add(1, 2, shape);
    index.Add(1, 3, group);
    index.Add(1, 4, sameGroup);
    EXPECT_EQ(index.Find(1, "a"), 2U);
    EXPECT_EQ(index.FindLike(1, sameGroup), 3U);
    EXPECT_EQ(index.FindLike(1, shape), 2U);
}

TEST_F(ChildIndex, RemovedChildIsNotFound) {
    index.Add(1, 2, group);
    index.Add(1, 3, shape);
    index.Remove(1, 2, group);
    EXPECT_EQ(index.Find(1, "a"), 3U);
    EXPECT_EQ(index.FindLike(1, sameGroup), 0U);
}

TEST_F(ChildIndex, RemovingAYoungerTwinLeavesTheOlder) {
    index.Add(1, 2, group);
    index.Add(1, 3, sameGroup);
    index.Remove(1, 3, sameGroup);
    EXPECT_EQ(index.FindLike(1, group), 2U);
}

} // namespace
