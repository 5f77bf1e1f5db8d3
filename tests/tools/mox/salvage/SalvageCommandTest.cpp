#include "../TemporaryFolder.h"
#include "../common/MoxRun.h"

#include <Support/SampleModel.h>

#include <nlohmann/json.hpp>

#include <filesystem>

namespace {

constexpr std::size_t FirstBlock = 2800;

class SalvageCommand : public testing::Test {
protected:
    SalvageCommand()
        : payload(Bytes().u32(static_cast<std::uint32_t>(numbers.size())).raw(zlibStream(numbers))) {}

    std::string write(const std::vector<std::uint8_t>& bytes) const {
        return folder.write("damaged.mox", {bytes.begin(), bytes.end()});
    }
    // What a crash leaves: the first twelve bytes, zeros for the index, and what was written behind it.
    Bytes neverClosed() const {
        Bytes file;
        file.raw({0x89, 0x54, 0x4E, 0x46, 0x0D, 0x0A, 0x1A, 0x0A}).raw("1.3").u8(0);
        return file.fill(FirstBlock - file.size(), 0);
    }
    nlohmann::json index() const { return nlohmann::json::parse(folder.read("out/index.json")); }

    TemporaryFolder folder;
    std::string out = folder.path("out");
    std::vector<std::uint8_t> numbers = std::vector<std::uint8_t>(1000, 7);
    std::vector<std::uint8_t> payload;
};

} // namespace

TEST_F(SalvageCommand, SavesEveryBlockOfAFileThatWasNeverClosed) {
    const auto file = write(neverClosed().raw(payload).raw(payload));
    const auto run = runMox({"salvage", file, out});
    EXPECT_EQ(run.exitCode, 0) << run.messages;
    EXPECT_EQ(folder.read("out/block-0001.raw"), std::string(1000, 7));
    EXPECT_EQ(folder.read("out/block-0002.raw"), std::string(1000, 7));
    EXPECT_NE(run.output.find(file + ": it was never closed by its writer\n"), std::string::npos);
    EXPECT_NE(run.output.find("lost: \"Mox Tree\", or where in the file it is: the tree"), std::string::npos);
    EXPECT_EQ(index().at("blocks").size(), 2u);
    EXPECT_EQ(index().at("blocks")[1].at("offset"), FirstBlock + payload.size());
    EXPECT_EQ(index().at("blocks")[1].at("stored"), payload.size());
    EXPECT_EQ(index().at("blocks")[1].at("content"), 1000);
    EXPECT_EQ(index().at("notSaved").size(), 0u);
}

TEST_F(SalvageCommand, GoesOnBehindThePlaceOfAnIndexTable) {
    const auto file = write(neverClosed().raw(payload).fill(27804, 0).raw(payload));
    EXPECT_EQ(runMox({"salvage", file, out}).exitCode, 0);
    EXPECT_EQ(index().at("blocks").size(), 2u);
    ASSERT_EQ(index().at("notSaved").size(), 1u);
    EXPECT_EQ(index().at("notSaved")[0].at("what"), "the place of an index table that was never written");
}

TEST_F(SalvageCommand, GoesOnBehindADamagedBlock) {
    auto damaged = payload;
    damaged.back() ^= 1;
    const auto file = write(neverClosed().raw(damaged).raw(payload));
    EXPECT_EQ(runMox({"salvage", file, out}).exitCode, 0);
    ASSERT_EQ(index().at("blocks").size(), 1u);
    EXPECT_EQ(index().at("blocks")[0].at("offset"), FirstBlock + payload.size());
    EXPECT_EQ(index().at("notSaved")[0].at("offset"), FirstBlock);
    EXPECT_EQ(index().at("notSaved")[0].at("size"), payload.size());
}

TEST_F(SalvageCommand, NamesWhatIsLostOfAFileThatIsCutShort) {
    auto bytes = SampleModel().file().bytes();
    bytes.resize(bytes.size() - 1);
    const auto run = runMox({"salvage", write(bytes), out});
    EXPECT_EQ(run.exitCode, 0) << run.messages;
    EXPECT_EQ(index().at("blocks").size(), 5u);
    EXPECT_EQ(index().at("blocks")[0].at("name"), "Heavy Data");
    EXPECT_EQ(index().at("lost").size(), 1u);
    EXPECT_EQ(index().at("lost")[0], "1 of 1 blocks of \"Global Information\": who saved the file, and when");
    EXPECT_NE(run.output.find("it is cut short: 1 of "), std::string::npos) << run.output;
}

TEST_F(SalvageCommand, LeavesAWholeFileAloneUnlessForced) {
    const auto file = write(SampleModel().file().bytes());
    const auto run = runMox({"salvage", file, out});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.messages.find("is whole, nothing needs salvaging"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(out));
    EXPECT_EQ(runMox({"salvage", "--force", file, out}).exitCode, 0);
    EXPECT_EQ(index().at("blocks").size(), 6u);
    EXPECT_EQ(index().at("lost").size(), 0u);
}

TEST_F(SalvageCommand, MakesNoFolderIfNothingIsLeft) {
    const auto run = runMox({"salvage", write(neverClosed().raw({1, 2, 3})), out});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.messages.find("nothing can be saved"), std::string::npos) << run.messages;
    EXPECT_EQ(folder.files(), std::vector<std::string>{"damaged.mox"});
}

TEST_F(SalvageCommand, RefusesWhatIsNoModelFile) {
    const auto run = runMox({"salvage", folder.write("damaged.mox", std::string(5000, 'x')), out});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.messages.find("is no MOX file by its first bytes"), std::string::npos) << run.messages;
}

TEST_F(SalvageCommand, DoesNotTouchAFolderThatExists) {
    std::filesystem::create_directory(out);
    const auto run = runMox({"salvage", write(neverClosed().raw(payload)), out});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.messages.find("exists already"), std::string::npos);
}

TEST_F(SalvageCommand, ShowsExamplesInItsHelp) {
    EXPECT_NE(runMox({"salvage", "--help"}).output.find("mox salvage crashed.mox saved"), std::string::npos);
}
