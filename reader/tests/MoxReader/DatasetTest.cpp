#include "MoxReader/Dataset.h"

#include "Support/ExpectError.h"
#include "Support/SampleModel.h"

#include "MoxReader/File.h"

using MoxReader::Dataset;
using MoxReader::ErrorCode;

namespace {

std::vector<Dataset> datasetsOf(const std::vector<std::uint8_t>& content) {
    auto stream = MoxReader::File(TestFile().compressed("Light Data", content).source()).stream("Light Data");
    return readDatasets(stream);
}

} // namespace

TEST(Dataset, AFullEntrySaysWhereItsNumbersAre) {
    const auto datasets =
        datasetsOf(Bytes().u32(1).raw(fullEntry("Speed", 0x0100000D, 240, 3, 0x123456789AULL, true)));
    ASSERT_EQ(1u, datasets.size());
    EXPECT_EQ("Speed", datasets[0].key);
    EXPECT_EQ(13u, datasets[0].variableType);
    EXPECT_EQ(1, datasets[0].elementTag);
    EXPECT_FALSE(datasets[0].isLink);
    EXPECT_EQ(240u, datasets[0].sizeInBytes);
    EXPECT_EQ(3, datasets[0].width);
    EXPECT_EQ(0x123456789Au, datasets[0].position);
    EXPECT_TRUE(datasets[0].vibration);
}

TEST(Dataset, AFullEntryKeepsItsFieldsWithoutMeaning) {
    const auto entry = Bytes().text("").u32(0).u8(0).u32(0).u8(1).raw({1, 0}).f32s({2, 3}).u8(1).u64(0).u8(0);
    const auto dataset = datasetsOf(Bytes().u32(1).raw(entry)).at(0);
    EXPECT_TRUE(dataset.boolA);
    EXPECT_FALSE(dataset.boolB);
    EXPECT_EQ(2.0f, dataset.floatA);
    EXPECT_EQ(3.0f, dataset.floatB);
    EXPECT_TRUE(dataset.boolC);
}

TEST(Dataset, ALinkNamesItsTarget) {
    const auto datasets =
        datasetsOf(Bytes().u32(2).raw(linkEntry("L", 0x05000004, 3, 7)).raw(fullEntry("F", 0, 0, 1, 0)));
    EXPECT_TRUE(datasets[0].isLink);
    EXPECT_EQ(5, datasets[0].elementTag);
    EXPECT_EQ(4u, datasets[0].variableType);
    EXPECT_EQ(3u, datasets[0].linkNodeId);
    EXPECT_EQ(7u, datasets[0].linkIndex);
    EXPECT_EQ("F", datasets[1].key);
}

TEST(Dataset, AKeyIsSplitAtItsFirstSeparator) {
    const auto datasets = datasetsOf(Bytes()
                                         .u32(3)
                                         .raw(linkEntry("Plain", 0, 1, 0))
                                         .raw(linkEntry("Name\x1EStep 1", 0, 1, 0))
                                         .raw(linkEntry("N\x1ES\x1ET", 0, 1, 0)));
    EXPECT_EQ("Plain", datasets[0].name);
    EXPECT_EQ("", datasets[0].step);
    EXPECT_EQ("Name\x1EStep 1", datasets[1].key);
    EXPECT_EQ("Name", datasets[1].name);
    EXPECT_EQ("Step 1", datasets[1].step);
    EXPECT_EQ("N", datasets[2].name);
    EXPECT_EQ("S\x1ET", datasets[2].step);
}

TEST(Dataset, ATypeOfAllOnesHasNoTag) {
    const auto dataset = datasetsOf(Bytes().u32(1).raw(linkEntry("L", 0xFFFFFFFF, 3, 7))).at(0);
    EXPECT_EQ(0xFFFFFFFFu, dataset.variableType);
    EXPECT_EQ(0, dataset.elementTag);
}

TEST(Dataset, NoDatasetsAreACountOfZero) {
    EXPECT_TRUE(datasetsOf(Bytes().u32(0)).empty());
}

TEST(Dataset, ACountBeyondTheStreamIsBad) {
    expectError(ErrorCode::BadCount, [] { datasetsOf(Bytes().u32(2).raw(linkEntry("", 0, 1, 0))); });
    expectError(ErrorCode::BadCount, [] { datasetsOf(Bytes().u32(0xFFFFFFFF)); });
}

TEST(Dataset, AnErrorNamesTheDataset) {
    const auto content = Bytes().u32(2).raw(linkEntry("a", 0, 1, 0)).text("bcd").u32(0).u8(2).fill(9, 0);
    const auto error = errorOf([&] { datasetsOf(content); });
    EXPECT_EQ(ErrorCode::BadValue, error.code());
    EXPECT_EQ("dataset 1", error.place().record);
}
