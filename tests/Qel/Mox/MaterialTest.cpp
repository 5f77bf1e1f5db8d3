#include <Qel/Mox/Material.h>

#include "Qel/Mox/StreamContent.h"
#include "Support/Bytes.h"
#include "Support/Thrown.h"

#include <Qel/Tnf/Index.h>

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <vector>

namespace {

using Qel::Exception::InvalidArguments;
using Support::Bytes;
using Support::ByteVector;
using Support::Thrown;
using Support::throws;
using Color = QelMox::Material::Color;
using Floats = std::vector<float>;

constexpr std::uint32_t OneBits = 0x3F800000;

std::array<std::uint32_t, 4> bitsOf(const Color& color) {
    return std::bit_cast<std::array<std::uint32_t, 4>>(color);
}

using ColorBits = std::array<std::uint32_t, 4>;

Thrown invalidMaterialSizeIn(std::string_view function) {
    return {3, "invalid array size", "Qel/Mox/Material", function};
}

class MoxMaterial : public testing::Test {
protected:
    QelMox::Material material{""};
};

TEST_F(MoxMaterial, NamesItsTypeAndVersion) {
    EXPECT_EQ(material.GetTypeName(), "Material");
    EXPECT_EQ(material.GetVersion(), "0.3");
    EXPECT_EQ(material.GetRecordVersion(), "0.3");
    EXPECT_EQ(QelMox::Material("steel").GetName(), "steel");
}

TEST_F(MoxMaterial, DefaultsAreTheseBitPatterns) {
    EXPECT_EQ(bitsOf(material.GetDiffuse()), (ColorBits{0x3F4CCCCD, 0x3F4CCCCD, 0x3F4CCCCD, OneBits}));
    EXPECT_EQ(bitsOf(material.GetSpecular()), (ColorBits{0, 0, 0, OneBits}));
    EXPECT_EQ(bitsOf(material.GetEmissive()), (ColorBits{0, 0, 0, 0}));
    EXPECT_EQ(bitsOf(material.GetAmbient()), (ColorBits{0x3E23D70B, 0x3E23D70B, 0x3E23D70B, 0x3E4CCCCD}));
    EXPECT_EQ(material.GetTransparency(), 0.0F);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(material.GetShininess()), 0x3E4CCCCDU);
    EXPECT_EQ(material.GetMaterialFlag(), 1);
}

TEST_F(MoxMaterial, FourthValueOfDiffuseAndSpecularIsIgnored) {
    material.SetDiffuseColor({0.1F, 0.2F, 0.3F, 0.5F});
    material.SetSpecularColor({0.4F, 0.5F, 0.6F, 0.5F});
    EXPECT_EQ(material.GetDiffuse(), (Color{0.1F, 0.2F, 0.3F, 1}));
    EXPECT_EQ(material.GetSpecular(), (Color{0.4F, 0.5F, 0.6F, 1}));
}

TEST_F(MoxMaterial, ThreeValuesReplaceRedGreenAndBlueOfEachColor) {
    material.SetDiffuseColor({0.1F, 0.2F, 0.3F});
    material.SetSpecularColor({0.4F, 0.5F, 0.6F});
    material.SetEmissiveColor({0.7F, 0.8F, 0.9F});
    material.SetAmbientColor({1, 2, 3});
    EXPECT_EQ(material.GetDiffuse(), (Color{0.1F, 0.2F, 0.3F, 1}));
    EXPECT_EQ(material.GetSpecular(), (Color{0.4F, 0.5F, 0.6F, 1}));
    EXPECT_EQ(material.GetEmissive(), (Color{0.7F, 0.8F, 0.9F, 0}));
    EXPECT_EQ(material.GetAmbient(), (Color{1, 2, 3, 0.2F}));
}

TEST_F(MoxMaterial, ColorsOfAFileKeepAllFourValues) {
    material.SetColors({1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}, {13, 14, 15, 16});
    EXPECT_EQ(material.GetDiffuse(), (Color{1, 2, 3, 4}));
    EXPECT_EQ(material.GetSpecular(), (Color{5, 6, 7, 8}));
    EXPECT_EQ(material.GetEmissive(), (Color{9, 10, 11, 12}));
    EXPECT_EQ(material.GetAmbient(), (Color{13, 14, 15, 16}));
}

