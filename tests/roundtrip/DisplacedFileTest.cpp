#include "Support/NumberedArrays.h"
#include "Support/TemporaryFolder.h"

#include <MoxReader/FileSource.h>
#include <MoxReader/HeavyData.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

// Files in which one array filled the block before an Index Block, so that the blocks after it lie too low.

namespace {

using Support::numbersOfArray;
using Support::saveNumberedArrays;

/// Whether the writer overwrote a part of the block that holds the numbers at this place.
bool isUnderOthers(const MoxReader::StreamReader& heavy, std::uint64_t position) {
    return heavy.blocks()[heavy.blockAt(position)].isOverwritten;
}

class DisplacedFile : public testing::Test {
protected:
    void save(const std::string& blockSize, unsigned count,
              const std::function<unsigned(unsigned)>& lengthOf) {
        saveNumberedArrays(path, blockSize, count, lengthOf);
    }

    /// Expects each array to have its numbers, or to be refused if others cover its block.
    /// @return how many arrays were refused.
    unsigned expectNumbers(unsigned count, const std::function<unsigned(unsigned)>& lengthOf) const {
        const MoxReader::File file(path);
        const auto model = readModel(file);
        MoxReader::HeavyData heavy(file, model);
        const auto& datasets = model.node(3).geometry()->datasets;
        EXPECT_EQ(count, datasets.size());
        EXPECT_EQ("arrays", model.globalInformation().modifiers.at(0).sourceName);
        unsigned refused = 0;
        for (unsigned i = 0; i < datasets.size(); ++i) {
            EXPECT_EQ("T" + std::to_string(i), datasets[i].name);
            if (!isUnderOthers(heavy.stream(), datasets[i].position)) {
                EXPECT_EQ(numbersOfArray(i, lengthOf(i)), heavy.readUnsigned(datasets[i])) << i;
                continue;
            }
            ++refused;
            EXPECT_THROW(heavy.readUnsigned(datasets[i]), MoxReader::Error) << i;
        }
        return refused;
    }

    MoxReader::RawIndex index() const {
        const MoxReader::File file(path);
        return file.index();
    }

    Support::TemporaryFolder folder;
    std::string path = folder.path("model.mox");
};

unsigned any(unsigned i, unsigned from, unsigned to) {
    return from + static_cast<unsigned>(std::mt19937(i)() % (to - from));
}

} // namespace

TEST_F(DisplacedFile, ArraysThatEachFillABlockAreReadAfterTheIndexBlock) {
    const auto length = [](unsigned) { return 150u; };
    save("512", 105, length);
    const auto found = index();
    ASSERT_EQ(2u, found.tables.size());
    EXPECT_EQ(found.blocks[19].position, found.tables[1].displacement);
    EXPECT_EQ(27804u, found.blocks[20].position);
    EXPECT_GT(40u, expectNumbers(105, length));
}

TEST_F(DisplacedFile, ArraysOfDifferentLengthsAreRead) {
    const auto length = [](unsigned i) { return any(i, 150, 400); };
    save("512", 150, length);
    ASSERT_TRUE(index().isDisplaced());
    EXPECT_GT(40u, expectNumbers(150, length));
}

TEST_F(DisplacedFile, BlocksOfOneByteAreBlocksOfOneArray) {
    const auto length = [](unsigned i) { return any(i, 2000, 4000); };
    save("1", 21, length);
    ASSERT_TRUE(index().isDisplaced());
    EXPECT_GT(21u, expectNumbers(21, length));
}

TEST_F(DisplacedFile, BlocksOfNoBytesAreBlocksOfOneArray) {
    const auto length = [](unsigned i) { return any(i, 2000, 4000); };
    save("0", 22, length);
    ASSERT_TRUE(index().isDisplaced());
    EXPECT_GT(22u, expectNumbers(22, length));
}

TEST_F(DisplacedFile, ArraysThatShareLaterBlocksAreRead) {
    const auto length = [](unsigned i) { return i < 25 ? 300u : any(i, 20, 250); };
    save("1000", 200, length);
    ASSERT_TRUE(index().isDisplaced());
    EXPECT_GT(100u, expectNumbers(200, length));
}

TEST_F(DisplacedFile, TheSecondIndexBlockAloneCanBeHit) {
    const auto length = [](unsigned i) { return i < 400 ? 75u : 150u; };
    save("600", 500, length);
    const auto found = index();
    ASSERT_EQ(3u, found.tables.size());
    EXPECT_EQ(0u, found.tables[1].displacement);
    EXPECT_EQ(found.tables[2].position, found.tables[2].displacement);
    EXPECT_GT(200u, expectNumbers(500, length));
}

TEST_F(DisplacedFile, BothIndexBlocksCanBeHit) {
    const auto length = [](unsigned i) { return i < 219 ? 150u : 600u; };
    save("600", 300, length);
    const auto found = index();
    ASSERT_EQ(3u, found.tables.size());
    EXPECT_GT(found.tables[1].displacement, 0u);
    EXPECT_GT(found.tables[2].displacement, found.tables[1].displacement);
    EXPECT_GT(250u, expectNumbers(300, length));
}

TEST_F(DisplacedFile, AnIndexBlockAfterADisplacedBlockOfSeveralArraysIsDisplacedWithIt) {
    const auto length = [](unsigned i) { return i < 20 ? 300u : 150u; };
    save("1000", 500, length);
    const auto found = index();
    ASSERT_EQ(3u, found.tables.size());
    EXPECT_GT(found.tables[1].displacement, 0u);
    EXPECT_EQ(found.tables[1].displacement, found.tables[2].displacement);
    EXPECT_GT(150u, expectNumbers(500, length));
}

TEST_F(DisplacedFile, BlocksThatSeveralArraysFillLieWhereTheyShould) {
    const auto length = [](unsigned) { return 75u; };
    save("600", 500, length);
    const auto found = index();
    EXPECT_EQ(3u, found.tables.size());
    EXPECT_FALSE(found.isDisplaced());
    EXPECT_EQ(found.fileSize, found.end);
    EXPECT_EQ(0u, expectNumbers(500, length));
}

// The twentieth block is the tree's: the writer opens it at the close, when all blocks get their places.
TEST_F(DisplacedFile, NineteenBlocksOfArraysLieWhereTheyShould) {
    const auto length = [](unsigned) { return 150u; };
    save("600", 19, length);
    EXPECT_FALSE(index().isDisplaced());
    EXPECT_EQ(0u, expectNumbers(19, length));
}

// The blocks before the second table and those before the third take equally many bytes, counted from 0.
TEST_F(DisplacedFile, ATableThatLiesOverAnotherOneMakesTheFileUnreadable) {
    save("800", 460, [](unsigned) { return 200u; });
    EXPECT_THROW(readModel(MoxReader::File(path)), MoxReader::Error);
    MoxReader::FileSource source(path);
    const auto found = MoxReader::scanIndex(source);
    EXPECT_FALSE(found.damage.empty());
    EXPECT_EQ(found.blocks[19].position, found.tables[1].displacement);
}

TEST_F(DisplacedFile, ATableThatLiesOverTheTreeMakesTheFileUnreadable) {
    save("1", 45, [](unsigned) { return 20u; });
    EXPECT_THROW(readModel(MoxReader::File(path)), MoxReader::Error);
}
