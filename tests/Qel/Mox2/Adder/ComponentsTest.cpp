#include <Qel/Mox2/Adder/Components.h>

#include "Qel/Mox2/OpenDatabase.h"
#include "Qel/Mox2/RefusedAttribute.h"
#include "Qel/Mox2/StateFailures.h"
#include "Support/Thrown.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace {

using Qel::Exception::InvalidArguments;
using Qel::Exception::NotYetImplemented;
using Qel::Mox2::AttributeMap;
using Qel::Mox2::IdArray;
using Support::Thrown;
using Support::throws;
using Ids = std::vector<unsigned int>;
using Paths = std::vector<std::string>;
using PathMap = std::map<std::string, AttributeMap>;

const Thrown Relative = {3, "Relative paths not supported", "Qel/Mox2/Adder/Components",
                         "Qel::Mox2::Adder::Components"};
const Thrown OtherRoot = {20, "Not yet implemented", "Qel/Mox2/Adder/Components",
                          "Qel::Mox2::Adder::Components"};

template <typename PathsT>
Ids merge(Qel::Mox2::Database& database, const PathsT& paths, const std::string& separator = "/") {
    Qel::Mox2::Adder::Components<PathsT, IdArray> adder(paths, separator);
    adder.update(database);
    return Ids(adder.result().begin(), adder.result().end());
}

class ComponentsAdder : public Support::OpenDatabase {
protected:
    Ids add(const Paths& paths) { return merge(database, paths); }
    Ids addMap(const PathMap& paths) { return merge(database, paths); }
};

TEST(ComponentsAdderState, NeedsWriteModeIfThereIsAnyPath) {
    Support::expectThatItNeedsWriteMode([](Qel::Mox2::Database& database) { merge(database, Paths{""}); });
    Support::expectThatItNeedsWriteMode([](Qel::Mox2::Database& database) {
        merge(database, PathMap{{"", {}}});
    });
}

TEST(ComponentsAdderState, RefusedAdderHasNoResult) {
    Qel::Mox2::Database database;
    const Paths paths = {"/a"};
    const std::string separator = "/";
    Qel::Mox2::Adder::Components<Paths, IdArray> adder(paths, separator);
    EXPECT_THROW(adder.update(database), Qel::Exception::InvalidObjectState);
    EXPECT_EQ(adder.result().size(), 0);
}

TEST(ComponentsAdderState, NoPathsAreFineInAnyState) {
    Qel::Mox2::Database database;
    EXPECT_EQ(merge(database, Paths()), Ids());
    EXPECT_EQ(merge(database, PathMap()), Ids());
    database.open();
    EXPECT_EQ(merge(database, Paths()), Ids());
    Qel::Mox2::DatabasePeer::setOpenedForWriting(database, false);
    EXPECT_EQ(merge(database, Paths()), Ids());
}

TEST_F(ComponentsAdder, RootMadeByAPathIsAPlainGroup) {
    EXPECT_EQ(add({"/a/b/"}), (Ids{2}));
    EXPECT_EQ(dataOf<QelMox::Group>(1).GetName(), "a");
    EXPECT_EQ(dataOf<QelMox::Group>(1).GetGroupKind(), 0);
    EXPECT_TRUE(dataOf<QelMox::Group>(1).GetAttributes().empty());
}

TEST_F(ComponentsAdder, TreeOfThreePathsAndAgainTheSame) {
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(add({"/a/b/c", "/a/b/d", "/a/e/"}), (Ids{4, 6, 7}));
        EXPECT_EQ(tree().GetNodes().size(), 7U);
        EXPECT_EQ(tree().GetCurrentId(), 7U);
    }
    EXPECT_EQ(dataOf<QelMox::Group>(2).GetName(), "b");
    EXPECT_EQ(dataOf<QelMox::Shape>(3).GetName(), "c");
    EXPECT_EQ(dataOf<QelMox::Geometry>(4).GetName(), "c");
    EXPECT_EQ(dataOf<QelMox::Shape>(5).GetName(), "d");
    EXPECT_EQ(dataOf<QelMox::Geometry>(6).GetName(), "d");
    EXPECT_EQ(dataOf<QelMox::Group>(7).GetName(), "e");
}

TEST_F(ComponentsAdder, PathOfTheRootAloneMakesANodeOfItsNameBelowIt) {
    EXPECT_EQ(add({"/a"}), (Ids{3}));
    EXPECT_EQ(dataOf<QelMox::Shape>(2).GetName(), "a");
    EXPECT_EQ(add({"/a/"}), (Ids{4}));
    EXPECT_EQ(dataOf<QelMox::Group>(4).GetName(), "a");
    EXPECT_EQ(tree().GetReqNode(4).parent, 1U);
}

