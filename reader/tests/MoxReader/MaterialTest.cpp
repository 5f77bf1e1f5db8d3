#include "MoxReader/Material.h"

#include "Support/ExpectError.h"
#include "Support/SampleModel.h"

using MoxReader::ErrorCode;
using MoxReader::Material;

namespace {

Bytes record(std::uint32_t size, std::string_view version) {
    return Bytes().u32(size).text(version).f32s({1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3, 4, 4, 4, 4}).f32(0.5f);
}

} // namespace

TEST(Material, AllFieldsAreRead) {
    auto stream = streamOf(materialRecord());
    const auto material = readMaterial(stream);
    EXPECT_EQ("0.3", material.version);
    EXPECT_EQ((std::array{0.1f, 0.2f, 0.3f, 0.4f}), material.diffuse);
    EXPECT_EQ((std::array{0.5f, 0.6f, 0.7f, 0.8f}), material.specular);
    EXPECT_EQ((std::array{0.9f, 1.0f, 1.1f, 1.2f}), material.emissive);
    EXPECT_EQ((std::array{1.3f, 1.4f, 1.5f, 1.6f}), material.ambient);
    EXPECT_EQ(0.25f, material.transparency);
    EXPECT_EQ(0.75f, material.shininess);
    EXPECT_EQ(1, material.flag);
    EXPECT_EQ(84u, stream.position());
}

TEST(Material, AFourthEmissiveValueOfAnyBitsIsNoError) {
    auto stream = streamOf(patched(materialRecord(), 4 + 7 + 32 + 12, {0xFF, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ((std::array{1.3f, 1.4f, 1.5f, 1.6f}), readMaterial(stream).ambient);
}

TEST(Material, TheFirstVersionEndsWithTheTransparency) {
    auto stream = streamOf(record(79, "0.1"));
    const auto material = readMaterial(stream);
    EXPECT_EQ(0.5f, material.transparency);
    EXPECT_EQ(0.0f, material.shininess);
    EXPECT_TRUE(stream.atEnd());
}

TEST(Material, TheSecondVersionHasNoFlag) {
    auto stream = streamOf(record(83, "0.2").f32(0.25f));
    const auto material = readMaterial(stream);
    EXPECT_EQ(0.25f, material.shininess);
    EXPECT_EQ(0, material.flag);
    EXPECT_TRUE(stream.atEnd());
}

TEST(Material, FieldsOfALaterVersionAreSteppedOver) {
    auto stream = streamOf(record(90, "0.4").f32(0.25f).u8(1).raw("future").raw(materialRecord()));
    EXPECT_EQ("0.4", readMaterial(stream).version);
    EXPECT_EQ("0.3", readMaterial(stream).version);
}

TEST(Material, ASizeThatEndsInsideTheFieldsIsBad) {
    auto stream = streamOf(patched(materialRecord(), 0, Bytes().u32(83)));
    expectError(ErrorCode::BadRecordSize, [&] { readMaterial(stream); });
}

TEST(Material, ASizeBeyondTheStreamIsBad) {
    auto stream = streamOf(patched(materialRecord(), 0, Bytes().u32(85)));
    expectError(ErrorCode::BadRecordSize, [&] { readMaterial(stream); });
}
