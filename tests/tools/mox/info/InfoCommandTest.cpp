#include "../common/MoxRun.h"
#include "../common/SampleModel.h"
#include "Support/NumberedArrays.h"
#include "Support/TemporaryFolder.h"

namespace {

class InfoCommand : public testing::Test {
protected:
    void SetUp() override { saveSampleModel(path); }

    // The sample with a byte changed.
    std::string damaged(std::size_t place) const {
        auto bytes = folder.read("sample.mox");
        bytes[place] = static_cast<char>(bytes[place] ^ 0x10);
        return folder.write("damaged.mox", bytes);
    }
    static bool says(const MoxRun& run, const std::string& line) {
        return ("\n" + run.output).find("\n" + line + "\n") != std::string::npos;
    }

    Support::TemporaryFolder folder;
    std::string path = folder.path("sample.mox");
};

constexpr std::size_t FirstBlock = 2800; // The numbers are the first thing that a model saves.

} // namespace

TEST_F(InfoCommand, ShowsWhatTheFileIs) {
    const auto run = runMox({"info", path});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.messages, "");
    EXPECT_TRUE(says(run, "version   1.3"));
    EXPECT_TRUE(says(run, "source    Solver 2.1"));
    EXPECT_TRUE(says(run, "blocks    6 (names: 6, index tables: 1)"));
    EXPECT_TRUE(says(run, "nodes     4 (1 Geometry, 2 Group, 1 Shape)"));
    EXPECT_TRUE(says(run, "depth     3 levels"));
    EXPECT_TRUE(says(run, "datasets  3 (1 share the numbers of others)"));
    EXPECT_TRUE(says(run, "steps     2 (\"Step 1\" to \"Step 2\")"));
    EXPECT_TRUE(says(run, "whole     yes"));
}

TEST_F(InfoCommand, FindsADamagedNumberUnlessItIsToBeQuick) {
    const auto file = damaged(FirstBlock + 20);
    const auto run = runMox({"info", file});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.output.find("whole     no, block 0 at 2800: "), std::string::npos) << run.output;
    EXPECT_EQ(runMox({"info", "--quick", file}).exitCode, 0);
}

TEST_F(InfoCommand, ShowsOfACutFileWhatIsLeft) {
    const auto file = folder.write("cut.mox", folder.read("sample.mox").substr(0, FirstBlock + 10));
    const auto run = runMox({"info", file});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(says(run, "blocks    6 (names: 6, index tables: 1)"));
    EXPECT_TRUE(says(run, "whole     no, block 0 at 2800: the block reaches past the end of the file"));
}

TEST_F(InfoCommand, ReportsThatAFileWasNeverClosed) {
    const auto file = folder.write("open.mox", folder.read("sample.mox").substr(0, 12));
    const auto run = runMox({"info", file});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.output.find("whole     no, the file was never closed by its writer"), std::string::npos)
        << run.output;
}

TEST_F(InfoCommand, BytesAfterTheLastBlockAreAFlaw) {
    const auto file = folder.write("long.mox", folder.read("sample.mox") + "xyz");
    const auto run = runMox({"info", file});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(says(run, "whole     no, the file has 3 bytes after its last block"));
}

TEST_F(InfoCommand, ReportsThatBlocksLieTooLow) {
    const auto file = folder.path("low.mox");
    Support::saveNumberedArrays(file, "512", 105, [](unsigned) { return 150u; });
    for (const auto& arguments :
         {std::vector<std::string>{"info", file}, std::vector<std::string>{"info", "--quick", file}}) {
        const auto run = runMox(arguments);
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_NE(
            run.output.find("whole     no, saved with blocks too small: a single dataset filled the block "
                            "before Index Block 19, and the writer then placed those after it over others; "),
            std::string::npos)
            << run.output;
        EXPECT_NE(run.output.find(" blocks are lost, the rest can be read\n"), std::string::npos)
            << run.output;
        EXPECT_NE(run.output.find("datasets  105 "), std::string::npos) << run.output;
    }
}

TEST_F(InfoCommand, ReportsThatATableIsLostAmongBlocksThatLieTooLow) {
    const auto file = folder.path("low.mox");
    Support::saveNumberedArrays(file, "512", 460, [](unsigned) { return 200u; });
    const auto run = runMox({"info", file});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.output.find("over others; an index table is among what is lost\n"), std::string::npos)
        << run.output;
}
