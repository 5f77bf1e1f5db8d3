#include "MoxReader/StreamReader.h"

#include "Support/ExpectError.h"
#include "Support/TestFile.h"

#include "MoxReader/File.h"
#include "MoxReader/Material.h"

using MoxReader::ErrorCode;
using MoxReader::StreamReader;

namespace {

/// "abc", "", "defg" and "hij" in blocks of one name, with a block of another name between them.
StreamReader letters() {
    TestFile file;
    file.compressed("S", Bytes().raw("abc")).compressed("S", Bytes()).compressed("T", Bytes().raw("--"));
    file.plain("S", Bytes().raw("defg")).compressed("S", Bytes().raw("hij"));
    return MoxReader::File(file.source()).stream("S");
}

} // namespace

TEST(StreamReader, JoinsTheBlocksOfItsName) {
    auto stream = letters();
    EXPECT_EQ(10u, stream.size());
    EXPECT_EQ(4u, stream.blocks().size());
    EXPECT_EQ(3u, stream.blockStart(2));
    EXPECT_EQ(Bytes().raw("abcdefghij"), stream.readBytes(10));
    EXPECT_TRUE(stream.atEnd());
}

TEST(StreamReader, ReadsAnyRangeForwardsAndBackwards) {
    auto stream = letters();
    stream.seek(6);
    EXPECT_EQ(Bytes().raw("gh"), stream.readBytes(2));
    stream.seek(2);
    EXPECT_EQ(Bytes().raw("cd"), stream.readBytes(2));
    EXPECT_EQ(4u, stream.position());
    stream.skip(5);
    EXPECT_EQ(Bytes().raw("j"), stream.readBytes(1));
}

TEST(StreamReader, ReadingPastTheEndNamesStreamAndPosition) {
    auto stream = letters();
    stream.seek(8);
    const auto error = errorOf([&] { stream.readBytes(3); });
    EXPECT_EQ(ErrorCode::EndOfStream, error.code());
    EXPECT_EQ("S", error.place().name);
    EXPECT_EQ(8u, error.place().streamOffset);
    expectError(ErrorCode::EndOfStream, [&] { stream.seek(11); });
    expectError(ErrorCode::EndOfStream, [&] { stream.skip(3); });
    EXPECT_NO_THROW(stream.seek(10));
}

TEST(StreamReader, DecodesEachTypeOfValue) {
    auto stream = streamOf(Bytes()
                               .raw({0xFE})
                               .raw({0x01, 0x02, 0x03, 0x04})
                               .raw({0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08})
                               .raw({0x00, 0x00, 0xC0, 0x3F})
                               .raw({0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x02, 0x40})
                               .raw({0x01, 0x00})
                               .raw({0x02, 0x00, 0x00, 0x00, 'o', 'k'}));
    EXPECT_EQ(0xFE, stream.readNumber<std::uint8_t>());
    EXPECT_EQ(0x04030201u, stream.readNumber<std::uint32_t>());
    EXPECT_EQ(0x0807060504030201u, stream.readNumber<std::uint64_t>());
    EXPECT_EQ(1.5f, stream.readNumber<float>());
    EXPECT_EQ(2.25, stream.readNumber<double>());
    EXPECT_TRUE(stream.readBool());
    EXPECT_FALSE(stream.readBool());
    EXPECT_EQ("ok", stream.readString());
}

TEST(StreamReader, DecodesListsOfValues) {
    auto stream =
        streamOf(Bytes().u8List({1, 2}).u32List({3}).f32List({0.5f, -2}).f64List({}).texts({"ab", ""}));
    EXPECT_EQ((std::vector<std::uint8_t>{1, 2}), stream.readNumbers<std::uint8_t>());
    EXPECT_EQ((std::vector<std::uint32_t>{3}), stream.readNumbers<std::uint32_t>());
    EXPECT_EQ((std::vector<float>{0.5f, -2}), stream.readNumbers<float>());
    EXPECT_TRUE(stream.readNumbers<double>().empty());
    EXPECT_EQ((std::vector<std::string>{"ab", ""}), stream.readStrings());
}

TEST(StreamReader, AValueMayLieAcrossTwoBlocks) {
    TestFile file;
    file.compressed("S", {0x01, 0x02}).compressed("S", {0x03, 0x04});
    EXPECT_EQ(0x04030201u, MoxReader::File(file.source()).stream("S").readNumber<std::uint32_t>());
}

TEST(StreamReader, BytesOfOneBlockAreViewedWithoutACopy) {
    auto stream = letters();
    std::vector<std::uint8_t> room;
    stream.seek(4);
    const auto view = stream.view(3, room);
    EXPECT_EQ(Bytes().raw("efg"), std::vector<std::uint8_t>(view.begin(), view.end()));
    EXPECT_EQ(7u, stream.position());
    EXPECT_TRUE(room.empty());
    EXPECT_TRUE(stream.view(0, room).empty());
}

