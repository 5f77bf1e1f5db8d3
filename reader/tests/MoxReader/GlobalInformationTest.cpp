#include "MoxReader/GlobalInformation.h"

#include "Support/ExpectError.h"
#include "Support/TestFile.h"

#include "MoxReader/File.h"

using MoxReader::ErrorCode;
using MoxReader::GlobalInformation;

namespace {

GlobalInformation globalOf(const std::vector<std::uint8_t>& content) {
    const MoxReader::File file(TestFile().compressed("Global Information", content).source());
    auto stream = file.stream("Global Information");
    return readGlobalInformation(stream);
}

Bytes record(std::uint32_t size) {
    return Bytes().u32(size).text("0.1").text("a").text("b").text("c").text("d").text("e").text("f").text(
        "g");
}

} // namespace

TEST(GlobalInformation, AModifierHasSevenTexts) {
    const auto global = globalOf(Bytes().u32(1).raw(record(46)).u32(0));
    ASSERT_EQ(1u, global.modifiers.size());
    EXPECT_EQ("0.1", global.modifiers[0].version);
    EXPECT_EQ("a", global.modifiers[0].sourceName);
    EXPECT_EQ("b", global.modifiers[0].sourceVersion);
    EXPECT_EQ("c", global.modifiers[0].formatVersion);
    EXPECT_EQ("d", global.modifiers[0].date);
    EXPECT_EQ("e", global.modifiers[0].computer);
    EXPECT_EQ("f", global.modifiers[0].user);
    EXPECT_EQ("g", global.modifiers[0].comment);
    EXPECT_EQ(0u, global.resultAttributeCount);
}

TEST(GlobalInformation, FieldsOfALaterVersionAreSteppedOver) {
    const auto global = globalOf(Bytes().u32(2).raw(record(52)).raw("future").raw(record(46)).u32(0));
    ASSERT_EQ(2u, global.modifiers.size());
    EXPECT_EQ("g", global.modifiers[1].comment);
}

TEST(GlobalInformation, ResultAttributesAreCountedAndNotRead) {
    EXPECT_EQ(3u, globalOf(Bytes().u32(0).u32(3).raw("of unknown form")).resultAttributeCount);
}

TEST(GlobalInformation, BytesAfterTheLastCountAreAnError) {
    expectError(ErrorCode::TrailingStreamBytes, [] { globalOf(Bytes().u32(0).u32(0).u8(0)); });
}

TEST(GlobalInformation, ARecordTooSmallForItsTextsNamesItself) {
    const auto error = errorOf([] { globalOf(Bytes().u32(2).raw(record(46)).raw(record(45)).u32(0)); });
    EXPECT_EQ(ErrorCode::BadRecordSize, error.code());
    EXPECT_EQ("modifier 1", error.place().record);
}

TEST(GlobalInformation, ACountBeyondTheStreamIsBad) {
    expectError(ErrorCode::BadCount, [] { globalOf(Bytes().u32(0x10000000).raw(record(46)).u32(0)); });
}
