#include <Qel/Mox2/Extractor/NodeId.h>

#include "Qel/Mox2/OpenDatabase.h"
#include "Qel/Mox2/StateFailures.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class NodeIdExtractor : public Support::OpenDatabase {
protected:
    unsigned int find(const std::string& path, const std::string& separator = "/") {
        return Qel::Mox2::Extractor::NodeId(path, separator).extract(database);
    }
};

TEST(NodeIdExtractorState, NeedsATreeAlsoForAnEmptyPath) {
    Support::expectThatItNeedsATree(
        [](Qel::Mox2::Database& database) { Qel::Mox2::Extractor::NodeId("/a/b", "/").extract(database); });
    Support::expectThatItNeedsATree(
        [](Qel::Mox2::Database& database) { Qel::Mox2::Extractor::NodeId("", "/").extract(database); });
}

TEST_F(NodeIdExtractor, EmptyPathGivesZeroAndLeavesTheCurrentNode) {
    addRootAndShape();
    EXPECT_EQ(find(""), 0U);
    EXPECT_EQ(tree().GetCurrentId(), 3U);
}

TEST_F(NodeIdExtractor, PathGivesTheIdAndMovesToTheRoot) {
    addRootAndShape();
    EXPECT_EQ(find("/root/part"), 2U);
    EXPECT_EQ(tree().GetCurrentId(), 1U);
    EXPECT_EQ(find("|root|part|part", "|"), 3U);
    EXPECT_EQ(find("/root/other"), 0U);
}

} // namespace
