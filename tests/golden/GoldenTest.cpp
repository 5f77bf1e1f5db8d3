// Compares models saved now with the same models saved earlier: the library must keep writing the same bytes.

#include "Support/FileContent.h"
#include "Support/GoldenFiles.h"
#include "Support/TemporaryFolder.h"

#include <MoxReader/Model.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>

namespace {

namespace fs = std::filesystem;

using ::Golden::FileContent;
using ::Golden::goldenFiles;
using ::Golden::readFileContent;

const fs::path Folder = MOXWRITER_GOLDEN_FOLDER;

class Golden : public testing::TestWithParam<::Golden::GoldenFile> {
protected:
    Golden() {
        GetParam().save(path);
        golden = readFileContent((Folder / (GetParam().name + ".mox")).string());
        today = readFileContent(path);
    }

    Support::TemporaryFolder folder;
    const std::string path = folder.path("model.mox");
    FileContent golden;
    FileContent today;
};

TEST_P(Golden, HeadIsEqualButForTheLengthsThatZlibDecides) {
    EXPECT_EQ(golden.head, today.head);
}

TEST_P(Golden, ContentOfEveryBlockIsEqualButForTheDate) {
    ASSERT_EQ(golden.blocks.size(), today.blocks.size());
    for (std::size_t i = 0; i < golden.blocks.size(); ++i) {
        EXPECT_EQ(golden.blocks[i].name, today.blocks[i].name);
        EXPECT_EQ(golden.blocks[i].isLost, today.blocks[i].isLost) << i;
        EXPECT_EQ(golden.blocks[i].bytes, today.blocks[i].bytes) << i << ", " << golden.blocks[i].name;
    }
}

INSTANTIATE_TEST_SUITE_P(Corpus, Golden, testing::ValuesIn(goldenFiles()), [](const auto& file) {
    auto name = file.param.name;
    std::ranges::replace(name, '-', '_');
    return name;
});

TEST(GoldenCorpus, HasEachFileAndItsDumpAndNoOther) {
    std::set<std::string> expected;
    for (const auto& file : goldenFiles()) {
        expected.insert(file.name + ".mox");
        expected.insert(file.name + ".json");
    }
    std::set<std::string> found;
    for (const auto& entry : fs::directory_iterator(Folder)) {
        if (entry.path().extension() == ".mox" || entry.path().extension() == ".json") {
            found.insert(entry.path().filename().string());
        }
    }
    EXPECT_EQ(expected, found);
}

TEST(GoldenCorpus, IsSmall) {
    std::uintmax_t size = 0;
    for (const auto& file : goldenFiles()) {
        size += fs::file_size(Folder / (file.name + ".mox"));
    }
    EXPECT_LT(size, 150'000U);
}

TEST(GoldenCorpus, HasBlocksThatAreLostOnlyAmongTheNumbersOfTheLowBlocks) {
    for (const auto& file : goldenFiles()) {
        const auto content = readFileContent((Folder / (file.name + ".mox")).string());
        for (const auto& block : content.blocks) {
            EXPECT_TRUE(!block.isLost || (file.name == "low-blocks" && block.name == "Heavy Data"))
                << file.name << ", " << block.name;
        }
        EXPECT_EQ(std::ranges::any_of(content.blocks, &::Golden::BlockContent::isLost),
                  file.name == "low-blocks")
            << file.name;
    }
}

TEST(GoldenFile, NamesTheSourceAndTheFormatAndNothingOfTheMachine) {
    const auto global = MoxReader::readModel(MoxReader::File(Folder / "golden.mox")).globalInformation();
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

} // namespace
