#include "common/OutputFile.h"

#include "Support/TemporaryFolder.h"
#include "common/Failure.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>

#ifndef _WIN32
#include <sys/stat.h>
#include <unistd.h>
#endif

using MoxTool::Failure;
using MoxTool::OutputFile;

namespace {

void fill(const OutputFile& output) {
    std::ofstream(output.temporaryPath()) << "new";
}

std::string failureOf(const std::string& target, bool overwrite) {
    try {
        OutputFile output(target, overwrite);
    } catch (const Failure& failure) {
        return failure.what();
    }
    return "no failure";
}

} // namespace

TEST(OutputFile, TargetAppearsAtCommitUnderItsName) {
    Support::TemporaryFolder folder;
    {
        OutputFile output(folder.path("a.mox"), false);
        fill(output);
        EXPECT_FALSE(std::filesystem::exists(folder.path("a.mox")));
        output.commit();
    }
    EXPECT_EQ(folder.files(), std::vector<std::string>{"a.mox"});
    EXPECT_EQ(folder.read("a.mox"), "new");
}

TEST(OutputFile, NothingIsLeftWithoutCommit) {
    Support::TemporaryFolder folder;
    {
        OutputFile output(folder.path("a.mox"), false);
        fill(output);
        EXPECT_EQ(folder.files().size(), 1U);
    }
    EXPECT_TRUE(folder.files().empty());
}

TEST(OutputFile, TemporaryFileStandsBesideTheTarget) {
    Support::TemporaryFolder folder;
    OutputFile output(folder.path("a.mox"), false);
    EXPECT_EQ(output.temporaryPath().parent_path(),
              std::filesystem::path(folder.path("a.mox")).parent_path());
}

TEST(OutputFile, ExistingTargetIsRefused) {
    Support::TemporaryFolder folder;
    const auto target = folder.write("a.mox", "old");
    EXPECT_EQ(failureOf(target, false), target + ": exists already; --overwrite replaces it");
}

TEST(OutputFile, ExistingTargetIsReplacedAtCommitIfAllowed) {
    Support::TemporaryFolder folder;
    OutputFile output(folder.write("a.mox", "old"), true);
    fill(output);
    EXPECT_EQ(folder.read("a.mox"), "old");
    output.commit();
    EXPECT_EQ(folder.read("a.mox"), "new");
}

TEST(OutputFile, TargetThatAppearsMeanwhileIsNotReplaced) {
    Support::TemporaryFolder folder;
    {
        OutputFile output(folder.path("a.mox"), false);
        fill(output);
        folder.write("a.mox", "of another");
        EXPECT_THROW(output.commit(), Failure);
    }
    EXPECT_EQ(folder.files(), std::vector<std::string>{"a.mox"});
    EXPECT_EQ(folder.read("a.mox"), "of another");
}

TEST(OutputFile, FolderThatDoesNotExistIsRefused) {
    Support::TemporaryFolder folder;
    const auto target = folder.path("none/a.mox");
    EXPECT_EQ(failureOf(target, false), target + ": the folder does not exist");
}

TEST(OutputFile, FolderAsTargetIsRefusedEvenForOverwriting) {
    Support::TemporaryFolder folder;
    std::filesystem::create_directory(folder.path("a.mox"));
    EXPECT_EQ(failureOf(folder.path("a.mox"), true),
              folder.path("a.mox") + ": exists and is no regular file");
}

TEST(OutputFile, EmptyNameIsRefused) {
    EXPECT_EQ(failureOf("", false), ": names no file");
}

TEST(OutputFile, LongestNameOfAFileIsTaken) {
    Support::TemporaryFolder folder;
    const std::string name = std::string(251, 'n') + ".mox";
    OutputFile output(folder.path(name), false);
    fill(output);
    output.commit();
    EXPECT_EQ(folder.files(), std::vector<std::string>{name});
}

