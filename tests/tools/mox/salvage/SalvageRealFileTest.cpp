// Files that the library has saved, then cut or damaged, and files left by processes that ended too early.

#include "../common/FirstBlock.h"
#include "Salvage.h"
#include "SavedModel.h"

#include <Support/Bytes.h>
#include <Support/CaseStride.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <span>
#include <utility>

namespace {

constexpr std::size_t TableBytes = 27804;
constexpr unsigned Arrays = 44; ///< They fill 22 blocks, so there is an Index Block between them.

using FileBytes = std::vector<std::uint8_t>;
using Blocks = std::vector<SoundBlock>;

/// A saved file with its blocks.
struct Sample {
    FileBytes bytes = SavedModel::bytes(Arrays);
    Blocks blocks = soundBlocks(bytes);
};

const Sample& sample() {
    static const Sample sound;
    return sound;
}

/// The place of the Index Block: it has id 19, so 19 blocks precede it.
std::size_t tablePlace() {
    return static_cast<std::size_t>(sample().blocks[18].end());
}

/// The same file as left by a writer that stops before it fills in the index.
FileBytes neverClosed() {
    auto bytes = sample().bytes;
    std::fill(bytes.begin() + 12, bytes.begin() + FirstBlock, std::uint8_t{0});
    const auto table = bytes.begin() + static_cast<std::ptrdiff_t>(tablePlace());
    std::fill(table, table + TableBytes, std::uint8_t{0});
    return bytes;
}

/// Each length near the borders of blocks and of the index table, and others in between.
std::set<std::size_t> lengths() {
    constexpr std::size_t Around = 6;
    constexpr std::size_t Stride = 211;
    std::set<std::size_t> all;
    const auto addAround = [&](std::size_t border) {
        for (auto length = border - Around; length <= border + Around; ++length) {
            all.insert(length);
        }
    };
    addAround(FirstBlock + Around);
    addAround(tablePlace() + TableBytes);
    for (const auto& block : sample().blocks) {
        addAround(static_cast<std::size_t>(block.end()));
    }
    for (auto length = FirstBlock; length < sample().bytes.size(); length += Stride) {
        all.insert(length);
    }
    all.erase(all.lower_bound(sample().bytes.size()), all.end());
    return all;
}

std::vector<std::size_t> triedLengths() {
    std::vector<std::size_t> tried;
    std::size_t place = 0;
    for (const auto length : lengths()) {
        if (place++ % CaseStride == 0) {
            tried.push_back(length);
        }
    }
    return tried;
}

/// What zlib itself can make of a block if the file has its bytes up to a length.
std::string beginningOf(const SoundBlock& block, std::size_t length) {
    const auto start = static_cast<std::size_t>(block.offset) + 4;
    if (length <= start) {
        return "";
    }
    return inflatedByZlib(std::span(sample().bytes).subspan(start, length - start));
}

void expectWhole(const Salvage& salvage, const nlohmann::json& entry, const SoundBlock& block, bool hasName) {
    ASSERT_EQ(entry.at("offset"), block.offset);
    ASSERT_EQ(entry.at("stored"), block.stored);
    ASSERT_EQ(entry.at("content"), block.content.size());
    ASSERT_EQ(salvage.content(entry), block.content);
    ASSERT_EQ(entry.at("name"), hasName ? nlohmann::json(block.name) : nlohmann::json());
}

/// Blocks, beginnings and gaps together cover every byte from the first block on exactly once.
void expectNothingTwiceOrNever(const Salvage& salvage, std::size_t length) {
    std::set<std::pair<std::uint64_t, std::uint64_t>> ranges;
    const auto add = [&](const char* list, const char* size) {
        for (const auto& entry : salvage.index.at(list)) {
            ranges.emplace(entry.at("offset"), entry.at(size));
        }
    };
    add("blocks", "stored");
    add("partial", "stored");
    add("notSaved", "size");
    std::uint64_t end = FirstBlock;
    for (const auto& [offset, size] : ranges) {
        ASSERT_EQ(offset, end);
        end += size;
    }
    ASSERT_EQ(end, length);
}

void expectCut(const FileBytes& bytes, std::size_t length, bool hasNames) {
    const auto& blocks = sample().blocks;
    const auto firstCut =
        std::ranges::find_if(blocks, [&](const auto& block) { return block.end() > length; });
    const auto whole = static_cast<std::size_t>(firstCut - blocks.begin());
    const auto beginning = firstCut == blocks.end() ? "" : beginningOf(*firstCut, length);

    const Salvage salvage(cut(bytes, length));
    const bool isAnythingLeft = whole > 0 || !beginning.empty();
    ASSERT_EQ(salvage.run.exitCode, isAnythingLeft ? 0 : 1) << salvage.run.messages;
    ASSERT_EQ(salvage.madeFolder(), isAnythingLeft);
    if (!isAnythingLeft) {
        return;
    }
    ASSERT_EQ(salvage.index.at("blocks").size(), whole);
    for (std::size_t i = 0; i < whole; ++i) {
        ASSERT_NO_FATAL_FAILURE(expectWhole(salvage, salvage.index.at("blocks")[i], blocks[i], hasNames));
    }
    ASSERT_EQ(salvage.index.at("partial").size(), beginning.empty() ? 0u : 1u);
    if (!beginning.empty()) {
        const auto& partial = salvage.index.at("partial")[0];
        ASSERT_EQ(partial.at("offset"), firstCut->offset);
        ASSERT_EQ(partial.at("content"), firstCut->content.size());
        ASSERT_EQ(partial.at("inflated"), beginning.size());
        ASSERT_EQ(salvage.content(partial), beginning);
        ASSERT_TRUE(firstCut->content.starts_with(beginning));
    }
    expectNothingTwiceOrNever(salvage, length);
}

/// All blocks but one.
void expectAllBut(std::size_t missing, const FileBytes& bytes, bool hasNames) {
    const Salvage salvage(bytes);
    ASSERT_EQ(salvage.run.exitCode, 0) << salvage.run.messages;
    ASSERT_EQ(salvage.index.at("partial").size(), 0u);
    ASSERT_EQ(salvage.index.at("blocks").size(), sample().blocks.size() - 1);
    for (std::size_t i = 0; i + 1 < sample().blocks.size(); ++i) {
        ASSERT_NO_FATAL_FAILURE(expectWhole(salvage, salvage.index.at("blocks")[i],
                                            sample().blocks[i < missing ? i : i + 1], hasNames));
    }
    expectNothingTwiceOrNever(salvage, bytes.size());
}

FileBytes withZerosFor(const SoundBlock& block, FileBytes bytes) {
    const auto start = bytes.begin() + static_cast<std::ptrdiff_t>(block.offset);
    std::fill(start, start + static_cast<std::ptrdiff_t>(block.stored), std::uint8_t{0});
    return bytes;
}

FileBytes noise(std::mt19937& random, std::size_t size) {
    FileBytes bytes(size);
    std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(random()); });
    return bytes;
}

} // namespace

