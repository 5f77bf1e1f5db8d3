#include "MoxReader/RawIndex.h"

#include "Support/ExpectError.h"
#include "Support/TestFile.h"

using MoxReader::ErrorCode;
using MoxReader::errorName;
using MoxReader::RawIndex;
using MoxReader::scanIndex;

namespace {

RawIndex scan(std::vector<std::uint8_t> bytes) {
    return scanIndex(*memory(std::move(bytes)));
}

TestFile manyBlocks(std::size_t count) {
    TestFile file;
    for (std::size_t i = 0; i < count; ++i) {
        file.plain("Heavy Data", {static_cast<std::uint8_t>(i)});
    }
    return file;
}

std::size_t recordAt(std::size_t row) {
    return 20 + row * 139;
}

/// Expects a scan whose first damage has this code and this file offset.
void expectDamage(ErrorCode code, std::uint64_t offset, const RawIndex& index) {
    ASSERT_FALSE(index.damage.empty());
    EXPECT_EQ(errorName(code), errorName(index.damage.front().code()));
    EXPECT_EQ(offset, index.damage.front().place().fileOffset);
}

} // namespace

TEST(RawIndex, TwoBlocksLieOneAfterTheOther) {
    TestFile file;
    file.raw("Mox Tree", Bytes().u32(1000).fill(296, 0xAA), 0x01);
    file.raw("Light Data", Bytes().u32(500).fill(200, 0xBB), 0x01);
    const auto index = scan(file.bytes());
    EXPECT_TRUE(index.damage.empty());
    EXPECT_EQ("1.3", index.version);
    EXPECT_EQ(2784u, index.headLength);
    ASSERT_EQ(20u, index.blocks.size());
    EXPECT_EQ("Mox Tree", index.blocks[0].name);
    EXPECT_EQ(1, index.blocks[0].number);
    EXPECT_EQ(300u, index.blocks[0].length);
    EXPECT_EQ(2800u, index.blocks[0].position);
    EXPECT_EQ(1000u, index.blocks[0].contentLength);
    EXPECT_EQ(0x01, index.blocks[0].flags);
    EXPECT_EQ("Light Data", index.blocks[1].name);
    EXPECT_EQ(204u, index.blocks[1].length);
    EXPECT_EQ(3100u, index.blocks[1].position);
    EXPECT_EQ(500u, index.blocks[1].contentLength);
    EXPECT_TRUE(index.blocks[2].isEmptyEntry());
    EXPECT_EQ(3304u, index.end);
    EXPECT_EQ(3304u, index.fileSize);
}

TEST(RawIndex, ARecordKeepsAllItsFields) {
    auto bytes = TestFile().raw("Heavy Data", Bytes().raw("payload"), 0x20).bytes();
    bytes = patched(bytes, recordAt(0) + 138, {9});
    const auto record = scan(bytes).blocks[0];
    EXPECT_EQ(20u, record.recordPosition);
    EXPECT_EQ(128u, record.nameLength);
    EXPECT_EQ('H', record.rawName[0]);
    EXPECT_EQ(0, record.rawName[10]);
    EXPECT_EQ(9, record.reserved);
    EXPECT_TRUE(record.isFreezable());
    EXPECT_FALSE(record.isCompressed());
    EXPECT_EQ(7u, record.contentLength);
}

TEST(RawIndex, ANameThatFillsItsFieldHasNoTerminator) {
    const auto index = scan(TestFile().plain(std::string(130, 'n'), {1}).bytes());
    EXPECT_EQ(std::string(128, 'n'), index.blocks[0].name);
}

TEST(RawIndex, WithNineteenBlocksTheChainEndsAtTheHeadIndex) {
    const auto index = scan(manyBlocks(19).bytes());
    EXPECT_TRUE(index.damage.empty());
    EXPECT_EQ(1u, index.tables.size());
    EXPECT_EQ(20u, index.blocks.size());
    EXPECT_TRUE(index.blocks[19].isEmptyEntry());
}

TEST(RawIndex, TheTwentiethBlockStandsAfterAnIndexBlockAtId19) {
    const auto index = scan(manyBlocks(20).bytes());
    EXPECT_TRUE(index.damage.empty());
    ASSERT_EQ(2u, index.tables.size());
    EXPECT_EQ(19u, index.tables[1].blockId);
    EXPECT_EQ(20u, index.tables[1].firstId);
    EXPECT_EQ(200u, index.tables[1].count);
    EXPECT_EQ(2819u, index.tables[1].position);
    ASSERT_EQ(220u, index.blocks.size());
    EXPECT_TRUE(index.blocks[19].isIndexBlock());
    EXPECT_EQ(27804u, index.blocks[19].length);
    EXPECT_EQ(30623u, index.blocks[20].position);
    EXPECT_EQ("Heavy Data", index.blocks[20].name);
    EXPECT_TRUE(index.blocks[21].isEmptyEntry());
}

