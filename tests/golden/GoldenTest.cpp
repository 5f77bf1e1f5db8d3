// The same model saved today and once before: files that users have must stay as they are, byte by byte.

#include "Support/GoldenModel.h"

#include <MoxReader/Model.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

const std::filesystem::path GoldenFile = std::filesystem::path(MOXWRITER_TEST_FOLDER) / "golden.mox";

constexpr std::size_t HeadEnd = 2800;
constexpr std::size_t FirstRecord = 20;
constexpr std::size_t RecordSize = 139;
constexpr std::size_t LengthInRecord = 133;

Bytes bytesOf(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

class Golden : public testing::Test {
protected:
    Golden() {
        path = std::filesystem::temp_directory_path() /
               (std::string("golden-") + testing::UnitTest::GetInstance()->current_test_info()->name());
        ::Golden::saveGoldenModel(path.string());
    }
    ~Golden() override { std::filesystem::remove(path); }

    std::filesystem::path path;
};

TEST_F(Golden, HeadIsEqualButForTheLengthsThatZlibDecides) {
    Bytes golden = bytesOf(GoldenFile);
    Bytes today = bytesOf(path);
    ASSERT_GT(golden.size(), HeadEnd);
    ASSERT_GT(today.size(), HeadEnd);
    for (Bytes* const file : {&golden, &today}) {
        file->resize(HeadEnd);
        for (std::size_t record = 0; record < 20; ++record) {
            const std::size_t length = FirstRecord + record * RecordSize + LengthInRecord;
            std::fill_n(file->begin() + static_cast<std::ptrdiff_t>(length), 4, std::uint8_t{0});
        }
    }
    EXPECT_EQ(golden, today);
}

TEST_F(Golden, ContentOfEveryBlockIsEqualButForTheDate) {
    const MoxReader::File golden(GoldenFile);
    const MoxReader::File today(path);
    ASSERT_EQ(golden.streamNames(), today.streamNames());
    for (const MoxReader::BlockRecord& block : golden.blocks()) {
        if (block.name != "Global Information" && !block.isEmptyEntry()) {
            EXPECT_EQ(golden.readBlock(block.id), today.readBlock(block.id)) << block.name;
        }
    }
}

TEST_F(Golden, GlobalInformationTellsTheSourceAndTheFormatAndNothingOfTheMachine) {
    for (const std::filesystem::path& file : {GoldenFile, path}) {
        const MoxReader::GlobalInformation global =
            MoxReader::readModel(MoxReader::File(file)).globalInformation();
        ASSERT_EQ(1U, global.modifiers.size());
        EXPECT_EQ("golden", global.modifiers[0].sourceName);
        EXPECT_EQ("1", global.modifiers[0].sourceVersion);
        EXPECT_EQ("1.3", global.modifiers[0].formatVersion);
        EXPECT_NE("", global.modifiers[0].date);
        EXPECT_EQ("", global.modifiers[0].computer);
        EXPECT_EQ("", global.modifiers[0].user);
        EXPECT_EQ("", global.modifiers[0].comment);
        EXPECT_EQ(0U, global.resultAttributeCount);
    }
}

} // namespace
