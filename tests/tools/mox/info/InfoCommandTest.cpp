#include "../common/FirstBlock.h"
#include "../common/MoxRun.h"
#include "../common/SampleModel.h"
#include "../common/SteppedModel.h"
#include "Support/NumberedArrays.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>

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

} // namespace

TEST_F(InfoCommand, ShowsWhatTheFileIs) {
    const auto run = runMox({"info", path});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.messages, "");
    EXPECT_TRUE(says(run, "version   1.3"));
    EXPECT_TRUE(says(run, "source    Solver 2.1"));
    EXPECT_TRUE(says(run, "blocks    6 with 6 names, 1 index table"));
    EXPECT_TRUE(says(run, "tree      4 nodes in 3 levels (1 Geometry, 2 Group, 1 Shape)"));
    EXPECT_TRUE(says(run, "datasets  3 (1 of them shares the numbers of another)"));
    EXPECT_TRUE(says(run, "steps     2 (\"Step 1\" to \"Step 2\")"));
    EXPECT_TRUE(says(run, "whole     yes"));
}

TEST_F(InfoCommand, ShowsTheRangesOfTimesAndFrequencies) {
    saveSteppedModel(path);
    const auto run = runMox({"info", path});
    EXPECT_TRUE(says(run, "steps     7 (\"Step 1\" to \"Mode 2\")")) << run.output;
    EXPECT_TRUE(says(run, "time      0 to 1 (of 5 steps)")) << run.output;
    EXPECT_TRUE(says(run, "frequency 12.5 to 20 (of 2 steps)")) << run.output;
}

TEST_F(InfoCommand, CountsNodesThatPartsShareOnceAndElementsOfAllParts) {
    {
        Qel::Mox2::Model model;
        model.saveTo(path, {true, "", "", ""});
        model.addNode(Qel::Mox2::RootGroup, "root");
        const auto ids = model.addAssemblyComponents(std::vector<std::string>{"/root/a", "/root/b"});
        const Qel::Mox2::Step none;
        model.addArrayProperty(Qel::Mox2::Coordinates, Qel::Mox2::Array2d<float>(4, 3, 0.0F), ids, none);
        model.addArrayProperty(Qel::Mox2::Connectivity1, Qel::Mox2::Array1d<unsigned int>{0, 1, 2, 1, 2, 3},
                               ids, none);
        model.addArrayProperty(Qel::Mox2::Polylength1, Qel::Mox2::Array1d<unsigned int>{3, 3}, ids, none);
        model.close();
    }
    EXPECT_TRUE(says(runMox({"info", path}), "mesh      4 nodes, 4 elements"));
}

TEST_F(InfoCommand, ShowsSeveralFilesOneAfterTheOtherAndGoesOnAfterAFailure) {
    const auto file = damaged(FirstBlock + 20);
    const auto missing = folder.path("missing.mox");
    const auto run = runMox({"info", path, missing, file, path});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.messages.rfind("mox info: " + missing + ": ", 0), 0U) << run.messages;
    EXPECT_EQ(std::count(run.messages.begin(), run.messages.end(), '\n'), 1);
    const auto first = run.output.find("file      " + path + " (");
    const auto second = run.output.find("\n\nfile      " + file + " (");
    EXPECT_EQ(first, 0U) << run.output;
    EXPECT_NE(second, std::string::npos) << run.output;
    EXPECT_NE(run.output.find("\n\nfile      " + path + " (", second), std::string::npos) << run.output;
}

TEST_F(InfoCommand, QuietSaysByItsExitCodeAloneWhetherFilesAreWhole) {
    const auto sound = runMox({"info", "-q", path, path});
    EXPECT_EQ(sound.exitCode, 0);
    EXPECT_EQ(sound.output + sound.messages, "");
    const auto broken = runMox({"info", "--quiet", path, damaged(FirstBlock + 20)});
    EXPECT_EQ(broken.exitCode, 1);
    EXPECT_EQ(broken.output + broken.messages, "");
}

TEST_F(InfoCommand, StdinCanBeNamedOnlyOnce) {
    EXPECT_EQ(runMox({"info", "-", "-"}).exitCode, 2);
}

TEST_F(InfoCommand, SaysWhatAFileOfAnotherKindIs) {
    const auto file = folder.write("mesh.msh", "$MeshFormat\n4.1 0 8\n");
    const auto run = runMox({"info", file});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.messages,
              "mox info: " + file + ": is no MOX file but a Gmsh file; mox import converts it\n");
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
    EXPECT_TRUE(says(run, "blocks    6 with 6 names, 1 index table"));
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
        EXPECT_NE(run.output.find("datasets  105\n"), std::string::npos) << run.output;
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
