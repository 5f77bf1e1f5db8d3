#include "MoxReader/Attributes.h"

#include "Support/ExpectError.h"
#include "Support/TestFile.h"

using MoxReader::Attributes;
using MoxReader::ErrorCode;

namespace {

Attributes attributesOf(const std::vector<std::uint8_t>& content) {
    auto stream = streamOf(content);
    return readAttributes(stream);
}

void expectBad(const Bytes& content) {
    expectError(ErrorCode::BadAttributes, [&] { attributesOf(content); });
}

} // namespace

TEST(Attributes, EachKeyTakesTheNextValueOfItsKind) {
    const auto attributes = attributesOf(Bytes()
                                             .texts({"a", "b", "c", "d", "e"})
                                             .u8List({0, 2, 0, 3, 1})
                                             .u32List({7, 0xFFFFFFFF})
                                             .f32List({0.5f})
                                             .f64List({0.1})
                                             .texts({"text"}));
    const Attributes expected = {
        {"a", std::uint32_t{7}}, {"b", "text"}, {"c", std::uint32_t{0xFFFFFFFF}}, {"d", 0.1}, {"e", 0.5f}};
    EXPECT_EQ(expected, attributes);
}

TEST(Attributes, NoAttributesAreSixEmptyLists) {
    auto stream = streamOf(Bytes().fill(24, 0));
    EXPECT_TRUE(readAttributes(stream).empty());
    EXPECT_TRUE(stream.atEnd());
}

TEST(Attributes, RecordsFollowOneAnother) {
    const Bytes one = Bytes().texts({"k"}).u8List({0}).u32List({1}).fill(12, 0);
    auto stream = streamOf(Bytes().raw(one).noAttributes().raw(one));
    EXPECT_EQ(1u, readAttributes(stream).size());
    EXPECT_EQ(0u, readAttributes(stream).size());
    EXPECT_EQ((Attributes{{"k", std::uint32_t{1}}}), readAttributes(stream));
}

TEST(Attributes, AsManyKindsAsKeysAreNeeded) {
    expectBad(Bytes().texts({"a"}).u8List({}).fill(16, 0));
}

TEST(Attributes, AMissingValueIsBad) {
    expectBad(Bytes().texts({"a"}).u8List({0}).fill(16, 0));
}

TEST(Attributes, AValueWithoutAKeyIsBad) {
    expectBad(Bytes().fill(8, 0).u32List({1}).fill(12, 0));
}

TEST(Attributes, AnUnknownKindIsBad) {
    expectBad(Bytes().texts({"a"}).u8List({4}).fill(16, 0));
}

TEST(Attributes, AKeyThatComesTwiceIsBad) {
    expectBad(Bytes().texts({"a", "a"}).u8List({0, 0}).u32List({1, 2}).fill(12, 0));
}
