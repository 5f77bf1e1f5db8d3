#include "MoxReader/File.h"

#include "Support/ExpectError.h"
#include "Support/TestFile.h"

using MoxReader::ErrorCode;
using MoxReader::File;

TEST(File, ListsTheNamesOfItsStreamsInOrderOfTheirFirstBlocks) {
    TestFile bytes;
    bytes.plain("Heavy Data", {1}).plain("Mox Tree", {2}).plain("Heavy Data", {3});
    const File file(bytes.source());
    EXPECT_EQ((std::vector<std::string>{"Heavy Data", "Mox Tree"}), file.streamNames());
    EXPECT_EQ("1.3", file.version());
    EXPECT_TRUE(file.hasStream("Mox Tree"));
    EXPECT_FALSE(file.hasStream("Resources"));
}

TEST(File, AStreamGoesOnAfterAnIndexBlock) {
    TestFile bytes;
    for (unsigned i = 0; i < 21; ++i) {
        bytes.compressed("S", {static_cast<std::uint8_t>(i)});
    }
    auto stream = File(bytes.source()).stream("S");
    EXPECT_EQ(21u, stream.blocks().size());
    EXPECT_EQ(20u, stream.blocks()[19].id);
    stream.seek(18);
    EXPECT_EQ((std::vector<std::uint8_t>{18, 19, 20}), stream.readBytes(3));
}

TEST(File, AStreamWithoutBlocksIsEmpty) {
    const File file(TestFile().plain("Mox Tree", {2}).source());
    EXPECT_EQ(0u, file.stream("Resources").size());
    EXPECT_EQ("Resources", file.stream("Resources").name());
}

TEST(File, ReadsSingleBlocks) {
    const File file(TestFile().compressed("Mox Tree", {5, 6}).source());
    EXPECT_EQ((std::vector<std::uint8_t>{5, 6}), file.readBlock(0));
    EXPECT_TRUE(file.readBlock(1).empty());
    expectError(ErrorCode::NoSuchBlock, [&] { file.readBlock(20); });
}

TEST(File, ADamagedBlockIsAnErrorOfReadBlock) {
    const File file(TestFile().raw("Mox Tree", {1, 2}, 0x01).source());
    expectError(ErrorCode::ContentLengthMissing, [&] { file.readBlock(0); });
}

TEST(File, DamageOfTheIndexIsAnErrorOfOpening) {
    const auto bytes = TestFile().plain("Mox Tree", {2}).bytes();
    expectError(ErrorCode::BadSignature, [&] { File file(memory(patched(bytes, 3, {0}))); });
    expectError(ErrorCode::UnsupportedFileVersion, [&] { File file(memory(patched(bytes, 10, {'4'}))); });
    expectError(ErrorCode::NotFinished, [&] { File file(memory(patched(bytes, 12, {0, 0, 0, 0}))); });
}

TEST(File, ADamagedIndexCanBeTakenAsItIs) {
    const auto source = memory(patched(TestFile().compressed("Mox Tree", {2}).bytes(), 3, {0}));
    const File file(source, scanIndex(*source));
    EXPECT_EQ((std::vector<std::uint8_t>{2}), file.readBlock(0));
}
