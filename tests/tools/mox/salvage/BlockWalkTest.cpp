// Bytes laid out to keep a walk busy. The work is counted, not timed.

#include "../common/FirstBlock.h"
#include "Support/TemporaryFolder.h"

#include <Support/TestFile.h>
#include <salvage/BlockWalk.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <span>
#include <utility>

namespace {

constexpr std::uint64_t MostOfOneByte = 1032; ///< The most bytes that one byte of a zlib stream can give.

/// Bytes in memory that count how many of them are read.
class CountingSource : public MoxReader::Source {
public:
    explicit CountingSource(std::vector<std::uint8_t> content) : bytes_(std::move(content)) {}
    std::uint64_t size() const override { return bytes_.size(); }
    std::uint64_t bytesRead() const { return count_; }

protected:
    void readInside(std::uint64_t offset, std::span<std::uint8_t> target) override {
        count_ += target.size();
        std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(offset), target.size(), target.begin());
    }

private:
    std::vector<std::uint8_t> bytes_;
    std::uint64_t count_ = 0;
};

/// A walk over a whole file.
class Walk {
public:
    explicit Walk(std::vector<std::uint8_t> file)
        : source_(std::move(file)),
          index_(MoxReader::scanIndex(source_)),
          walk_(source_, index_, folder_.path("")) {
        walk_.run([](double) {});
    }

    /// Includes those of the index.
    std::uint64_t bytesRead() const { return source_.bytesRead(); }
    std::uint64_t fileSize() const { return source_.size(); }
    std::vector<std::string> files() const { return folder_.files(); }
    const std::vector<MoxTool::SalvagedBlock>& blocks() const { return walk_.blocks(); }
    const std::vector<MoxTool::SalvageGap>& gaps() const { return walk_.gaps(); }
    std::optional<std::uint64_t> unsearchedFrom() const { return walk_.unsearchedFrom(); }
    std::uint64_t bytesWritten() const {
        std::uint64_t sum = 0;
        for (const auto& name : folder_.files()) {
            sum += std::filesystem::file_size(folder_.path(name));
        }
        return sum;
    }

private:
    Support::TemporaryFolder folder_;
    CountingSource source_;
    MoxReader::RawIndex index_;
    MoxTool::BlockWalk walk_;
};

/// These bytes in place of blocks, in a file without an index.
std::vector<std::uint8_t> withoutIndex(const std::vector<std::uint8_t>& bytes) {
    return Bytes().fill(FirstBlock, 0).raw(bytes);
}

/// The front of a block of any length whose content has not begun.
Bytes opening() {
    return Bytes().u32(0x7FFFFFFF).raw({0x78, 0x9C});
}

/// A self-contained piece of a zlib stream: its content is the bytes after the first five.
Bytes storedPiece(const std::vector<std::uint8_t>& content) {
    const auto size = static_cast<unsigned>(content.size());
    return Bytes().u8(0).u8(size & 0xFF).u8(size >> 8).u8(~size & 0xFF).u8(~size >> 8 & 0xFF).raw(content);
}

/// The rest of a stream that gives very many zeros and does not end.
std::vector<std::uint8_t> endlessZeros(std::size_t size) {
    auto stream = zlibStream(std::vector<std::uint8_t>(size * MostOfOneByte));
    return {stream.begin() + 2, stream.begin() + static_cast<std::ptrdiff_t>(size)};
}

} // namespace

// Each opening is in a piece of the streams of all openings before it, so that all streams continue together
// to the end of the file.
TEST(BlockWalk, ReadsAFewTimesTheFileIfVeryManyStreamsShareOneEnd) {
    Bytes bytes = opening();
    for (unsigned i = 0; i < 2000; ++i) {
        bytes.raw(storedPiece(opening()));
    }
    bytes.raw(endlessZeros(2000));
    const Walk walk(withoutIndex(bytes));
    EXPECT_LT(walk.bytesRead(), 16 * walk.fileSize());
    EXPECT_LT(walk.bytesWritten(), MostOfOneByte * walk.fileSize());
    ASSERT_EQ(walk.blocks().size(), 1u);
    EXPECT_TRUE(walk.blocks()[0].extent.isCutOff());
}

// Each of the whole blocks is followed by an opening whose stream continues to the end of the file and
// includes the next block.
TEST(BlockWalk, ReadsAFewTimesTheFileIfStreamsHideWholeBlocks) {
    const std::vector<std::uint8_t> tiny = Bytes().u32(1).raw(zlibStream({65}));
    Bytes bytes;
    bytes.raw(tiny).raw(opening());
    for (unsigned i = 0; i < 1000; ++i) {
        bytes.raw(storedPiece(Bytes().raw(tiny).raw(opening())));
    }
    bytes.raw(endlessZeros(2000));
    const Walk walk(withoutIndex(bytes));
    EXPECT_LT(walk.bytesRead(), 16 * walk.fileSize());
    EXPECT_LT(walk.bytesWritten(), MostOfOneByte * walk.fileSize());
    EXPECT_TRUE(walk.unsearchedFrom().has_value());
}

TEST(BlockWalk, ReadsAFewTimesTheFileIfAHeaderStandsEverywhere) {
    Bytes bytes;
    for (unsigned i = 0; i < 100000; ++i) {
        bytes.raw({0x78, 0x9C});
    }
    const Walk walk(withoutIndex(bytes));
    EXPECT_LT(walk.bytesRead(), 16 * walk.fileSize());
    EXPECT_TRUE(walk.blocks().empty());
}

TEST(BlockWalk, ReadsAFewTimesTheFileIfTheIndexHasManyBlocksOfWhichNoneIsWhole) {
    TestFile file;
    for (unsigned i = 0; i < 150; ++i) {
        file.raw("Heavy Data", opening().fill(50, 0xFF), 1);
    }
    const Walk walk(file.plain("Other", std::vector<std::uint8_t>(300000, 0xFF)).bytes());
    EXPECT_LT(walk.bytesRead(), 16 * walk.fileSize());
    EXPECT_TRUE(walk.blocks().empty());
    EXPECT_FALSE(walk.unsearchedFrom().has_value());
}

TEST(BlockWalk, ReadsZerosAFewTimes) {
    const Walk walk(withoutIndex(std::vector<std::uint8_t>(1000000)));
    EXPECT_LT(walk.bytesRead(), 4 * walk.fileSize());
    ASSERT_EQ(walk.gaps().size(), 1u);
    EXPECT_EQ(walk.gaps()[0].what, "zeros");
}

TEST(BlockWalk, LeavesNoFileButThoseOfTheBlocks) {
    const std::vector<std::uint8_t> tiny = Bytes().u32(1).raw(zlibStream({65}));
    const Walk walk(withoutIndex(Bytes().raw(tiny).raw("no block").raw(tiny).raw("none")));
    EXPECT_EQ(walk.files(), (std::vector<std::string>{"block-0001.raw", "block-0002.raw"}));
    EXPECT_FALSE(walk.unsearchedFrom().has_value());
}
