#include "MoxReader/HeavyData.h"
#include "Support/CaseStride.h"

#include "Support/ExpectError.h"
#include "Support/SampleModel.h"

#include <algorithm>
#include <functional>
#include <optional>

// Files whose blocks lie too low, because their writer took an Index Block to lie at offset 0.

namespace {

using namespace MoxReader;

constexpr std::uint64_t TableSize = 27804;

/// Bytes that do not compress, so that a block of n of them takes n + 15 bytes in the file.
std::vector<std::uint8_t> noise(std::size_t seed, std::size_t size) {
    std::vector<std::uint8_t> bytes(size);
    auto state = static_cast<std::uint32_t>(seed * 2654435761u + 1);
    for (auto& byte : bytes) {
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        byte = static_cast<std::uint8_t>(state >> 24);
    }
    return bytes;
}

/// A model of one geometry whose datasets 0, 1 and so on have the bytes noise(i, sizeOf(i)), each in a
/// block of its own, as they are stored. One of them can be stored without compression.
TestFile arrays(std::size_t count, const std::function<std::size_t(std::size_t)>& sizeOf,
                std::optional<std::size_t> plain = std::nullopt) {
    TestFile file;
    Bytes light;
    Bytes attributes;
    light.u32(static_cast<std::uint32_t>(count));
    std::uint64_t position = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const auto content = noise(i, sizeOf(i));
        const auto size = static_cast<std::uint32_t>(content.size());
        const bool isLast = i + 1 == count;
        if (plain == i) {
            file.raw("Heavy Data", content, 0x20);
        } else {
            file.raw("Heavy Data", Bytes().u32(size).raw(zlibStream(content)), isLast ? 0x01 : 0x21);
        }
        light.raw(fullEntry(std::to_string(i), 0x0500000C, size, 1, position));
        attributes.noAttributes();
        position += size;
    }
    file.compressed("Mox Tree", treeStream({{1, 0, 0, 0, 0, 0, "G", "Geometry", "0.7", 0}}));
    file.compressed("Light Data", light).compressed("Attributes", attributes);
    file.compressed("Global Information", SampleModel().global);
    return file;
}

struct Outcome {
    std::size_t right = 0;
    std::size_t refused = 0;
    std::size_t wrong = 0;
};

Outcome readArrays(const File& file) {
    const auto model = readModel(file);
    HeavyData heavy(file, model);
    Outcome outcome;
    for (const auto& dataset : model.node(1).geometry()->datasets) {
        try {
            const bool isRight = heavy.readBytes(dataset) == noise(dataset.index, dataset.sizeInBytes);
            ++(isRight ? outcome.right : outcome.wrong);
        } catch (const Error& error) {
            EXPECT_EQ(ErrorCode::BlockOverwritten, error.code()) << error.what();
            ++outcome.refused;
        }
    }
    return outcome;
}

std::size_t countOverwritten(const File& file) {
    return static_cast<std::size_t>(std::ranges::count_if(file.blocks(), &BlockRecord::isOverwritten));
}

bool isDisplaced(std::vector<std::uint8_t> bytes) {
    return scanIndex(*memory(std::move(bytes))).isDisplaced();
}

std::size_t sixHundred(std::size_t) {
    return 600;
}

/// With a wrong name length in the first record.
std::vector<std::uint8_t> withDamagedIndex(const std::vector<std::uint8_t>& bytes) {
    constexpr std::size_t NameLength = 20 + 1;
    return patched(bytes, NameLength, Bytes().u32(127));
}

} // namespace

// 19 blocks of 615 bytes end at 14485, where the table lies. The blocks after it should begin at 42289 but
// begin at 27804; 24 of them begin before the table ends at 42289.
TEST(Displacement, BlocksAfterAnIndexBlockTakenToLieAt0AreFoundWhereTheyLie) {
    const File file(memory(arrays(105, sixHundred).displacedBytes({19})));
    ASSERT_EQ(2u, file.index().tables.size());
    EXPECT_EQ(0u, file.index().tables[0].displacement);
    EXPECT_EQ(14485u, file.index().tables[1].displacement);
    EXPECT_EQ(14485u, file.index().tables[1].position);
    EXPECT_EQ(13870u, file.blocks()[18].position);
    EXPECT_EQ(27804u, file.blocks()[20].position);
    EXPECT_EQ(27804u + 615, file.blocks()[21].position);
    EXPECT_EQ(file.size(), file.index().end);
    EXPECT_EQ(24u, countOverwritten(file));
    EXPECT_FALSE(file.blocks()[18].isOverwritten);
    EXPECT_TRUE(file.blocks()[20].isOverwritten);
    EXPECT_TRUE(file.blocks()[43].isOverwritten);
    EXPECT_FALSE(file.blocks()[44].isOverwritten);
    const auto outcome = readArrays(file);
    EXPECT_EQ(81u, outcome.right);
    EXPECT_EQ(24u, outcome.refused);
    EXPECT_EQ(0u, outcome.wrong);
}

