#include "Qel/Mox/StreamContent.h"
#include "Qel/Support/BlockSizeGuard.h"
#include "Qel/Support/Blocks.h"
#include "Support/Bytes.h"

#include <Qel/Mox/Material.h>
#include <Qel/Mox/ModifierInfo.h>
#include <Qel/Mox/ResultAttributes.h>
#include <Qel/Mox/VariableType.h>
#include <Qel/Tnf/BlockStream.h>
#include <Qel/Tnf/Index.h>

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using QelMox::ModifierInfo;
using Support::Bytes;
using Support::ByteVector;

class Records : public testing::Test {
protected:
    template <typename T>
    ByteVector written(const T& value) {
        index.Put("name", value);
        return Support::streamOf(index, "name");
    }

    QelTnf::Index index;
};

/// A material that is written in another version of its record.
class VersionedMaterial : public QelMox::Material {
public:
    explicit VersionedMaterial(std::string recordVersion)
        : Material(""), version_(std::move(recordVersion)) {}

    std::string GetRecordVersion() const override { return version_; }

private:
    const std::string version_;
};

// The colours and the transparency of a new material, as far as the first version has them.
Bytes firstFields() {
    constexpr std::uint32_t one = 0x3F800000;
    Bytes fields;
    fields.bits({0x3F4CCCCD, 0x3F4CCCCD, 0x3F4CCCCD, one, 0, 0, 0, one, 0, 0, 0, 0});
    fields.bits({0x3E23D70B, 0x3E23D70B, 0x3E23D70B, 0x3E4CCCCD, 0});
    return fields;
}

TEST_F(Records, VariableTypeTakesFourBytes) {
    EXPECT_EQ(written(QelMox::VariableType::FourthSixB), (ByteVector{28, 0, 0, 0}));
}

TEST_F(Records, ModifierInfoIsItsSizeItsVersionAndSevenTexts) {
    const ModifierInfo info{.CollectHostInfo = 1, // Has no place in the record.
                            .SourceName = "a",
                            .SourceVersion = "bc",
                            .FormatVersion = "1.3",
                            .Date = "d",
                            .Computer = "e",
                            .User = "f",
                            .Comment = "g"};
    // 4 for the size, 7 for the version, 7 lengths of 4 and 10 characters.
    const ByteVector expected = Bytes()
                                    .u32(1)
                                    .u32(49)
                                    .text("0.1")
                                    .text("a")
                                    .text("bc")
                                    .text("1.3")
                                    .text("d")
                                    .text("e")
                                    .text("f")
                                    .text("g");
    EXPECT_EQ(written(std::vector<ModifierInfo>{info}), expected);
}

TEST_F(Records, ModifierInfosStandAfterTheirCount) {
    const ByteVector expected = Bytes().u32(2).u32(39).text("0.1").zeros(28).u32(39).text("0.1").zeros(28);
    EXPECT_EQ(written(std::vector<ModifierInfo>(2)), expected);
}

TEST_F(Records, MaterialOfTheFirstVersionEndsWithItsTransparency) {
    const ByteVector expected = Bytes().u32(79).text("0.1").append(firstFields());
    EXPECT_EQ(written<QelMox::Material>(VersionedMaterial("0.1")), expected);
}

TEST_F(Records, MaterialOfTheSecondVersionEndsWithItsShininess) {
    const ByteVector expected = Bytes().u32(83).text("0.2").append(firstFields()).u32(0x3E4CCCCD);
    EXPECT_EQ(written<QelMox::Material>(VersionedMaterial("0.2")), expected);
}

TEST_F(Records, MaterialOfEachLaterVersionEndsWithItsFlag) {
    for (const std::string version : {"0.3", "0.4", "0.5", "0.6", "0.7"}) {
        index.Put(version, static_cast<const QelMox::Material&>(VersionedMaterial(version)));
        const ByteVector expected = Bytes().u32(84).text(version).append(firstFields()).u32(0x3E4CCCCD).u8(1);
        EXPECT_EQ(Support::streamOf(index, version), expected) << version;
    }
}

TEST_F(Records, MaterialOfAVersionThatIsNoRungHasTheFieldsOfAllRungs) {
    const ByteVector expected = Bytes().u32(83).text("10").append(firstFields()).u32(0x3E4CCCCD).u8(1);
    EXPECT_EQ(written<QelMox::Material>(VersionedMaterial("10")), expected);
}

// The stream has taken the step from the environment when it was made.
TEST_F(Records, RecordsInAStreamLeaveTheGrowthStepAsItIsWhateverTheVariable) {
    Support::BlockSizeGuard variable;
    const std::string name = "name";
    QelTnf::BlockStream stream(index, name);
    variable.set("16");
    stream.Put(QelMox::Material(""));
    stream.Put(std::vector<ModifierInfo>(1));
    stream.Put(std::vector<QelMox::ResultAttributes>());
    EXPECT_EQ(QelTnf::defaultBlockSize, 10'485'760U);
}

TEST_F(Records, RecordInTheMiddleOfABlockCountsItsOwnBytesAlone) {
    QelTnf::Block block;
    Support::putInto(block, Bytes().fill(200, 0xEE));
    block.SetPosition(10);
    block.Append(QelMox::Material(""));
    EXPECT_EQ(block.GetPosition(), 94U);
    const ByteVector expected = Bytes()
                                    .fill(10, 0xEE)
                                    .u32(84)
                                    .text("0.3")
                                    .append(firstFields())
                                    .u32(0x3E4CCCCD)
                                    .u8(1)
                                    .fill(106, 0xEE);
    EXPECT_EQ(Support::contentOf(block), expected);
    block.Release();
}

TEST_F(Records, NoResultAttributesAreACountOfZero) {
    EXPECT_EQ(written(std::vector<QelMox::ResultAttributes>()), (ByteVector{0, 0, 0, 0}));
}

} // namespace
