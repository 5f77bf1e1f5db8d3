// Files of processes that end before they close their model, and of one whose disk is full.

#include "Salvage.h"
#include "SavedModel.h"

// The only platform-dependent code of this test.
#if defined(__unix__)

#include <sys/resource.h>

#include <csignal>
#include <cstdlib>

namespace {

constexpr int Died = 7;

std::vector<std::uint8_t> bytesOf(const Support::TemporaryFolder& folder) {
    const auto text = folder.read("saved.mox");
    return {text.begin(), text.end()};
}

/// The content of a block that these two arrays fill.
std::string contentOf(unsigned block) {
    return SavedModel::stored(2 * block) + SavedModel::stored(2 * block + 1);
}

/// For a separate process: from now on no file grows beyond this size.
void limitFileSize(std::size_t size) {
    const rlimit noCoreDump = {0, 0};
    setrlimit(RLIMIT_CORE, &noCoreDump);
    const rlimit limit = {size, size};
    setrlimit(RLIMIT_FSIZE, &limit);
}

/// Saves a model except for its end, in a process that ends there.
[[noreturn]] void saveAndDie(const std::string& path, unsigned arrays) {
    const Support::EnvironmentGuard smallBlocks(Support::BlockSizeVariable, SavedModel::BlockSize);
    Qel::Mox2::Model model;
    SavedModel::open(model, path);
    if (arrays > 0) {
        SavedModel::addArrays(model, arrays);
    }
    std::_Exit(Died);
}

/// Saves a model on a disk that takes only this many bytes of a file.
[[noreturn]] void saveOnFullDisk(const std::string& path, unsigned arrays, std::size_t room) {
    const Support::EnvironmentGuard smallBlocks(Support::BlockSizeVariable, SavedModel::BlockSize);
    std::signal(SIGXFSZ, SIG_IGN);
    limitFileSize(room);
    Qel::Mox2::Model model;
    SavedModel::open(model, path);
    SavedModel::addArrays(model, arrays);
    model.close();
    std::_Exit(0);
}

class SalvageCrashDeathTest : public testing::Test {
protected:
    Support::TemporaryFolder folder;
    const std::string path = folder.path("saved.mox");
};

} // namespace

// Block 2 has one of the two arrays that fill it, and so is only in memory.
TEST_F(SalvageCrashDeathTest, ProcessThatEndsWithoutCloseLeavesItsFullBlocks) {
    EXPECT_EXIT(saveAndDie(path, 5), testing::ExitedWithCode(Died), "");
    const Salvage salvage(bytesOf(folder));
    EXPECT_EQ(salvage.run.exitCode, 0) << salvage.run.messages;
    EXPECT_EQ(salvage.index.at("state"), "it was never closed by its writer");
    ASSERT_EQ(salvage.index.at("blocks").size(), 2u);
    EXPECT_EQ(salvage.content(salvage.index.at("blocks")[0]), contentOf(0));
    EXPECT_EQ(salvage.content(salvage.index.at("blocks")[1]), contentOf(1));
    EXPECT_EQ(salvage.index.at("partial").size(), 0u);
    EXPECT_EQ(salvage.index.at("notSaved").size(), 0u);
}

TEST_F(SalvageCrashDeathTest, ProcessThatEndsWithoutCloseLeavesRoomForAnIndexTable) {
    EXPECT_EXIT(saveAndDie(path, 50), testing::ExitedWithCode(Died), "");
    const Salvage salvage(bytesOf(folder));
    ASSERT_EQ(salvage.index.at("blocks").size(), 25u);
    for (unsigned i = 0; i < 25; ++i) {
        EXPECT_EQ(salvage.content(salvage.index.at("blocks")[i]), contentOf(i));
    }
    ASSERT_EQ(salvage.index.at("notSaved").size(), 1u);
    EXPECT_EQ(salvage.index.at("notSaved")[0].at("size"), 27804);
    EXPECT_EQ(salvage.index.at("notSaved")[0].at("what"), "the place of an index table, all zeros");
}

TEST_F(SalvageCrashDeathTest, ProcessThatEndsBeforeItsFirstFullBlockLeavesNothing) {
    for (const unsigned arrays : {0u, 1u}) {
        EXPECT_EXIT(saveAndDie(path, arrays), testing::ExitedWithCode(Died), "");
        EXPECT_EQ(bytesOf(folder).size(), 12u);
        const Salvage salvage(bytesOf(folder));
        EXPECT_EQ(salvage.run.exitCode, 1);
        EXPECT_NE(salvage.run.messages.find("ends after 12 bytes"), std::string::npos)
            << salvage.run.messages;
        EXPECT_FALSE(salvage.madeFolder());
    }
}

TEST_F(SalvageCrashDeathTest, ProcessThatIsKilledWhileItWritesABlockLeavesTheBeginningOfThat) {
    const auto blocks = soundBlocks(SavedModel::bytes(20));
    const auto room = static_cast<std::size_t>(blocks[4].offset) + 60;
    EXPECT_EXIT(
        {
            limitFileSize(room);
            saveAndDie(path, 20);
        },
        testing::KilledBySignal(SIGXFSZ), "");
    const auto bytes = bytesOf(folder);
    ASSERT_EQ(bytes.size(), room);
    const Salvage salvage(bytes);
    ASSERT_EQ(salvage.index.at("blocks").size(), 4u);
    for (unsigned i = 0; i < 4; ++i) {
        EXPECT_EQ(salvage.content(salvage.index.at("blocks")[i]), contentOf(i));
    }
    ASSERT_EQ(salvage.index.at("partial").size(), 1u);
    const auto& partial = salvage.index.at("partial")[0];
    EXPECT_EQ(partial.at("file"), "block-0005.part.raw");
    EXPECT_EQ(partial.at("offset"), blocks[4].offset);
    EXPECT_EQ(partial.at("content"), 200);
    const auto content = salvage.content(partial);
    EXPECT_GT(content.size(), 0u);
    EXPECT_LT(content.size(), 200u);
    EXPECT_EQ(content, contentOf(4).substr(0, content.size()));
    EXPECT_EQ(partial.at("inflated"), content.size());
}

// The writer does not notice, and completes the index, which is at the front.
TEST_F(SalvageCrashDeathTest, FullDiskLeavesBlocksWithTheirNames) {
    const auto sound = SavedModel::bytes(20);
    const auto blocks = soundBlocks(sound);
    const auto room = static_cast<std::size_t>(blocks[4].offset) + 60;
    EXPECT_EXIT(saveOnFullDisk(path, 20, room), testing::ExitedWithCode(0), "");
    const auto bytes = bytesOf(folder);
    ASSERT_EQ(bytes.size(), room);
    const Salvage salvage(bytes);
    EXPECT_EQ(salvage.index.at("state").get<std::string>().substr(0, 19), "it is cut short: at");
    ASSERT_EQ(salvage.index.at("blocks").size(), 4u);
    for (unsigned i = 0; i < 4; ++i) {
        EXPECT_EQ(salvage.content(salvage.index.at("blocks")[i]), contentOf(i));
        EXPECT_EQ(salvage.index.at("blocks")[i].at("name"), "Heavy Data");
    }
    ASSERT_EQ(salvage.index.at("partial").size(), 1u);
    EXPECT_EQ(salvage.index.at("partial")[0].at("name"), "Heavy Data");
    EXPECT_EQ(salvage.lost()[0].substr(0, 29), "6 of 10 blocks of \"Heavy Data");
}

#else

TEST(SalvageCrashDeathTest, NeedsProcessesThatCanBeKilled) {
    GTEST_SKIP() << "this system has no limit to the size of files";
}

#endif