TEST_F(ComponentsAdder, WholeSeparatorDecidesStartAndEndAndEachOfItsCharactersSplits) {
    EXPECT_EQ(merge(database, Paths{"::a::b", "::a:b:", "::a::b::"}, "::"), (Ids{3, 3, 4}));
    EXPECT_EQ(dataOf<QelMox::Shape>(2).GetName(), "b");
    EXPECT_EQ(dataOf<QelMox::Group>(4).GetName(), "b");
    EXPECT_TRUE(throws<InvalidArguments>(Relative, [&] { merge(database, Paths{":a"}, "::"); }));
}

TEST_F(ComponentsAdder, EachOfTwoDifferentSeparatorCharactersSplits) {
    EXPECT_EQ(merge(database, Paths{"|:a|:b:c|d", "|:a:b|c|:e|:", "|:a||b:c:f|"}, "|:"), (Ids{5, 6, 8}));
    EXPECT_EQ(dataOf<QelMox::Group>(1).GetName(), "a");
    EXPECT_EQ(dataOf<QelMox::Group>(2).GetName(), "b");
    EXPECT_EQ(dataOf<QelMox::Group>(3).GetName(), "c");
    EXPECT_EQ(dataOf<QelMox::Shape>(4).GetName(), "d");
    EXPECT_EQ(dataOf<QelMox::Group>(6).GetName(), "e");
    EXPECT_EQ(dataOf<QelMox::Shape>(7).GetName(), "f");
    EXPECT_EQ(tree().GetNodes().size(), 8U);
    EXPECT_TRUE(throws<InvalidArguments>(Relative, [&] { merge(database, Paths{":|a"}, "|:"); }));
}

// The paths are alike but for one character, so that what the first has passed through lies one later in the second.
TEST_F(ComponentsAdder, DoubledSeparatorAtTheStartOfALaterPathCountsAsOne) {
    EXPECT_EQ(add({"/r/a/x", "//r/a/x", "/r/a/x"}), (Ids{4, 4, 4}));
    EXPECT_EQ(tree().GetNodes().size(), 4U);
}

TEST_F(ComponentsAdder, SkippedPathsLeaveTheCurrentNode) {
    add({"/a/b/"});
    EXPECT_EQ(add({"", "/"}), (Ids{0, 0}));
    EXPECT_EQ(tree().GetCurrentId(), 2U);
}

TEST_F(ComponentsAdder, UnknownCurrentNodeDoesNotMatter) {
    tree().PutCurrentId(99);
    EXPECT_EQ(add({"/a/b/"}), (Ids{2}));
}

TEST_F(ComponentsAdder, RelativePathLeavesNothingOfItself) {
    EXPECT_TRUE(throws<InvalidArguments>(Relative, [&] { add({"/a/b/", "a/c"}); }));
    EXPECT_TRUE(throws<InvalidArguments>(Relative, [&] { addMap({{"a/c", {}}}); }));
    EXPECT_EQ(tree().GetNodes().size(), 2U);
    EXPECT_EQ(tree().GetCurrentId(), 2U);
}

TEST_F(ComponentsAdder, PathBelowAnotherRootLeavesNothingOfItself) {
    EXPECT_TRUE(throws<NotYetImplemented>(OtherRoot, [&] { add({"/a/b/", "/x/c"}); }));
    EXPECT_EQ(tree().GetCurrentId(), 2U);
    EXPECT_TRUE(throws<NotYetImplemented>(OtherRoot, [&] { addMap({{"/x/c", {}}}); }));
    EXPECT_EQ(tree().GetCurrentId(), 2U);
    EXPECT_EQ(tree().GetNodes().size(), 2U);
}

TEST(ComponentsAdderOrigin, OtherRootIsRefusedByTheVisitor) {
    Qel::Mox2::Database database;
    database.open().SetRootGroup("a", {});
    EXPECT_TRUE(throws<NotYetImplemented>(
        {20, "Not yet implemented", "Qel/Mox2/Adder/Components", "Visitor::addMergeNode"},
        [&] { merge(database, Paths{"/x/c"}); }));
}

TEST_F(ComponentsAdder, AttributesOfGroupPathsAreTestedAndDropped) {
    EXPECT_EQ(addMap({{"/a/b/", {{"key", 1}}}}), (Ids{2}));
    EXPECT_TRUE(dataOf<QelMox::Group>(2).GetAttributes().empty());
    EXPECT_TRUE(throws<InvalidArguments>(Support::RefusedAttribute, [&] {
        addMap({{"/a/c/d/", {{"key", 7U}}}});
    }));
    EXPECT_EQ(tree().GetNodes().size(), 4U);
    EXPECT_EQ(tree().GetCurrentId(), 4U);
}

TEST_F(ComponentsAdder, AttributesOfShapePathsAreNotLookedAt) {
    EXPECT_EQ(addMap({{"/a/b", {{"key", 7U}}}}), (Ids{3}));
}

TEST_F(ComponentsAdder, ResultOfAMapFollowsTheSortedKeys) {
    EXPECT_EQ(addMap({{"/r/b", {}}, {"/r/a", {}}}), (Ids{3, 5}));
    EXPECT_EQ(dataOf<QelMox::Geometry>(3).GetName(), "a");
}

} // namespace