TEST(Displacement, TheOverwrittenBlocksAreTheOnesThatNoLongerHoldTheirBytes) {
    const auto laidOut = arrays(105, [](std::size_t i) { return 600 + i % 7 * 40; });
    const File sound(laidOut.source());
    const File file(memory(laidOut.displacedBytes({19})));
    ASSERT_TRUE(file.index().isDisplaced());
    for (std::size_t id = 0; id < sound.blocks().size(); ++id) {
        const auto& block = file.blocks()[id];
        if (block.isIndexBlock() || block.isEmptyEntry()) {
            continue;
        }
        std::vector<std::uint8_t> bytes(block.length), meant(block.length);
        file.source().read(block.position, bytes);
        sound.source().read(sound.blocks()[id].position, meant);
        EXPECT_EQ(bytes != meant, block.isOverwritten) << id;
    }
}

// The first 19 blocks are so long that the later ones cover some of them but do not reach the table.
TEST(Displacement, BlocksInFrontOfTheIndexBlockAreLostWhereLaterOnesLieOverThem) {
    const File file(memory(arrays(30, [](std::size_t) { return 6000; }).displacedBytes({19})));
    EXPECT_TRUE(file.blocks()[4].isOverwritten); // from 26860 to 32875
    EXPECT_TRUE(file.blocks()[4].contentLength.has_value());
    EXPECT_TRUE(file.blocks()[5].isOverwritten);
    EXPECT_FALSE(file.blocks()[5].contentLength.has_value());
    EXPECT_FALSE(file.blocks()[3].isOverwritten);
    const auto outcome = readArrays(file);
    EXPECT_EQ(countOverwritten(file), outcome.refused);
    EXPECT_EQ(30 - countOverwritten(file), outcome.right);
    EXPECT_EQ(0u, outcome.wrong);
}

TEST(Displacement, ASecondIndexBlockAloneCanBeTakenToLieAt0) {
    const File file(memory(arrays(300, sixHundred).displacedBytes({219})));
    ASSERT_EQ(3u, file.index().tables.size());
    EXPECT_EQ(0u, file.index().tables[1].displacement);
    EXPECT_EQ(14485u + TableSize + 199 * 615, file.index().tables[2].displacement);
    EXPECT_EQ(file.index().tables[2].displacement, file.index().tables[2].position);
    const auto outcome = readArrays(file);
    EXPECT_EQ(300 - countOverwritten(file), outcome.right);
    EXPECT_EQ(0u, outcome.wrong);
}

TEST(Displacement, TheTableAfterDisplacedBlocksIsDisplacedWithThem) {
    const File file(memory(arrays(300, sixHundred).displacedBytes({19})));
    ASSERT_EQ(3u, file.index().tables.size());
    EXPECT_EQ(14485u, file.index().tables[1].displacement);
    EXPECT_EQ(14485u, file.index().tables[2].displacement);
    EXPECT_EQ(TableSize + 199 * 615, file.index().tables[2].position);
    const auto outcome = readArrays(file);
    EXPECT_EQ(300 - countOverwritten(file), outcome.right);
    EXPECT_EQ(0u, outcome.wrong);
}

TEST(Displacement, BothIndexBlocksCanBeTakenToLieAt0) {
    const auto laidOut = arrays(300, [](std::size_t i) { return i < 219 ? 600 : 1200; });
    const File file(memory(laidOut.displacedBytes({19, 219})));
    ASSERT_EQ(3u, file.index().tables.size());
    EXPECT_EQ(14485u, file.index().tables[1].displacement);
    EXPECT_EQ(TableSize + 199 * 615, file.index().tables[2].position);
    EXPECT_EQ(14485u + TableSize + 199 * 615, file.index().tables[2].displacement);
    EXPECT_EQ(27804u, file.blocks()[220].position);
    const auto outcome = readArrays(file);
    EXPECT_EQ(300 - countOverwritten(file), outcome.right);
    EXPECT_EQ(0u, outcome.wrong);
}