TEST(OutputFile, TemporaryNameOfALongNameCutsNoCharacter) {
    Support::TemporaryFolder folder;
    const std::string umlaut = "\xC3\xBC";
    std::string name = "a";
    for (int i = 0; i < 120; ++i) {
        name += umlaut;
    }
    const OutputFile output(folder.path(name), false);
    const auto temporary = output.temporaryPath().filename().string();
    EXPECT_EQ(temporary.substr(0, temporary.find('.')), name.substr(0, 199));
}

TEST(OutputFile, NameThatIsTooLongIsRefusedInOneLine) {
    Support::TemporaryFolder folder;
    const auto target = folder.path(std::string(300, 'n'));
    EXPECT_EQ(failureOf(target, true), target + ": can't be written: File name too long");
}

#ifndef _WIN32

namespace {

// What is sent to a pipe that the work writes to.
template <typename Work>
std::string received(const std::string& pipe, Work work) {
    std::string bytes;
    std::thread reader([&] {
        std::ifstream in(pipe, std::ios::binary);
        bytes.assign(std::istreambuf_iterator<char>(in), {});
    });
    work();
    reader.join();
    return bytes;
}

} // namespace

TEST(OutputFile, LinkStaysAndItsFileIsReplaced) {
    Support::TemporaryFolder folder;
    folder.write("real.mox", "old");
    std::filesystem::create_symlink("real.mox", folder.path("link.mox"));
    const auto link = folder.path("link.mox");
    EXPECT_EQ(failureOf(link, false), link + ": exists already; --overwrite replaces it");
    OutputFile output(link, true);
    fill(output);
    output.commit();
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(folder.read("real.mox"), "new");
}

TEST(OutputFile, LinkThatLeadsNowhereStaysAndItsFileAppears) {
    Support::TemporaryFolder folder;
    std::filesystem::create_directory(folder.path("there"));
    std::filesystem::create_symlink("there/second", folder.path("first"));
    std::filesystem::create_symlink("real.mox", folder.path("there/second"));
    OutputFile output(folder.path("first"), false);
    fill(output);
    output.commit();
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("first")));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("there/second")));
    EXPECT_EQ(folder.read("there/real.mox"), "new");
}

TEST(OutputFile, LinkThatLeadsToItselfIsRefused) {
    Support::TemporaryFolder folder;
    std::filesystem::create_symlink("ring", folder.path("ring"));
    const auto failure = failureOf(folder.path("ring"), true);
    EXPECT_TRUE(failure.starts_with(folder.path("ring") + ": can't be written: ")) << failure;
}

TEST(OutputFile, PipeStaysAndGetsTheBytes) {
    Support::TemporaryFolder folder;
    const auto pipe = folder.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(received(pipe,
                       [&] {
                           OutputFile output(pipe, false);
                           fill(output);
                           output.commit();
                       }),
              "new");
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
    EXPECT_EQ(folder.files(), std::vector<std::string>{"pipe"});
}

TEST(OutputFile, DashAndTheNameOfStandardOutputSendTheBytesThere) {
    for (const std::string target : {"-", "/dev/stdout"}) {
        testing::internal::CaptureStdout();
        {
            OutputFile output(target, true);
            fill(output);
            output.commit();
        }
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "new");
        EXPECT_FALSE(std::filesystem::exists("-"));
    }
}

TEST(OutputFile, PipeWhoseReaderGoesAwayLeavesNothing) {
    Support::TemporaryFolder folder;
    const auto work = [&] {
        setenv("TMPDIR", folder.path("").c_str(), 1);
        int ends[2] = {};
        if (pipe(ends) != 0 || dup2(ends[1], STDOUT_FILENO) != STDOUT_FILENO) {
            std::_Exit(1);
        }
        close(ends[0]);
        OutputFile output("-", false);
        fill(output);
        output.commit();
        std::_Exit(0);
    };
    EXPECT_EXIT(work(), testing::KilledBySignal(SIGPIPE), "");
    EXPECT_EQ(folder.files(), std::vector<std::string>{});
}

#endif
