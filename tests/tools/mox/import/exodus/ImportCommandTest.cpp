#include "../../exodus/SmallExodusFile.h"
#include "../ImportRun.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#ifdef MOX_HAS_DEFLATE
#include <MoxReader/File.h>
#endif
#ifndef _WIN32
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

using Files = std::vector<std::string>;

class ImportCommand : public testing::Test {
protected:
    // A line of two nodes, with a result of two steps.
    ImportCommand() {
        SmallExodusFile file(input, {1, 2, 1, 1});
        file.coordinates({0, 1});
        file.block(1, "BAR", 1, 2, {1, 2});
        file.variables(EX_NODAL, {"t"});
        for (int step = 1; step <= 2; ++step) {
            file.time(step, step);
            file.values(step, EX_NODAL, 1, 1, {1, 2});
        }
    }

    std::string output() const { return folder.path("out.mox"); }

    void expectRefused(const std::string& name, const std::string& reason) {
        const auto before = folder.files();
        const auto run = runImport({name, output()});
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.messages, "mox import: " + name + ": " + reason + "\n");
        EXPECT_EQ(folder.files(), before);
    }

#ifdef MOX_HAS_DEFLATE
    // The bytes of the output's blocks as they are stored, without those that hold the date.
    std::string storedBlocks() const {
        const auto bytes = folder.read("out.mox");
        std::string stored;
        for (const auto& block : MoxReader::File(output()).blocks()) {
            if (block.name != "Global Information") {
                stored += bytes.substr(block.position, block.length);
            }
        }
        return stored;
    }
#endif

    Support::TemporaryFolder folder;
    std::string input = folder.path("model.e");
};

} // namespace

TEST_F(ImportCommand, WritesTheOutputAndNothingElse) {
    const auto run = runImport({"--compressor", "zlib", input, output()});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.messages,
              output() + ": shapes: 1, nodes: 2, elements: 1, steps: 2, datasets: 7, compressor: zlib\n");
    EXPECT_EQ(folder.files(), (Files{"model.e", "out.mox"}));
}

TEST_F(ImportCommand, DashWritesTheSameToStandardOutput) {
    ASSERT_EQ(runImport({"--compressor", "zlib", input, output()}).exitCode, 0);
    const auto run = runImport({"--compressor", "zlib", "-q", input, "-"});
    EXPECT_EQ(run.exitCode, 0) << run.messages;
    EXPECT_TRUE(run.output.starts_with("\x89TNF\r\n\x1A\n"));
    EXPECT_EQ(run.output.size(), folder.read("out.mox").size());
    EXPECT_EQ(runImport({"-", output()}).messages,
              "mox import: -: can't be imported from stdin; save it as a file first\n");
}

#ifdef MOX_HAS_DEFLATE
TEST_F(ImportCommand, TakesLibdeflateUnlessZlibIsAskedFor) {
    EXPECT_TRUE(runImport({input, output()}).says(", compressor: deflate"));
    const auto byDefault = storedBlocks();
    EXPECT_TRUE(
        runImport({"--overwrite", "--compressor", "zlib", input, output()}).says(", compressor: zlib"));
    EXPECT_NE(storedBlocks(), byDefault);
    EXPECT_TRUE(
        runImport({"--overwrite", "--compressor", "deflate", input, output()}).says(", compressor: deflate"));
    EXPECT_EQ(storedBlocks(), byDefault);
}
#else
TEST_F(ImportCommand, RefusesTheCompressorThatMoxWasBuiltWithout) {
    const auto run = runImport({"--compressor", "deflate", input, output()});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.says("mox was built without libdeflate, so there is zlib alone"));
    EXPECT_EQ(folder.files(), Files{"model.e"});
}
#endif

TEST_F(ImportCommand, UnknownCompressorIsRefused) {
    const auto run = runImport({"--compressor", "lz4", input, output()});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.says("there is no 'lz4'; there are zlib and deflate"));
    EXPECT_EQ(folder.files(), Files{"model.e"});
}

TEST_F(ImportCommand, MissingFileIsRefused) {
    expectRefused(folder.path("none.e"), "there is no such file");
}

TEST_F(ImportCommand, FolderIsRefused) {
    std::filesystem::create_directory(folder.path("folder.e"));
    expectRefused(folder.path("folder.e"), "is a folder, not a file");
}

#ifndef _WIN32
TEST_F(ImportCommand, PipeIsRefused) {
    ASSERT_EQ(mkfifo(folder.path("pipe.e").c_str(), 0600), 0);
    expectRefused(folder.path("pipe.e"), "is a pipe, not a file");
}

TEST_F(ImportCommand, DeviceIsRefused) {
    expectRefused("/dev/null", "is a device, not a file");
}

TEST_F(ImportCommand, FileThatMayNotBeReadIsRefused) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "root may read everything";
    }
    std::filesystem::permissions(input, std::filesystem::perms::none);
    expectRefused(input, "can't be opened: Permission denied");
}