TEST(RawIndex, TwoIndexBlocksChainFourHundredAndTwentyRecords) {
    const auto index = scan(manyBlocks(219).bytes());
    EXPECT_TRUE(index.damage.empty());
    ASSERT_EQ(3u, index.tables.size());
    EXPECT_EQ(219u, index.tables[2].blockId);
    ASSERT_EQ(420u, index.blocks.size());
    EXPECT_EQ("Heavy Data", index.blocks[220].name);
    EXPECT_EQ(0, index.blocks[255].number);
    EXPECT_EQ(1, index.blocks[256].number);
    EXPECT_EQ(2800u + 19 + 27804 + 199 + 27804, index.blocks[220].position);
}

TEST(RawIndex, AFileShorterThanItsHeaderIsTruncated) {
    expectDamage(ErrorCode::Truncated, 0, scan({}));
    expectDamage(ErrorCode::Truncated, 0, scan({0x89, 0x54}));
    expectDamage(ErrorCode::Truncated, 8, scan({0x89, 0x54, 0x4E, 0x46, 0x0D, 0x0A, 0x1A, 0x0A, '1', '.'}));
}

TEST(RawIndex, AFileWithoutItsHeadLengthWasNotFinished) {
    auto bytes = manyBlocks(1).bytes();
    expectDamage(ErrorCode::NotFinished, 12, scan(patched(bytes, 12, {0, 0, 0, 0})));
    bytes.resize(12);
    expectDamage(ErrorCode::NotFinished, 12, scan(bytes));
}

TEST(RawIndex, AWrongSignatureIsNotedAndTheIndexIsReadNevertheless) {
    const auto index = scan(patched(manyBlocks(1).bytes(), 0, {0x88}));
    expectDamage(ErrorCode::BadSignature, 0, index);
    EXPECT_EQ(20u, index.blocks.size());
}

TEST(RawIndex, AnUnknownVersionIsNotedAndTheIndexIsReadNevertheless) {
    const auto index = scan(patched(manyBlocks(1).bytes(), 8, {'2'}));
    expectDamage(ErrorCode::UnsupportedFileVersion, 8, index);
    EXPECT_EQ("2.3", index.version);
    EXPECT_EQ(20u, index.blocks.size());
}

TEST(RawIndex, AWrongHeadLengthIsABadTable) {
    expectDamage(ErrorCode::BadIndexTable, 12, scan(patched(manyBlocks(1).bytes(), 12, Bytes().u32(2785))));
}

TEST(RawIndex, AWrongRecordCountIsABadTable) {
    expectDamage(ErrorCode::BadIndexTable, 16,
                 scan(patched(manyBlocks(1).bytes(), 16, Bytes().u32(0xFFFFFFFF))));
    expectDamage(ErrorCode::BadIndexTable, 2819,
                 scan(patched(manyBlocks(20).bytes(), 2819, Bytes().u32(199))));
}

TEST(RawIndex, AFileThatEndsInsideATableIsTruncated) {
    auto bytes = manyBlocks(20).bytes();
    bytes.resize(2819 + 27803);
    const auto index = scan(bytes);
    expectDamage(ErrorCode::Truncated, 2819, index);
    EXPECT_EQ(20u, index.blocks.size());
}

TEST(RawIndex, AWrongNameLengthIsABadRecord) {
    const auto index = scan(patched(manyBlocks(3).bytes(), recordAt(2) + 1, Bytes().u32(127)));
    expectDamage(ErrorCode::BadIndexRecord, recordAt(2), index);
    EXPECT_EQ(2u, index.damage.front().place().blockId);
}

TEST(RawIndex, EachRecordWithAWrongNameLengthIsListed) {
    auto bytes = patched(manyBlocks(3).bytes(), recordAt(0) + 1, Bytes().u32(129));
    bytes = patched(bytes, recordAt(2) + 1, Bytes().u32(0));
    const auto index = scan(bytes);
    ASSERT_EQ(2u, index.damage.size());
    expectDamage(ErrorCode::BadIndexRecord, recordAt(0), index);
    EXPECT_EQ(errorName(ErrorCode::BadIndexRecord), errorName(index.damage[1].code()));
    EXPECT_EQ(recordAt(2), index.damage[1].place().fileOffset);
}

TEST(RawIndex, AnIndexBlockThatIsNotTheLastOfItsTableIsABadTable) {
    const auto name = Bytes().u8(0x0B).raw("Index Block ");
    expectDamage(ErrorCode::BadIndexTable, recordAt(4),
                 scan(patched(manyBlocks(19).bytes(), recordAt(4) + 5, name)));
}

TEST(RawIndex, AnIndexBlockOfAnotherLengthIsABadTable) {
    const auto bytes = patched(manyBlocks(20).bytes(), recordAt(19) + 133, Bytes().u32(0));
    expectDamage(ErrorCode::BadIndexTable, recordAt(19), scan(bytes));
}

TEST(RawIndex, ABlockPastTheEndOfTheFileIsListedWithoutItsContentLength) {
    auto bytes = TestFile().compressed("Mox Tree", {1, 2, 3}).bytes();
    bytes.resize(2803);
    const auto index = scan(bytes);
    EXPECT_TRUE(index.damage.empty());
    EXPECT_EQ("Mox Tree", index.blocks[0].name);
    EXPECT_FALSE(index.blocks[0].contentLength.has_value());
}
