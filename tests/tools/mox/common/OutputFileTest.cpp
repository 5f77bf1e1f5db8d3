#include "common/OutputFile.h"

#include "Support/TemporaryFolder.h"
#include "common/Failure.h"

#include <gtest/gtest.h>

#include <fstream>

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