TEST(SalvageRealFile, SampleHasAnIndexBlockAndBlocksOfNumbersOnBothSides) {
    ASSERT_GT(sample().blocks.size(), 30u);
    EXPECT_EQ(sample().blocks[19].offset, tablePlace() + TableBytes);
    EXPECT_EQ(sample().blocks[21].name, "Heavy Data");
    EXPECT_EQ(sample().blocks[0].content, SavedModel::stored(0) + SavedModel::stored(1));
    EXPECT_EQ(sample().blocks[21].content, SavedModel::stored(42) + SavedModel::stored(43));
    EXPECT_GT(lengths().size(), 500u);
}

TEST(SalvageRealFile, CutAnywhereGivesTheBlocksInFrontOfTheCutAndTheBeginningOfTheNext) {
    for (const auto length : triedLengths()) {
        ASSERT_NO_FATAL_FAILURE(expectCut(sample().bytes, length, true)) << length << " bytes";
    }
}

TEST(SalvageRealFile, NeverClosedAndCutAnywhereGivesTheSameWithoutNames) {
    for (const auto length : triedLengths()) {
        ASSERT_NO_FATAL_FAILURE(expectCut(neverClosed(), length, false)) << length << " bytes";
    }
}

TEST(SalvageRealFile, GivesAllOtherBlocksIfOneIsZeros) {
    for (std::size_t i = 0; i < sample().blocks.size(); ++i) {
        ASSERT_NO_FATAL_FAILURE(expectAllBut(i, withZerosFor(sample().blocks[i], sample().bytes), true)) << i;
    }
}

TEST(SalvageRealFile, NeverClosedGivesAllOtherBlocksIfOneIsZeros) {
    for (std::size_t i = 0; i < sample().blocks.size(); ++i) {
        ASSERT_NO_FATAL_FAILURE(expectAllBut(i, withZerosFor(sample().blocks[i], neverClosed()), false)) << i;
    }
}

TEST(SalvageRealFile, CallsZerosZeros) {
    const auto& block = sample().blocks[4];
    const Salvage salvage(withZerosFor(block, sample().bytes));
    const auto& gaps = salvage.index.at("notSaved");
    ASSERT_EQ(gaps.size(), 2u);
    EXPECT_EQ(gaps[0].at("offset"), block.offset);
    EXPECT_EQ(gaps[0].at("size"), block.stored);
    EXPECT_EQ(gaps[0].at("what"), "zeros");
    EXPECT_EQ(gaps[1].at("what"), "an index table");
    EXPECT_EQ(salvage.lost().size(), 1u);
}