// Blocks of 175 bytes, a divisor of 2800: whole blocks of the right length also begin at wrong places.
TEST(Displacement, BlocksOfOneLengthAreNotTakenForEachOther) {
    const auto laidOut = arrays(210, [](std::size_t) { return 160; });
    const File file(memory(laidOut.displacedBytes({19})));
    EXPECT_EQ(2800u + 19 * 175, file.index().tables[1].displacement);
    const auto outcome = readArrays(file);
    EXPECT_EQ(210 - countOverwritten(file), outcome.right);
    EXPECT_EQ(0u, outcome.wrong);
    const auto sound = readArrays(File(laidOut.source()));
    EXPECT_EQ(210u, sound.right);
}

TEST(Displacement, NothingIsDisplacedInASoundFile) {
    for (const std::size_t count : {19u, 20u, 105u, 218u, 219u, 300u, 500u}) {
        EXPECT_FALSE(isDisplaced(arrays(count, sixHundred).bytes())) << count;
    }
}

TEST(Displacement, BytesAfterASoundFileDisplaceNothing) {
    auto bytes = arrays(105, sixHundred).bytes();
    bytes.resize(bytes.size() + 1000);
    EXPECT_FALSE(isDisplaced(std::move(bytes)));
}

TEST(Displacement, ASoundFileThatIsCutIsNotTakenForADisplacedOne) {
    for (const std::size_t length : {32u, 160u, 600u}) {
        const auto laidOut = arrays(105, [&](std::size_t) { return length; });
        const auto bytes = laidOut.bytes();
        const auto displacedSize = laidOut.displacedBytes({19}).size();
        for (std::size_t size = bytes.size() - 1; size > 0; size -= std::min<std::size_t>(size, 97)) {
            EXPECT_FALSE(isDisplaced({bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)}))
                << size;
        }
        EXPECT_FALSE(
            isDisplaced({bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(displacedSize)}));
    }
}

TEST(Displacement, ADisplacedFileThatIsCutIsJustCut) {
    auto bytes = arrays(105, sixHundred).displacedBytes({19});
    bytes.pop_back();
    EXPECT_FALSE(isDisplaced(bytes));
    expectError(ErrorCode::BlockBeyondFile, [&] { readModel(File(memory(bytes))); });
}

TEST(Displacement, AFlippedBitOfASoundFileNeverDisplacesIt) {
    const auto sound = arrays(25, [](std::size_t) { return 40; }).bytes();
    for (std::size_t offset = 0; offset < sound.size(); offset += CaseStride) {
        auto bytes = sound;
        bytes[offset] = static_cast<std::uint8_t>(bytes[offset] ^ (1u << offset % 8));
        ASSERT_FALSE(isDisplaced(std::move(bytes))) << offset;
    }
}

TEST(Displacement, OnlyDatasetsOnBothSidesOfAnIndexBlockCanDisplaceWhatFollowsIt) {
    const auto bytes = arrays(105, sixHundred).displacedBytes({19});
    constexpr std::size_t FlagsOfBlock18 = 20 + 18 * 139 + 137;
    EXPECT_FALSE(isDisplaced(patched(bytes, FlagsOfBlock18, {0x01})));
    EXPECT_FALSE(isDisplaced(patched(bytes, FlagsOfBlock18 - 132, Bytes().raw("Mox Tree").fill(2, 0))));
    EXPECT_FALSE(isDisplaced(patched(bytes, 14485 + 4 + 5, Bytes().raw("Mox Tree").fill(2, 0))));
}

TEST(Displacement, DamageOfTheTreeKeepsAFileFromBeingTakenForADisplacedOne) {
    const auto laidOut = arrays(105, sixHundred);
    auto bytes = laidOut.displacedBytes({19});
    const auto tree = File(memory(bytes)).blocks()[20 + 86];
    ASSERT_EQ("Mox Tree", tree.name);
    bytes[static_cast<std::size_t>(tree.end() - 1)] ^= 1;
    EXPECT_FALSE(isDisplaced(std::move(bytes)));
}

// Only a few short arrays follow the Index Block, so its table covers everything after it.
TEST(Displacement, AFileWhoseTreeLiesUnderATableIsRefused) {
    const auto bytes = arrays(25, [](std::size_t) { return 40; }).displacedBytes({19});
    EXPECT_FALSE(isDisplaced(bytes));
    expectError(ErrorCode::BlockBeyondFile, [&] { readModel(File(memory(bytes))); });
}

