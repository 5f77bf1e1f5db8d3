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
        std::vector<std::vector<std::uint8_t>> entries;
        std::uint64_t position = 0;
        std::size_t index = 0;
        for (const auto& block : blocks) {
            std::vector<std::uint8_t> content;
            for (const auto size : block.arrays) {
                if (std::ranges::find(unused, index) == unused.end()) {
                    entries.push_back(fullEntry(std::to_string(index), 0x0500000C, size, 1, position));
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
        Bytes light;
        Bytes attributes;
        light.u32(static_cast<std::uint32_t>(entries.size()));
        for (const auto& entry : entries) {
            light.raw(entry);
            attributes.noAttributes();
        }
        file.compressed("Mox Tree", treeStream({{1, 0, 0, 0, 0, 0, "G", "Geometry", "0.7", 0}}));
        file.compressed("Light Data", light).compressed("Attributes", attributes);
        file.compressed("Global Information", SampleModel().global);
        return file.bytes();
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