TEST(SalvageRealFile, GivesAllBlocksWithNoiseInFrontOfEach) {
    std::mt19937 random(1);
    for (const auto& file : {sample().bytes, neverClosed()}) {
        for (const auto& block : sample().blocks) {
            auto bytes = file;
            const auto added = noise(random, 1 + random() % 300);
            bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(block.offset), added.begin(),
                         added.end());
            const Salvage salvage(bytes);
            ASSERT_EQ(salvage.index.at("blocks").size(), sample().blocks.size());
            for (std::size_t i = 0; i < sample().blocks.size(); ++i) {
                ASSERT_EQ(salvage.content(salvage.index.at("blocks")[i]), sample().blocks[i].content);
            }
            ASSERT_EQ(salvage.index.at("partial").size(), 0u);
            ASSERT_NO_FATAL_FAILURE(expectNothingTwiceOrNever(salvage, bytes.size()));
        }
    }
}

TEST(SalvageRealFile, GivesAllBlocksWithNoiseBetweenAllOfThem) {
    std::mt19937 random(2);
    auto bytes = neverClosed();
    for (auto block = sample().blocks.rbegin(); block != sample().blocks.rend(); ++block) {
        const auto added = noise(random, 500);
        bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(block->offset), added.begin(), added.end());
    }
    const Salvage salvage(bytes);
    ASSERT_EQ(salvage.index.at("blocks").size(), sample().blocks.size());
    for (std::size_t i = 0; i < sample().blocks.size(); ++i) {
        EXPECT_EQ(salvage.content(salvage.index.at("blocks")[i]), sample().blocks[i].content);
    }
}

// Forced, since noise in the names of unclaimed entries of the index is not damage.
TEST(SalvageRealFile, GivesEveryBlockThatNoiseInAnotherPlaceLeaves) {
    std::mt19937 random(3);
    for (int run = 0; run < 100; ++run) {
        auto bytes = run % 2 == 0 ? sample().bytes : neverClosed();
        const auto size = 1 + random() % 400;
        const auto start = FirstBlock + random() % (bytes.size() - FirstBlock - size);
        std::ranges::copy(noise(random, size), bytes.begin() + static_cast<std::ptrdiff_t>(start));
        const Salvage salvage(bytes, {"--force"});
        std::map<std::uint64_t, std::string> saved;
        for (const auto& entry : salvage.index.at("blocks")) {
            saved[entry.at("offset")] = salvage.content(entry);
        }
        for (const auto& block : sample().blocks) {
            const bool isHit = block.offset < start + size && start < block.end();
            if (isHit) {
                ASSERT_EQ(saved.count(block.offset), 0u) << "run " << run;
                continue;
            }
            ASSERT_EQ(saved[block.offset], block.content) << "run " << run;
            saved.erase(block.offset);
        }
        ASSERT_TRUE(saved.empty()) << "run " << run;
        ASSERT_NO_FATAL_FAILURE(expectNothingTwiceOrNever(salvage, bytes.size())) << "run " << run;
    }
}

TEST(SalvageRealFile, TooShortForABlockGivesOneLineAndNoFolder) {
    for (const std::size_t length : {0u, 1u, 8u, 12u, 16u, 2799u, 2800u, 2801u}) {
        const Salvage salvage(cut(sample().bytes, length));
        EXPECT_EQ(salvage.run.exitCode, 1) << length;
        EXPECT_FALSE(salvage.madeFolder()) << length;
        EXPECT_EQ(std::ranges::count(salvage.run.messages, '\n'), 1) << salvage.run.messages;
        EXPECT_NE(salvage.run.messages.find("so nothing can be saved\n"), std::string::npos)
            << salvage.run.messages;
        EXPECT_EQ(salvage.run.output, "");
    }
}

TEST(SalvageRealFile, TooShortForABlockSaysHowShort) {
    const auto messageFor = [](std::size_t length) {
        return Salvage(cut(sample().bytes, length)).run.messages;
    };
    EXPECT_NE(messageFor(0).find(": is empty, so"), std::string::npos);
    EXPECT_NE(messageFor(12).find(": ends after 12 bytes, and blocks begin at offset 2800, so"),
              std::string::npos);
    EXPECT_NE(messageFor(2800).find(": ends after 2800 bytes, and"), std::string::npos);
    EXPECT_NE(messageFor(2801).find(": it is cut short: at least "), std::string::npos);
}
