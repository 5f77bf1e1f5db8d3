#include <Qel/Mox/NodeSets.h>

#include "Qel/Mox/StreamContent.h"
#include "Support/Bytes.h"

#include <Qel/Tnf/TnFile.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using Support::Bytes;
using Support::ByteVector;

class MoxNodeSets : public testing::Test {
protected:
    ByteVector written() { return Support::streamOf(container.GetIndex(), "Heavy Data"); }

    QelTnf::TnFile container;
    QelMox::NodeSets nodeSets{"sets"};
};

TEST_F(MoxNodeSets, NamesItsTypeAndVersion) {
    EXPECT_EQ(nodeSets.GetName(), "sets");
    EXPECT_EQ(nodeSets.GetTypeName(), "NodeSets");
    EXPECT_EQ(nodeSets.GetVersion(), "0.1");
}

TEST_F(MoxNodeSets, NewSetsHaveNoPlaceInTheFile) {
    EXPECT_EQ(nodeSets.heavyPosition, 0U);
    EXPECT_EQ(nodeSets.heavySize, 0U);
    EXPECT_EQ(nodeSets.GetSetCount(), 0U);
}

TEST_F(MoxNodeSets, NoSetsWriteTwoOffsetsOfZeroAndEmptyLists) {
    nodeSets.WriteHeavy(container, "Heavy Data");
    const ByteVector expected = Bytes().u32(1).u32(0).text("").u32(1).u32(0).u32(0).u32(0);
    EXPECT_EQ(written(), expected);
    EXPECT_EQ(nodeSets.heavyPosition, 0U);
    EXPECT_EQ(nodeSets.heavySize, 28U);
}

TEST_F(MoxNodeSets, SetsThatAreInTheFileAlreadyPutNothing) {
    nodeSets.SetStored(3, 0x123456789, 77);
    nodeSets.WriteHeavy(container, "Heavy Data");
    EXPECT_EQ(container.GetIndex().GetStreamSize("Heavy Data"), 0U);
    EXPECT_EQ(nodeSets.GetSetCount(), 3U);
    EXPECT_EQ(nodeSets.heavyPosition, 0x123456789U);
    EXPECT_EQ(nodeSets.heavySize, 77U);
}

TEST_F(MoxNodeSets, SetsWriteTheirNamesAndMembersAsFiveLists) {
    nodeSets.sets = {{"ab", {{1, 10}, {2, 20}}}, {"", {}}, {"c", {{3, 30}}}};
    nodeSets.WriteHeavy(container, "Heavy Data");
    const ByteVector expected = Bytes()
                                    .u32(4)
                                    .u32(0)
                                    .u32(2)
                                    .u32(2)
                                    .u32(3)
                                    .text("abc")
                                    .u32(4)
                                    .u32(0)
                                    .u32(2)
                                    .u32(2)
                                    .u32(3)
                                    .u32(3)
                                    .u32(1)
                                    .u32(2)
                                    .u32(3)
                                    .u32(3)
                                    .u32(10)
                                    .u32(20)
                                    .u32(30);
    EXPECT_EQ(written(), expected);
    EXPECT_EQ(nodeSets.heavySize, 79U);
}

TEST_F(MoxNodeSets, PositionIsAfterWhatTheStreamHoldsAlready) {
    container.GetIndex().Put("Heavy Data", std::string("12345"));
    nodeSets.WriteHeavy(container, "Heavy Data");
    EXPECT_EQ(nodeSets.heavyPosition, 9U);
    EXPECT_EQ(nodeSets.heavySize, 28U);
}

} // namespace