TEST(StreamReader, BytesAcrossBlocksAreViewedInTheCallersRoom) {
    auto stream = letters();
    std::vector<std::uint8_t> room;
    stream.seek(2);
    const auto view = stream.view(6, room);
    EXPECT_EQ(Bytes().raw("cdefgh"), room);
    EXPECT_EQ(room.data(), view.data());
    EXPECT_EQ(6u, view.size());
    EXPECT_EQ(8u, stream.position());
    expectError(ErrorCode::EndOfStream, [&] { stream.view(3, room); });
}

TEST(StreamReader, ABlockIsKnownSoundOnceItHasBeenRead) {
    TestFile file;
    file.compressed("S", Bytes().raw("abc"));
    file.raw("S", Bytes().u32(3).raw({0xFF, 0xFF, 0xFF, 0xFF}), 0x01);
    auto stream = MoxReader::File(file.source()).stream("S");
    EXPECT_FALSE(stream.isKnownSound(0));
    stream.readBytes(1);
    EXPECT_TRUE(stream.isKnownSound(0));
    stream.seek(3);
    expectError(ErrorCode::ZlibDamaged, [&] { stream.readBytes(1); });
    EXPECT_FALSE(stream.isKnownSound(1));
}

TEST(StreamReader, ATruthValueOfTwoIsABadValue) {
    auto stream = streamOf({1, 2});
    EXPECT_TRUE(stream.readBool());
    const auto error = errorOf([&] { stream.readBool(); });
    EXPECT_EQ(ErrorCode::BadValue, error.code());
    EXPECT_EQ(1u, error.place().streamOffset);
}

TEST(StreamReader, ACountThatTheStreamCannotHoldIsRefusedBeforeAnythingIsAllocated) {
    expectError(ErrorCode::BadCount, [] { streamOf(Bytes().u32(0xFFFFFFFF)).readNumbers<double>(); });
    expectError(ErrorCode::BadCount, [] { streamOf(Bytes().u32(2).text("")).readStrings(); });
    expectError(ErrorCode::EndOfStream, [] { streamOf(Bytes().u32(0xFFFFFFFF)).readString(); });
}

TEST(StreamReader, ADamagedBlockIsNamedWhenItIsRead) {
    TestFile file;
    file.compressed("S", Bytes().raw("abc"));
    file.raw("S", Bytes().u32(3).raw({0xFF, 0xFF, 0xFF, 0xFF}), 0x01);
    auto stream = MoxReader::File(file.source()).stream("S");
    EXPECT_EQ(6u, stream.size());
    EXPECT_EQ(Bytes().raw("abc"), stream.readBytes(3));
    const auto error = errorOf([&] { stream.readBytes(1); });
    EXPECT_EQ(ErrorCode::ZlibDamaged, error.code());
    EXPECT_EQ(1u, error.place().blockId);
    EXPECT_EQ("S", error.place().name);
}

TEST(StreamReader, TheStreamEndsBeforeABlockWhoseContentIsLost) {
    TestFile file;
    file.compressed("S", Bytes().raw("abc")).raw("S", {}, 0x01).compressed("S", Bytes().raw("def"));
    auto stream = MoxReader::File(file.source()).stream("S");
    EXPECT_EQ(3u, stream.size());
    EXPECT_EQ(ErrorCode::ContentLost, stream.damage()->code());
    EXPECT_EQ(Bytes().raw("abc"), stream.readBytes(3));
    expectError(ErrorCode::ContentLost, [&] { stream.readNumber<std::uint8_t>(); });
    expectError(ErrorCode::ContentLost, [&] { stream.seek(4); });
}

TEST(StreamReader, ACountThatReachesIntoALostBlockIsItsLossAndNoBadCount) {
    TestFile file;
    file.compressed("S", Bytes().u32(2).u32(7)).raw("S", {}, 0x01);
    auto stream = MoxReader::File(file.source()).stream("S");
    expectError(ErrorCode::ContentLost, [&] { stream.readNumbers<std::uint32_t>(); });
}

TEST(StreamReader, ARecordThatReachesIntoALostBlockIsItsLossAndNoBadRecordSize) {
    TestFile file;
    file.compressed("S", Bytes().u32(100).text("0.3")).raw("S", {}, 0x01);
    auto stream = MoxReader::File(file.source()).stream("S");
    expectError(ErrorCode::ContentLost, [&] { MoxReader::readMaterial(stream); });
}