TEST_F(MoxMaterial, DiffuseAndSpecularOfOtherLengthsThrowAndChangeNothing) {
    for (const Floats& values : {Floats(), Floats(2, 9.0F), Floats(5, 9.0F)}) {
        EXPECT_TRUE(throws<InvalidArguments>(invalidMaterialSizeIn("QelMox::Material::SetDiffuseColor"),
                                             [&] { material.SetDiffuseColor(values); }));
        EXPECT_TRUE(throws<InvalidArguments>(invalidMaterialSizeIn("QelMox::Material::SetSpecularColor"),
                                             [&] { material.SetSpecularColor(values); }));
    }
    EXPECT_EQ(material.GetDiffuse(), (Color{0.8F, 0.8F, 0.8F, 1}));
    EXPECT_EQ(material.GetSpecular(), (Color{0, 0, 0, 1}));
}

TEST_F(MoxMaterial, EmissiveAndAmbientOfOtherLengthsThrowAndChangeNothing) {
    for (const Floats& values : {Floats(), Floats(2, 9.0F), Floats(4, 9.0F)}) {
        EXPECT_TRUE(throws<InvalidArguments>(invalidMaterialSizeIn("QelMox::Material::SetEmissiveColor"),
                                             [&] { material.SetEmissiveColor(values); }));
        EXPECT_TRUE(throws<InvalidArguments>(invalidMaterialSizeIn("QelMox::Material::SetAmbientColor"),
                                             [&] { material.SetAmbientColor(values); }));
    }
    EXPECT_EQ(material.GetEmissive(), (Color{0, 0, 0, 0}));
    EXPECT_EQ(bitsOf(material.GetAmbient()), (ColorBits{0x3E23D70B, 0x3E23D70B, 0x3E23D70B, 0x3E4CCCCD}));
}

TEST_F(MoxMaterial, AmbientIntensityMultipliesAllFourComponentsOfDiffuse) {
    material.SetDiffuseColor({1, 0.5F, 0});
    material.SetAmbientIntensity(0.5F);
    EXPECT_EQ(material.GetAmbient(), (Color{0.5F, 0.25F, 0, 0.5F}));
}

TEST_F(MoxMaterial, RecordOfUntouchedMaterialTakes84Bytes) {
    QelTnf::Index index;
    index.Put("Resources", material);
    const ByteVector expected = Bytes()
                                    .u32(84)
                                    .text("0.3")
                                    .bits({0x3F4CCCCD, 0x3F4CCCCD, 0x3F4CCCCD, OneBits})
                                    .bits({0, 0, 0, OneBits})
                                    .bits({0, 0, 0, 0})
                                    .bits({0x3E23D70B, 0x3E23D70B, 0x3E23D70B, 0x3E4CCCCD})
                                    .bits({0, 0x3E4CCCCD})
                                    .u8(1);
    EXPECT_EQ(expected.size(), 84U);
    EXPECT_EQ(Support::streamOf(index, "Resources"), expected);
}

TEST_F(MoxMaterial, RecordHoldsTheColorsThenTransparencyThenShininess) {
    material.SetDiffuseColor({1, 2, 4});
    material.SetSpecularColor({8, 16, 32});
    material.SetEmissiveColor({0.5F, 0.25F, 0.125F});
    material.SetAmbientColor({64, 128, 256});
    material.SetTransparency(512);
    material.SetShininess(1024);
    QelTnf::Index index;
    index.Put("Resources", material);
    const ByteVector expected = Bytes()
                                    .u32(84)
                                    .text("0.3")
                                    .bits({OneBits, 0x40000000, 0x40800000, OneBits})
                                    .bits({0x41000000, 0x41800000, 0x42000000, OneBits})
                                    .bits({0x3F000000, 0x3E800000, 0x3E000000, 0})
                                    .bits({0x42800000, 0x43000000, 0x43800000, 0x3E4CCCCD})
                                    .bits({0x44000000, 0x44800000})
                                    .u8(1);
    EXPECT_EQ(Support::streamOf(index, "Resources"), expected);
}

} // namespace
