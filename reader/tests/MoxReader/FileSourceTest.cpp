#include "MoxReader/FileSource.h"

#include "Support/ExpectError.h"

#include "MoxReader/File.h"
#include "Support/TestFile.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

using MoxReader::ErrorCode;
using MoxReader::FileSource;

namespace {

/// A file in the temporary folder, removed with the test. Tests that run at the same time have different
/// ones.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::vector<std::uint8_t>& bytes)
        : path_(std::filesystem::path(testing::TempDir()) /
                ("moxreader_" + std::to_string(std::random_device()()))) {
        std::ofstream(path_, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() { std::filesystem::remove(path_); }

    const std::filesystem::path& path() const { return path_; }

    void writeAt(std::uint64_t offset, const std::vector<std::uint8_t>& bytes) const {
        std::fstream stream(path_, std::ios::binary | std::ios::in | std::ios::out);
        stream.seekp(static_cast<std::streamoff>(offset));
        stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }

private:
    std::filesystem::path path_;
};

} // namespace

TEST(FileSource, ReadsTheBytesAtAnOffsetInAnyOrder) {
    const TemporaryFile file({10, 11, 12, 13});
    FileSource source(file.path());
    std::array<std::uint8_t, 2> bytes{};
    source.read(2, bytes);
    EXPECT_EQ((std::array<std::uint8_t, 2>{12, 13}), bytes);
    source.read(0, bytes);
    EXPECT_EQ((std::array<std::uint8_t, 2>{10, 11}), bytes);
    EXPECT_EQ(4u, source.size());
}

TEST(FileSource, AMissingFileIsAnOpenFailureThatNamesThePath) {
    const auto error = errorOf([] { FileSource source("no/such/file.mox"); });
    EXPECT_EQ(ErrorCode::OpenFailed, error.code());
    EXPECT_EQ("no/such/file.mox", error.place().path);
}

TEST(FileSource, AFolderIsAnOpenFailure) {
    expectError(ErrorCode::OpenFailed, [] { FileSource source(testing::TempDir()); });
}

TEST(FileSource, AFileThatShrinksWhileOpenIsAReadFailure) {
    const TemporaryFile file({1, 2, 3, 4});
    FileSource source(file.path());
    std::filesystem::resize_file(file.path(), 1);
    std::array<std::uint8_t, 2> bytes{};
    expectError(ErrorCode::ReadFailed, [&] { source.read(2, bytes); });
}

TEST(FileSource, BlocksAfterFourGibibytesAreRead) {
    // The first block is a hole of 4294967295 bytes; the second follows it.
    auto bytes = TestFile().plain("Hole", {}).plain("Mox Tree", Bytes().raw("beyond")).bytes();
    bytes = patched(bytes, 16 + 4 + 133, Bytes().u32(4294967295u));
    bytes.resize(2800);
    const TemporaryFile temporary(bytes);
    temporary.writeAt(4294970095u, Bytes().raw("beyond"));
    const MoxReader::File file(temporary.path());
    EXPECT_EQ(4294970101u, file.size());
    EXPECT_EQ(4294970095u, file.blocks()[1].position);
    EXPECT_EQ((std::vector<std::uint8_t>{'b', 'e', 'y', 'o', 'n', 'd'}), file.readBlock(1));
}
