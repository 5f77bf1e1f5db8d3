#include "Support/TemporaryFolder.h"
#include "common/FileHandle.h"
#include "common/Platform.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <functional>

namespace {

using MoxTool::FileHandle;
using MoxTool::Platform::CopyEnd;
using Copier = CopyEnd (*)(std::FILE*, std::uint64_t, std::FILE*, std::uint64_t, std::uint64_t);

/// Both ways of copying: by the system, and by reading and writing.
class CopyBytes : public testing::TestWithParam<Copier> {
protected:
    static FileHandle open(const std::string& path, const char* mode) {
        FileHandle file(std::fopen(path.c_str(), mode));
        std::setvbuf(file.get(), nullptr, _IONBF, 0);
        return file;
    }
    CopyEnd copy(std::uint64_t from, std::uint64_t to, std::uint64_t count) const {
        const auto source = open(folder.path("source"), "rb");
        const auto target = open(folder.path("target"), "r+b");
        return GetParam()(source.get(), from, target.get(), to, count);
    }

    Support::TemporaryFolder folder;
};

} // namespace

TEST_P(CopyBytes, PutsARangeOverAnother) {
    folder.write("source", "0123456789");
    folder.write("target", "abcdefghij");
    EXPECT_EQ(copy(2, 5, 3), CopyEnd::Whole);
    EXPECT_EQ(folder.read("target"), "abcde234ij");
}

TEST_P(CopyBytes, LeavesAHoleBeforeARangeBeyondTheEnd) {
    folder.write("source", "0123456789");
    folder.write("target", "a");
    EXPECT_EQ(copy(0, 3, 10), CopyEnd::Whole);
    EXPECT_EQ(folder.read("target"), std::string("a\0\0"
                                                 "0123456789",
                                                 13));
}

TEST_P(CopyBytes, NothingIsNothing) {
    folder.write("source", "");
    folder.write("target", "abc");
    EXPECT_EQ(copy(0, 3, 0), CopyEnd::Whole);
    EXPECT_EQ(folder.read("target"), "abc");
}

TEST_P(CopyBytes, MoreThanOnePieceIsTheSame) {
    std::string bytes(1'500'001, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<char>(i * i >> 7U);
    }
    folder.write("source", bytes);
    folder.write("target", "");
    EXPECT_EQ(copy(1, 0, bytes.size() - 1), CopyEnd::Whole);
    EXPECT_EQ(folder.read("target"), bytes.substr(1));
}

TEST_P(CopyBytes, SourceThatEndsEarlyIsReported) {
    folder.write("source", "0123");
    folder.write("target", "");
    EXPECT_EQ(copy(2, 0, 3), CopyEnd::SourceEnded);
    EXPECT_EQ(copy(9, 0, 1), CopyEnd::SourceEnded);
}

TEST_P(CopyBytes, FullDiskIsReportedWithItsReason) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "there is no /dev/full";
    }
    folder.write("source", "0123");
    const auto source = open(folder.path("source"), "rb");
    const auto target = open("/dev/full", "wb");
    EXPECT_EQ(GetParam()(source.get(), 0, target.get(), 0, 4), CopyEnd::WriteFailed);
    EXPECT_EQ(errno, ENOSPC);
}

TEST_P(CopyBytes, FileThatCantBeReadIsReported) {
    folder.write("source", "0123");
    folder.write("target", "");
    const auto source = open(folder.path("source"), "ab");
    const auto target = open(folder.path("target"), "r+b");
    EXPECT_EQ(GetParam()(source.get(), 0, target.get(), 0, 4), CopyEnd::ReadFailed);
}

INSTANTIATE_TEST_SUITE_P(Ways, CopyBytes,
                         testing::Values(MoxTool::Platform::copyBytes, MoxTool::Platform::copyBytesPlainly),
                         [](const testing::TestParamInfo<Copier>& way) {
                             return way.index == 0 ? "BySystem" : "ByReadingAndWriting";
                         });