// A limit to the size of files stands for a full disk.
TEST_F(ImportCommand, FullDiskIsSaidToBeThatByTheCheckToo) {
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    auto* const handler = std::signal(SIGXFSZ, SIG_IGN);
    for (const auto& arguments : {Files{"--check", input, output()}, Files{input, output()}}) {
        auto small = before;
        small.rlim_cur = 1000;
        setrlimit(RLIMIT_FSIZE, &small);
        const auto run = runImport(arguments);
        setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.messages, "mox import: " + output() + ": can't be written: File too large\n");
        EXPECT_EQ(folder.files(), Files{"model.e"});
    }
    std::signal(SIGXFSZ, handler);
}
#endif

TEST_F(ImportCommand, FilesOfOtherKindsAreRefused) {
    expectRefused(folder.write("empty.e", ""), "is empty");
    expectRefused(folder.write("text.e", "# a list of parts\n"),
                  "is a text file; mox import reads Exodus II, CGNS and Gmsh .msh; "
                  "python3 -m moxwriter.convert reads other mesh formats");
}

TEST_F(ImportCommand, DamagedHdf5FileIsRefusedWithoutChatter) {
    testing::internal::CaptureStderr();
    expectRefused(folder.write("damaged.e", "\x89HDF\r\n\x1A\n and no more"),
                  "not an Exodus II file, or damaged (NetCDF: HDF error)");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ImportCommand, FileCutOffAnywhereIsRefused) {
    const auto whole = folder.read("model.e");
    for (const std::size_t size : {std::size_t{40}, whole.size() / 4, whole.size() / 2, whole.size() - 1}) {
        const auto cut = folder.write("cut.e", whole.substr(0, size));
        const auto run = runImport({cut, output()});
        EXPECT_EQ(run.exitCode, 1) << size;
        EXPECT_TRUE(run.messages.starts_with("mox import: " + cut + ": damaged: ")) << run.messages;
        EXPECT_EQ(std::count(run.messages.begin(), run.messages.end(), '\n'), 1);
        EXPECT_EQ(folder.files(), (Files{"cut.e", "model.e"}));
    }
}

TEST_F(ImportCommand, ExistingOutputIsKeptUnlessToBeOverwritten) {
    folder.write("out.mox", "precious");
    const auto refused = runImport({input, output()});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.messages, "mox import: " + output() + ": exists already; --overwrite replaces it\n");
    EXPECT_EQ(folder.read("out.mox"), "precious");

    EXPECT_EQ(runImport({"--overwrite", input, output()}).exitCode, 0);
    EXPECT_TRUE(folder.read("out.mox").starts_with("\x89TNF"));
    EXPECT_EQ(folder.files(), (Files{"model.e", "out.mox"}));
}

TEST_F(ImportCommand, FailedImportKeepsTheOutputThatWasToBeOverwritten) {
    folder.write("out.mox", "precious");
    EXPECT_EQ(runImport({"--overwrite", folder.write("bad.e", "bad"), output()}).exitCode, 1);
    EXPECT_EQ(folder.read("out.mox"), "precious");
}

TEST_F(ImportCommand, CheckedOutputIsTheSameAsAnUncheckedOne) {
    EXPECT_EQ(runImport({"--check", input, output()}).exitCode, 0);
    EXPECT_EQ(runImport({input, folder.path("unchecked.mox")}).exitCode, 0);
    EXPECT_EQ(folder.read("out.mox").size(), folder.read("unchecked.mox").size());
}

TEST_F(ImportCommand, InputIsNeverReplaced) {
    const auto before = folder.read("model.e");
    const auto run = runImport({"--overwrite", input, input});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.messages, "mox import: " + input + ": is the input itself\n");
    EXPECT_EQ(folder.read("model.e"), before);
}

TEST_F(ImportCommand, FolderOfTheOutputMustExist) {
    const auto target = folder.path("none/out.mox");
    const auto run = runImport({input, target});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.messages, "mox import: " + target + ": the folder does not exist\n");
}

TEST_F(ImportCommand, RealFilesOfOtherKindsAreRefused) {
    bool found = false;
    const std::vector<std::pair<std::string, std::string>> files = {
        {"can.vtu", "is a VTK file, which mox writes"}, {"README.md", "is a text file; mox import"}};
    for (const auto& [name, kind] : files) {
        const auto path = (std::filesystem::path(MOXWRITER_DATA_DIR) / name).string();
        if (!std::filesystem::exists(path)) {
            continue;
        }
        found = true;
        const auto run = runImport({path, output()});
        EXPECT_EQ(run.exitCode, 1) << name;
        EXPECT_TRUE(run.messages.starts_with("mox import: " + path + ": " + kind)) << run.messages;
        EXPECT_EQ(std::count(run.messages.begin(), run.messages.end(), '\n'), 1);
        EXPECT_EQ(folder.files(), Files{"model.e"});
    }
    if (!found) {
        GTEST_SKIP() << "no files of other kinds in " << MOXWRITER_DATA_DIR;
    }
}
