#include "MoxReader/BlockContent.h"

#include "Support/ExpectError.h"
#include "Support/TestFile.h"

#include "MoxReader/Format.h"
#include "MoxReader/RawIndex.h"

#include <utility>

using MoxReader::BlockContent;
using MoxReader::ErrorCode;
using MoxReader::errorName;

namespace {

const Bytes Content = Bytes().raw("0123456789");

BlockContent contentOf(const std::vector<std::uint8_t>& payload, unsigned flags) {
    auto source = TestFile().raw("Any", payload, flags).source();
    return readBlockContent(*source, scanIndex(*source).blocks[0]);
}

void expectDamage(ErrorCode code, const std::vector<std::uint8_t>& payload) {
    const auto content = contentOf(payload, 0x01);
    ASSERT_TRUE(content.damage.has_value());
    EXPECT_EQ(errorName(code), errorName(*content.damage));
}

std::vector<std::uint8_t> withContentLength(std::uint32_t length) {
    return Bytes().u32(length).raw(zlibStream(Content));
}

} // namespace

TEST(BlockContent, ACompressedBlockGivesItsContent) {
    const auto content = contentOf(withContentLength(10), 0x01);
    EXPECT_FALSE(content.damage.has_value());
    EXPECT_EQ(Content, content.bytes);
}

TEST(BlockContent, ABlockWithoutTheFlagIsItsContent) {
    const auto content = contentOf(Content, 0x20);
    EXPECT_FALSE(content.damage.has_value());
    EXPECT_EQ(Content, content.bytes);
}

TEST(BlockContent, TheRoomOfTheCallerHoldsTheContentIfItIsLargeEnough) {
    for (const unsigned flags : {0x00u, 0x01u}) {
        auto source = TestFile().raw("Any", flags == 0 ? Content : withContentLength(10), flags).source();
        std::vector<std::uint8_t> room(10, 0xFF);
        const auto* const place = room.data();
        const auto content = readBlockContent(*source, scanIndex(*source).blocks[0], std::move(room));
        EXPECT_EQ(Content, content.bytes);
        EXPECT_EQ(place, content.bytes.data());
        const auto larger =
            readBlockContent(*source, scanIndex(*source).blocks[0], std::vector<std::uint8_t>(9, 0xFF));
        EXPECT_EQ(Content, larger.bytes);
    }
}

TEST(BlockContent, AnEmptyContentTakesTwelveBytes) {
    const std::vector<std::uint8_t> payload =
        Bytes().u32(0).raw({0x78, 0x9C, 0x03, 0x00, 0x00, 0x00, 0x00, 0x01});
    const auto content = contentOf(payload, 0x01);
    EXPECT_FALSE(content.damage.has_value());
    EXPECT_TRUE(content.bytes.empty());
}

TEST(BlockContent, AContentOfManyChunksComesOutWhole) {
    // Pseudo-random bytes, which compress to more than one chunk of input.
    std::vector<std::uint8_t> large(300000);
    std::uint32_t state = 1;
    for (auto& byte : large) {
        state = state * 1664525u + 1013904223u;
        byte = static_cast<std::uint8_t>(state >> 24);
    }
    const auto content = contentOf(Bytes().u32(300000).raw(zlibStream(large)), 0x01);
    EXPECT_FALSE(content.damage.has_value());
    EXPECT_EQ(large, content.bytes);
}

TEST(BlockContent, AMarkedBlockWithoutBytesHasLostItsContent) {
    expectDamage(ErrorCode::ContentLost, {});
}

TEST(BlockContent, AMarkedBlockOfThreeBytesHasNoContentLength) {
    expectDamage(ErrorCode::ContentLengthMissing, {1, 2, 3});
}

TEST(BlockContent, AContentLengthBeyondAllExpansionIsRefusedBeforeAnythingIsAllocated) {
    expectDamage(ErrorCode::ContentLengthImplausible, withContentLength(0xFFFFFFFF));
}

TEST(BlockContent, DamagedCompressedBytesAreTold) {
    expectDamage(ErrorCode::ZlibDamaged, patched(withContentLength(10), 4, {0xFF}));
}

TEST(BlockContent, AStreamThatWantsADictionaryIsDamaged) {
    expectDamage(ErrorCode::ZlibDamaged, Bytes().u32(1).raw({0x78, 0xBB, 0, 0, 0, 1, 0, 0}));
}

TEST(BlockContent, ABlockThatEndsInsideItsStreamGivesWhatItHolds) {
    auto payload = withContentLength(10);
    payload.pop_back();
    const auto content = contentOf(payload, 0x01);
    EXPECT_EQ(ErrorCode::ZlibIncomplete, content.damage);
    EXPECT_EQ(Content, content.bytes);
}

TEST(BlockContent, LessContentThanStatedIsTooShort) {
    const auto content = contentOf(withContentLength(11), 0x01);
    EXPECT_EQ(ErrorCode::ContentTooShort, content.damage);
    EXPECT_EQ(Content, content.bytes);
}

TEST(BlockContent, MoreContentThanStatedIsTooLong) {
    expectDamage(ErrorCode::ContentTooLong, withContentLength(9));
    expectDamage(ErrorCode::ContentTooLong, withContentLength(0));
}

TEST(BlockContent, AWrongChecksumIsTold) {
    const auto payload = withContentLength(10);
    expectDamage(ErrorCode::ChecksumMismatch, patched(payload, payload.size() - 1, {0x00}));
}

TEST(BlockContent, BytesAfterTheStreamAreReported) {
    const auto content = contentOf(Bytes().raw(withContentLength(10)).u8(0), 0x01);
    EXPECT_EQ(ErrorCode::TrailingBytes, content.damage);
    EXPECT_EQ(Content, content.bytes);
}

TEST(BlockContent, ABlockPastTheEndOfTheFileIsTold) {
    for (const unsigned flags : {0x00u, 0x01u}) {
        auto bytes = TestFile().raw("Any", withContentLength(10), flags).bytes();
        bytes.pop_back();
        const auto source = memory(bytes);
        const auto content = readBlockContent(*source, scanIndex(*source).blocks[0]);
        EXPECT_EQ(ErrorCode::BlockBeyondFile, content.damage);
    }
}

TEST(BlockContent, AMarkedRecordOfThreeBytesHasNoContentLengthWhateverItSays) {
    auto source = TestFile().raw("Any", Content, 0x01).source();
    auto block = scanIndex(*source).blocks[0];
    block.length = 3;
    block.contentLength = 10;
    EXPECT_EQ(ErrorCode::ContentLengthMissing, findLengthDamage(block, source->size()));
}

TEST(BlockContent, AnIndexBlockHasItsLengthAsContentLengthEvenIfItIsMarkedCompressed) {
    auto source = TestFile().raw("Any", Content, 0x01).source();
    auto block = scanIndex(*source).blocks[0];
    block.name = MoxReader::Format::IndexBlockName;
    EXPECT_EQ(10u, readContentLength(*source, block));
}