// 300 blocks of 615 bytes: the first table lies at 14485, the second at 164674.
TEST(Displacement, ASoundFileThatIsCutBeforeItsSecondTableIsNotTakenForADisplacedOne) {
    const auto bytes = arrays(300, sixHundred).bytes();
    for (const std::size_t size : {42289u, 100'000u, 164'674u, 192'477u}) {
        const auto index = scanIndex(*memory(cut(bytes, size)));
        EXPECT_FALSE(index.isDisplaced()) << size;
        EXPECT_EQ(2u, index.tables.size()) << size;
        expectError(ErrorCode::Truncated, [&] { File{memory(cut(bytes, size))}; });
    }
}

// The second table of the displaced file lies at 27804 + 199 * 615 = 150189.
TEST(Displacement, ATableWithAReservedByteIsNoneByWhichBlocksAreFound) {
    constexpr std::size_t ReservedByte = 4 + 138;
    const auto sound = arrays(300, sixHundred).bytes();
    EXPECT_FALSE(isDisplaced(patched(sound, 164'674 + ReservedByte, {1})));
    EXPECT_EQ(300u, readArrays(File(memory(patched(sound, 164'674 + ReservedByte, {1})))).right);
    const auto displaced = arrays(300, sixHundred).displacedBytes({19});
    EXPECT_EQ(276u, readArrays(File(memory(displaced))).right);
    expectError(ErrorCode::BadIndexTable,
                [&] { File{memory(patched(displaced, 150'189 + ReservedByte, {1}))}; });
}

TEST(Displacement, AStreamThatIsLostDoesNotKeepADisplacedFileFromBeingFoundOut) {
    auto laidOut = arrays(105, sixHundred);
    laidOut.raw("Resources", {}, 0x01);
    const File file(memory(laidOut.displacedBytes({19})));
    EXPECT_EQ(14485u, file.index().tables[1].displacement);
    expectError(ErrorCode::ContentLost, [&] { readModel(file); });
}

// The blocks after the second Index Block lie as low as those before it, whether or not the tree among them is whole.
TEST(Displacement, DamageOfTheTreeMovesNoBlocksAfterDisplacedOnes) {
    auto bytes = arrays(300, sixHundred).displacedBytes({19});
    const auto tree = File(memory(bytes)).blocks()[2 + 300];
    ASSERT_EQ("Mox Tree", tree.name);
    bytes[static_cast<std::size_t>(tree.end() - 1)] ^= 1;
    const File file(memory(bytes));
    EXPECT_EQ(14485u, file.index().tables[2].displacement);
    expectError(ErrorCode::ChecksumMismatch, [&] { readModel(file); });
}

// Array 19, the first after the Index Block, lies at 27804 under the end of the table.
TEST(Displacement, ABlockWithoutCompressionThatIsOverwrittenKeepsItsLength) {
    const File file(memory(arrays(105, sixHundred, 19).displacedBytes({19})));
    ASSERT_EQ(14485u, file.index().tables[1].displacement);
    EXPECT_TRUE(file.blocks()[20].isOverwritten);
    EXPECT_EQ(600u, file.blocks()[20].contentLength);
    EXPECT_EQ(0u, readArrays(file).wrong);
}

// Array 43 in block 44 is the first that the table does not cover. Its place shows where all of them are.
TEST(Displacement, WithADamagedIndexTheFirstWholeBlockAfterATableShowsWhereTheBlocksAre) {
    auto displaced = withDamagedIndex(arrays(105, sixHundred).displacedBytes({19}));
    displaced.pop_back();
    EXPECT_EQ(14485u, scanIndex(*memory(displaced)).tables[1].displacement);
    auto sound = withDamagedIndex(arrays(105, sixHundred).bytes());
    sound.pop_back();
    EXPECT_FALSE(isDisplaced(sound));
}

// Nothing shows whether the bytes of such a block are its own.
TEST(Displacement, WithADamagedIndexABlockWithoutCompressionEndsTheSearchForTheFirstWholeOne) {
    auto bytes = withDamagedIndex(arrays(105, sixHundred, 19).displacedBytes({19}));
    bytes.pop_back();
    EXPECT_FALSE(isDisplaced(bytes));
}

// All 200 blocks after the first Index Block are compressed, the last of them in place of the second Index Block.
TEST(Displacement, WithADamagedIndexAndNoWholeBlockNothingIsDisplaced) {
    constexpr std::size_t LastRecord = 14'485 + 4 + 199 * 139;
    auto bytes = withDamagedIndex(arrays(300, sixHundred).bytes());
    bytes = patched(bytes, LastRecord + 5, Bytes().raw("Heavy Data").fill(3, 0));
    bytes = patched(bytes, LastRecord + 137, {0x21});
    std::fill(bytes.begin() + 42'289, bytes.end(), std::uint8_t{0});
    const auto index = scanIndex(*memory(bytes));
    EXPECT_FALSE(index.isDisplaced());
    EXPECT_EQ(2u, index.tables.size());
    EXPECT_EQ(220u, index.blocks.size());
}
