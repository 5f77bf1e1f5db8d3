// Compares a model saved now with the same model saved earlier: the library must keep writing the same bytes.

#include "Support/Bytes.h"
#include "Support/GoldenModel.h"
#include "Support/TemporaryFolder.h"

#include <MoxReader/Model.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>

namespace {

using Support::ByteVector;

const std::filesystem::path GoldenFile = std::filesystem::path(MOXWRITER_TEST_FOLDER) / "golden.mox";

constexpr std::size_t HeadEnd = 2800;
constexpr std::size_t FirstRecord = 20;
constexpr std::size_t RecordSize = 139;
constexpr std::size_t LengthInRecord = 133;

// The modifier's record: its size, its version, the name and version of its source, the version of the
// format, then the date.
constexpr std::size_t ModifierSize = 4;
constexpr std::size_t Date = 8 + (4 + 3) + (4 + 6) + (4 + 1) + (4 + 3);

// A block's content. In the global information, the date and the sizes that depend on it are blanked.
ByteVector contentWithoutDate(const MoxReader::File& file, const MoxReader::BlockRecord& block) {
    ByteVector content = file.readBlock(block.id);
    if (block.name == "Global Information") {
        const std::size_t dateSize =
            MoxReader::readModel(file).globalInformation().modifiers.at(0).date.size();
        const auto date = content.begin() + static_cast<std::ptrdiff_t>(Date);
        content.erase(date, date + static_cast<std::ptrdiff_t>(4 + dateSize));
        std::fill_n(content.begin() + static_cast<std::ptrdiff_t>(ModifierSize), 4, std::uint8_t{0});
    }
    return content;
}

class Golden : public testing::Test {
protected:
    Golden() { ::Golden::saveGoldenModel(path); }

    Support::TemporaryFolder folder;
    const std::string path = folder.path("model.mox");
};

TEST_F(Golden, HeadIsEqualButForTheLengthsThatZlibDecides) {
    ByteVector golden = Support::bytesOf(GoldenFile.string());
    ByteVector today = Support::bytesOf(path);
    ASSERT_GT(golden.size(), HeadEnd);
    ASSERT_GT(today.size(), HeadEnd);
    for (ByteVector* const file : {&golden, &today}) {
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
        if (!block.isEmptyEntry()) {
            EXPECT_EQ(contentWithoutDate(golden, block), contentWithoutDate(today, block)) << block.name;
        }
    }
}

TEST_F(Golden, GlobalInformationTellsTheSourceAndTheFormatAndNothingOfTheMachine) {
    for (const std::filesystem::path& file : {GoldenFile, std::filesystem::path(path)}) {
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
