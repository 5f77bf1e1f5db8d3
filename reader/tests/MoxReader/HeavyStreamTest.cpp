#include "MoxReader/HeavyData.h"

#include "Support/ExpectError.h"
#include "Support/SampleModel.h"

#include <algorithm>

// Where blocks of "Heavy Data" have lost their content, the arrays show where the blocks after them begin.

namespace {

using namespace MoxReader;

/// A block of the stream: the arrays in it, and whether it has lost them.
struct Block {
    std::vector<std::uint32_t> arrays;
    bool isLost = false;
};

class HeavyStream : public testing::Test {
protected:
    /// A file of one geometry with all arrays but those named in unused.
    static std::vector<std::uint8_t> file(const std::vector<Block>& blocks,
                                          const std::vector<std::size_t>& unused = {}) {
        TestFile file;
        Entries entries;
        std::uint64_t position = 0;
        std::size_t index = 0;
        for (const auto& block : blocks) {
            std::vector<std::uint8_t> content;
            for (const auto size : block.arrays) {
                if (std::ranges::find(unused, index) == unused.end()) {
                    entries.push_back(entry(std::to_string(index), size, position));
                }
                content.insert(content.end(), size, static_cast<std::uint8_t>(index));
                position += size;
                ++index;
            }
            if (block.isLost) {
                file.raw("Heavy Data", {}, 0x21);
            } else {
                file.compressed("Heavy Data", content);
            }
        }
        return finished(file, entries);
    }

    using Entries = std::vector<std::vector<std::uint8_t>>;

    /// The blocks of the stream, and one geometry with these datasets.
    static std::vector<std::uint8_t> finished(TestFile& heavy, const Entries& entries) {
        Bytes light;
        Bytes attributes;
        light.u32(static_cast<std::uint32_t>(entries.size()));
        for (const auto& entry : entries) {
            light.raw(entry);
            attributes.noAttributes();
        }
        heavy.compressed("Mox Tree", treeStream({{1, 0, 0, 0, 0, 0, "G", "Geometry", "0.7", 0}}));
        heavy.compressed("Light Data", light).compressed("Attributes", attributes);
        heavy.compressed("Global Information", SampleModel().global);
        return heavy.bytes();
    }

    static std::vector<std::uint8_t> entry(const std::string& name, std::uint32_t size,
                                           std::uint64_t position) {
        return fullEntry(name, 0x0500000C, size, 1, position);
    }

    /// Where the stream ends for a reader: with all blocks, or before the first lost one.
    static std::uint64_t streamSize(const std::vector<std::uint8_t>& bytes) {
        const File opened(memory(bytes));
        return openHeavyStream(opened, readModel(opened).nodes()).size();
    }

    /// The arrays that can be read, each checked to hold its own bytes.
    static std::vector<std::string> readable(const std::vector<std::uint8_t>& bytes) {
        const File file(memory(bytes));
        const auto model = readModel(file);
        HeavyData heavy(file, model);
        std::vector<std::string> names;
        for (const auto& dataset : model.node(1).geometry()->datasets) {
            try {
                const auto content = heavy.readBytes(dataset);
                const auto expected = static_cast<std::uint8_t>(std::stoi(dataset.name));
                EXPECT_EQ(std::vector<std::uint8_t>(dataset.sizeInBytes, expected), content) << dataset.name;
                names.push_back(dataset.name);
            } catch (const Error& error) {
                EXPECT_EQ(ErrorCode::ContentLost, error.code()) << error.what();
            }
        }
        return names;
    }

    using Names = std::vector<std::string>;
};

} // namespace

TEST_F(HeavyStream, ArraysAfterALostBlockOfOneArrayAreRead) {
    EXPECT_EQ((Names{"0", "2", "3"}), readable(file({{{100}}, {{120}, true}, {{104}}, {{8}}})));
}

TEST_F(HeavyStream, ALostBlockEndsWithTheArrayThatFillsIt) {
    EXPECT_EQ((Names{"0", "1", "5", "6", "7"}),
              readable(file({{{60, 60}}, {{40, 60, 60}, true}, {{80, 40}}, {{20}}})));
}

TEST_F(HeavyStream, SeveralLostBlocksAreBridged) {
    EXPECT_EQ((Names{"0", "4", "6"}),
              readable(file(
                  {{{100}}, {{100}, true}, {{140}, true}, {{160}, true}, {{100}}, {{120}, true}, {{4}}})));
}

TEST_F(HeavyStream, ALostLastBlockTakesNothingFromThoseBeforeIt) {
    EXPECT_EQ((Names{"0", "1"}), readable(file({{{100}}, {{100}}, {{20, 12}, true}})));
}

TEST_F(HeavyStream, ALostFirstBlockIsBridged) {
    EXPECT_EQ((Names{"1", "2"}), readable(file({{{100}, true}, {{100}}, {{100}}})));
}

// A limit of 200, the shortest known length, would put two arrays into the lost block; 148 fits.
TEST_F(HeavyStream, ALostBlockCanBeShorterThanAllOthers) {
    EXPECT_EQ((Names{"0", "2", "3"}), readable(file({{{200}}, {{148}, true}, {{240}}, {{4}}})));
}

// With a limit of 60 the lost block would hold one array instead of two; the first block rules that limit
// out.
TEST_F(HeavyStream, TheLimitIsTheOneOfAllBlocks) {
    EXPECT_EQ((Names{"0", "1", "4", "5"}), readable(file({{{60, 60}}, {{60, 60}, true}, {{60, 60}}})));
}

// With a limit of 100 the first block holds 80 and 40 bytes and the second 60 and 40; with one of 80 they hold
// 80, and 40 and 60.
TEST_F(HeavyStream, WhereTwoDivisionsFitNothingAfterALostBlockIsRead) {
    EXPECT_EQ((Names{}), readable(file({{{80, 40}, true}, {{60, 40}}, {{104}, true}, {{8}, true}})));
}

