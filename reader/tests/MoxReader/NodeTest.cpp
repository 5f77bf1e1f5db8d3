#include "MoxReader/Node.h"

#include "Support/ExpectError.h"
#include "Support/SampleModel.h"

using MoxReader::ErrorCode;

namespace {

std::vector<MoxReader::NodeRecord> recordsOf(const std::vector<std::uint8_t>& content) {
    auto stream = streamOf(content);
    return readNodeRecords(stream);
}

} // namespace

TEST(Node, ARecordHasSixIdsThreeTextsAndAPosition) {
    const auto records =
        recordsOf(treeStream({{11, 12, 13, 14, 15, 16, "Name", "Type", "0.9", 0x1122334455ULL}}));
    ASSERT_EQ(1u, records.size());
    EXPECT_EQ(11u, records[0].id);
    EXPECT_EQ(12u, records[0].parent);
    EXPECT_EQ(13u, records[0].previous);
    EXPECT_EQ(14u, records[0].next);
    EXPECT_EQ(15u, records[0].firstChild);
    EXPECT_EQ(16u, records[0].lastChild);
    EXPECT_EQ("Name", records[0].name);
    EXPECT_EQ("Type", records[0].typeName);
    EXPECT_EQ("0.9", records[0].version);
    EXPECT_EQ(0x1122334455u, records[0].lightPosition);
}

TEST(Node, ATreeWithoutNodesIsABadCount) {
    expectError(ErrorCode::BadCount, [] { recordsOf(Bytes().u32(0)); });
}

TEST(Node, ACountBeyondTheStreamIsBad) {
    expectError(ErrorCode::BadCount,
                [] { recordsOf(patched(treeStream(sampleRecords()), 0, Bytes().u32(100))); });
}

TEST(Node, ACountThatLeavesRecordsOverIsAnError) {
    expectError(ErrorCode::TrailingStreamBytes,
                [] { recordsOf(patched(treeStream(sampleRecords()), 0, Bytes().u32(4))); });
}

TEST(Node, ATextThatReachesPastTheStreamNamesTheRecord) {
    const auto error =
        errorOf([] { recordsOf(patched(treeStream(sampleRecords()), 28, Bytes().u32(5000))); });
    EXPECT_EQ(ErrorCode::EndOfStream, error.code());
    EXPECT_EQ("node record 0", error.place().record);
}

TEST(Node, AGroupIsFortyOneBytes) {
    auto stream = streamOf(Bytes().f32s({1, 2, 3, 4, 5, 6, 7, 8, 9, 10}).u8(1).u8(99));
    const auto group = readGroup(stream);
    EXPECT_EQ((std::array{1.0f, 2.0f, 3.0f}), group.translation);
    EXPECT_EQ((std::array{4.0f, 5.0f, 6.0f, 7.0f}), group.rotation);
    EXPECT_EQ((std::array{8.0f, 9.0f, 10.0f}), group.scale);
    EXPECT_EQ(1, group.kind);
    EXPECT_EQ(41u, stream.position());
}

TEST(Node, ANodeSetsDescriptorMayGrow) {
    auto stream = streamOf(Bytes().u32(18).u32(2).u64(40).u32(73).u8(0).u8(0).u32(15));
    const auto descriptor = readNodeSetsDescriptor(stream);
    EXPECT_EQ(2u, descriptor.setCount);
    EXPECT_EQ(40u, descriptor.heavyPosition);
    EXPECT_EQ(73u, descriptor.heavySize);
    EXPECT_EQ(22u, stream.position());
}

TEST(Node, ANodeSetsDescriptorTooSmallForItsFieldsIsBad) {
    auto stream = streamOf(Bytes().u32(15).u32(2).u64(40).u32(73));
    expectError(ErrorCode::BadRecordSize, [&] { readNodeSetsDescriptor(stream); });
}