TEST_F(HeavyStream, WhereOneOfTwoDivisionsFitsTheArraysAfterALostBlockAreRead) {
    EXPECT_EQ((Names{"2", "3"}), readable(file({{{80, 40}, true}, {{60, 41}}, {{104}, true}, {{8}, true}})));
}

TEST_F(HeavyStream, WhereNoDivisionFitsNothingAfterALostBlockIsRead) {
    EXPECT_EQ((Names{}),
              readable(file({{{40}, true}, {{40}}, {{40}, true}, {{40, 40}, true}, {{40}}, {{40}}})));
}

TEST_F(HeavyStream, AGapAmongLostArraysLeavesWhatFollowsThemUnread) {
    EXPECT_EQ((Names{"0"}), readable(file({{{100}}, {{60, 60}, true}, {{104}}, {{8}}}, {2})));
    EXPECT_EQ((Names{"0"}), readable(file({{{100}}, {{120}, true}, {{104}}, {{8}}}, {1})));
}

TEST_F(HeavyStream, AGapAnywhereLeavesWhatFollowsALostBlockUnread) {
    EXPECT_EQ((Names{"0"}), readable(file({{{60, 60}}, {{120}, true}, {{40, 80}}, {{8}}}, {1, 3})));
}

TEST_F(HeavyStream, ABlockThatContradictsTheArraysLeavesWhatFollowsUnread) {
    // Two arrays cannot fill four blocks.
    EXPECT_EQ((Names{"0"}), readable(file({{{100}}, {{}, true}, {{}, true}, {{100}}})));
}

TEST_F(HeavyStream, TheStreamKeepsThePlaceOfALostBlock) {
    const File opened(memory(file({{{100}}, {{120}, true}, {{104}}})));
    const auto model = readModel(opened);
    auto stream = openHeavyStream(opened, model.nodes());
    EXPECT_EQ(324u, stream.size());
    EXPECT_FALSE(stream.damage().has_value());
    stream.seek(150);
    expectError(ErrorCode::ContentLost, [&] { stream.readBytes(1); });
    EXPECT_EQ(100u, opened.stream("Heavy Data").size());
}

// With a limit of 80 the first block holds 60 and 30 bytes and the second 80; with one of 60 they hold 60, and 30 and
// 80. The third begins at 170 with both.
TEST_F(HeavyStream, WhereAllDivisionsAgreeOnTheBlocksThatAreLeftTheseAreRead) {
    EXPECT_EQ((Names{"3", "4"}), readable(file({{{60, 30}, true}, {{80}, true}, {{100}}, {{4}}})));
}

// The lost block holds one array of 4 bytes after another: 700 is the first limit, and each next one is 4 less than the
// bytes in the block. With 99 arrays the hundredth limit is 4, the last.
TEST_F(HeavyStream, AfterAHundredLimitsNothingAfterALostBlockIsRead) {
    const std::vector<std::uint32_t> ninetyNine(99, 4);
    const std::vector<std::uint32_t> hundred(100, 4);
    EXPECT_EQ((Names{"99", "100"}), readable(file({{ninetyNine, true}, {{700}}, {{8}}})));
    EXPECT_EQ((Names{}), readable(file({{hundred, true}, {{700}}, {{8}}})));
}

TEST_F(HeavyStream, LinksAndEmptyArraysFillNothingOfALostBlock) {
    TestFile heavy;
    heavy.raw("Heavy Data", {}, 0x21).compressed("Heavy Data", Bytes().fill(100, 1));
    const auto bytes = finished(heavy, {entry("0", 120, 0), entry("1", 100, 120), entry("2", 0, 50),
                                        linkEntry("3", 0x0500000C, 1, 1)});
    EXPECT_EQ(220u, streamSize(bytes));
    const File opened(memory(bytes));
    const auto model = readModel(opened);
    HeavyData data(opened, model);
    EXPECT_EQ(std::vector<std::uint8_t>(100, 1), data.readBytes(model.node(1).geometry()->datasets[1]));
}

// A block has 32 bits for its length.
TEST_F(HeavyStream, NoBlockIsTakenToHaveHeldFourGibibytes) {
    TestFile lost;
    lost.raw("Heavy Data", {}, 0x01);
    EXPECT_EQ(3'000'000'000u, streamSize(finished(lost, {entry("0", 3'000'000'000u, 0)})));
    TestFile lostToo;
    lostToo.raw("Heavy Data", {}, 0x01);
    EXPECT_EQ(0u, streamSize(finished(
                      lostToo, {entry("0", 3'000'000'000u, 0), entry("1", 3'000'000'000u, 3'000'000'000u)})));
}

TEST_F(HeavyStream, WhereNoArrayIsLeftForALostLastBlockNothingAfterALostBlockIsRead) {
    EXPECT_EQ((Names{}), readable(file({{{100}, true}, {{100}}, {{}, true}})));
}

// Its length could be anything, so where the blocks after it begin is not known either.
TEST_F(HeavyStream, ABlockTooShortForItsLengthLeavesWhatFollowsALostBlockUnread) {
    TestFile heavy;
    heavy.compressed("Heavy Data", Bytes().fill(100, 0));
    heavy.raw("Heavy Data", {}, 0x21);
    heavy.raw("Heavy Data", Bytes().fill(3, 0x20), 0x21);
    heavy.compressed("Heavy Data", Bytes().fill(8, 3));
    EXPECT_EQ(100u, streamSize(finished(heavy, {entry("0", 100, 0), entry("1", 120, 100),
                                                entry("2", 100, 220), entry("3", 8, 320)})));
}
