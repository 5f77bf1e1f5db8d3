#include <Qel/Tnf/Index.h>

#include "Qel/Support/BlockSizeGuard.h"
#include "Qel/Support/Blocks.h"
#include "Qel/Tnf/ContainerBytes.h"
#include "Qel/Tnf/IndexPeer.h"
#include "Support/Thrown.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using ContainerBytes::compressed;
using ContainerBytes::emptyName;
using ContainerBytes::freezable;
using ContainerBytes::indexName;
using QelTnf::IndexPeer;
using Support::Bytes;
using Support::ByteVector;
using Support::contentOf;

using BlockIds = std::vector<std::uint64_t>;

class Index : public testing::Test {
protected:
    std::uint64_t add(const std::string& name = "a") { return index.AddBlock(name); }
    void addBlocks(int count) {
        for (int i = 0; i < count; ++i) {
            add();
        }
    }
    void put(const std::string& name, const ByteVector& bytes) {
        index.Put(name, bytes.data(), bytes.size());
    }
    void putZeros(const std::string& name, std::size_t count) { put(name, ByteVector(count)); }

    std::size_t entryCount() const { return index.GetBlockInfos().size(); }
    const QelTnf::BlockInfo& entry(std::size_t id) const { return index.GetBlockInfos()[id]; }
    const QelTnf::Block& block(std::size_t id) const { return index.GetBlocks()[id]; }
    const BlockIds& idsOf(const std::string& name) { return index.GetBlockSizeLimiter(name).blockIds; }
    std::uint32_t limitOf(const std::string& name) { return index.GetBlockSizeLimiter(name).limit; }
    bool hasLimiter(const std::string& name) { return IndexPeer::limiters(index).contains(name); }

    Support::BlockSizeGuard variable;
    QelTnf::Index index;
};

// --- Adding blocks

TEST_F(Index, NewOneHasNoEntriesAndReservesNothing) {
    EXPECT_EQ(entryCount(), 0U);
    EXPECT_EQ(index.GetIndexSize(), 0U);
    EXPECT_EQ(IndexPeer::indexPosition(index), 12U);
    EXPECT_EQ(IndexPeer::nextNumber(index), 1U);
}

TEST_F(Index, FirstBlockOfAFileCreates20EntriesAndGetsId0) {
    EXPECT_EQ(add(), 0U);
    EXPECT_EQ(entryCount(), 20U);
    EXPECT_EQ(index.GetBlocks().size(), 20U);
    EXPECT_EQ(entry(0).name, "a");
    EXPECT_EQ(entry(1).name, emptyName);
    EXPECT_EQ(entry(19).name, emptyName);
}

TEST_F(Index, FirstBlockReservesTheHeadRegionOf2788Bytes) {
    add();
    EXPECT_EQ(index.GetIndexSize(), 2788U);
    addBlocks(20);
    EXPECT_EQ(index.GetIndexSize(), 2788U);
}

TEST_F(Index, NewEntryHasItsNumberAndNameAndZerosOtherwise) {
    add();
    const QelTnf::BlockInfo& last = entry(19);
    EXPECT_EQ(last.number, 20);
    EXPECT_EQ(last.position, 0U);
    EXPECT_EQ(last.length, 0U);
    EXPECT_EQ(last.flags, 0);
    EXPECT_EQ(last.reserved, 0);
    EXPECT_FALSE(last.frozen);
    EXPECT_FALSE(last.released);
    EXPECT_EQ(last.uncompressedLength, 0U);
}

TEST_F(Index, BlocksTakeTheLowestFreeIdFirst) {
    EXPECT_EQ(add("a"), 0U);
    EXPECT_EQ(add("b"), 1U);
    EXPECT_EQ(add("a"), 2U);
    EXPECT_EQ(idsOf("a"), (BlockIds{0, 2}));
    EXPECT_EQ(idsOf("b"), (BlockIds{1}));
}

TEST_F(Index, NineteenthNamedBlockGetsId18AndLeavesId19Empty) {
    addBlocks(18);
    EXPECT_EQ(add(), 18U);
    EXPECT_EQ(entryCount(), 20U);
    EXPECT_EQ(entry(19).name, emptyName);
    EXPECT_FALSE(hasLimiter(indexName));
}

TEST_F(Index, TwentiethNamedBlockTurnsId19IntoAnIndexBlockAndGetsId20) {
    addBlocks(19);
    EXPECT_EQ(add(), 20U);
    EXPECT_EQ(entryCount(), 220U);
    EXPECT_EQ(entry(19).name, indexName);
    EXPECT_EQ(entry(19).flags, 0x20);
    EXPECT_EQ(entry(19).length, 27804U);
    EXPECT_EQ(idsOf(indexName), (BlockIds{19}));
}

TEST_F(Index, BlockAfterId218TurnsId219IntoTheSecondIndexBlockAndGetsId220) {
    addBlocks(20);
    for (std::uint64_t id = 21; id <= 218; ++id) {
        ASSERT_EQ(add(), id);
    }
    EXPECT_EQ(entryCount(), 220U);
    EXPECT_EQ(add(), 220U);
    EXPECT_EQ(entryCount(), 420U);
    EXPECT_EQ(entry(219).name, indexName);
    EXPECT_EQ(idsOf(indexName), (BlockIds{19, 219}));
}

TEST_F(Index, NumbersWrapFrom255To0AndGoOnWith1) {
    addBlocks(219);
    EXPECT_EQ(entry(0).number, 1);
    EXPECT_EQ(entry(1).number, 2);
    EXPECT_EQ(entry(254).number, 255);
    EXPECT_EQ(entry(255).number, 0);
    EXPECT_EQ(entry(256).number, 1);
}

TEST_F(Index, IndexBlockHoldsTheImageOfItsCreation) {
    addBlocks(20);
    Bytes table;
    table.u32(200);
    ContainerBytes::addFreeRecords(table, 21, 200);
    EXPECT_EQ(contentOf(block(19)), table);
}

TEST_F(Index, IndexBlockIsPlacedAtItsCreationAfterItsPredecessorAsThatStandsThen) {
    addBlocks(19);
    IndexPeer::entries(index)[18].position = 5000;
    IndexPeer::entries(index)[18].length = 70;
    add();
    EXPECT_EQ(entry(19).position, 5070U);
}

TEST_F(Index, FreeEntryCanBeAddedByItsName) {
    EXPECT_EQ(add(emptyName), 0U);
    EXPECT_EQ(entryCount(), 1U);
    EXPECT_EQ(idsOf(emptyName), (BlockIds{0}));
}

TEST_F(Index, FreeEntryThatIsAddedAfterAnotherGetsTheNextId) {
    EXPECT_EQ(add(emptyName), 0U);
    EXPECT_EQ(add(emptyName), 1U);
    EXPECT_EQ(entryCount(), 2U);
    EXPECT_EQ(idsOf(emptyName), (BlockIds{0, 1}));
}

TEST_F(Index, LongerNameThatBeginsLikeTheEmptyOneGetsAnEntryOfItsOwnAtTheEnd) {
    add();
    EXPECT_EQ(add(emptyName + "2"), 20U);
    EXPECT_EQ(entry(20).name, emptyName + "2");
    EXPECT_EQ(idsOf(emptyName + "2"), (BlockIds{20}));
    EXPECT_EQ(add(), 1U);
}

TEST_F(Index, EmptyPoolIsRefusedAndExistingBlocksStillTakeValues) {
    put("a", {1});
    IndexPeer::limiters(index).at(emptyName).blockIds.clear();
    EXPECT_TRUE(Support::throws<Qel::Exception::InvalidObjectState>(
        {17, "This point should not be reached", "Qel/Tnf/Index", "QelTnf::Index::AddBlock"},
        [this] { add("b"); }));
    EXPECT_FALSE(hasLimiter("b"));
    put("a", {2});
    EXPECT_EQ(contentOf(block(0)), (ByteVector{1, 2}));
}

TEST_F(Index, AddingNoFreeEntriesMakesTheirLimiterAllTheSame) {
    EXPECT_EQ(IndexPeer::addEmptyBlocks(index, 0), 4U);
    EXPECT_EQ(idsOf(emptyName), BlockIds());
    EXPECT_EQ(entryCount(), 0U);
}

TEST_F(Index, FreeEntriesAreAStackWithTheLowestOnTop) {
    EXPECT_EQ(IndexPeer::addEmptyBlocks(index, 3), 421U);
    EXPECT_EQ(idsOf(emptyName), (BlockIds{2, 1, 0}));
}

// --- Limits

TEST_F(Index, LimitIs200MiBIfTheVariableIsNotSet) {
    add();
    EXPECT_EQ(limitOf("a"), 209'715'200U);
}

TEST_F(Index, LimitOfIndexBlocksIsTheSizeOfTheirTableWhateverTheVariable) {
    variable.set("16");
    addBlocks(20);
    EXPECT_EQ(limitOf(indexName), 27804U);
}

TEST_F(Index, LimitStaysAsItWasWhenTheEntryWasCreated) {
    variable.set("1048576");
    add("a");
    variable.set("7");
    add("a");
    add("b");
    variable.set({});
    add("a");
    add("c");
    EXPECT_EQ(limitOf("a"), 1'048'576U);
    EXPECT_EQ(limitOf("b"), 7U);
    EXPECT_EQ(limitOf("c"), 209'715'200U);
}

TEST_F(Index, LimitBuiltAfterTheVariableWasRemovedIs200MiBThoughTheGrowthStepStays) {
    variable.set("16");
    put("a", {1});
    variable.set({});
    put("b", {1});
    EXPECT_EQ(limitOf("b"), 209'715'200U);
    EXPECT_EQ(block(1).GetCapacity(), 16U);
}

/// A text of the variable and the limit that it gives.
struct LimitOfText {
    const char* text;
    std::uint32_t limit;
};

class IndexLimit : public Index, public testing::WithParamInterface<LimitOfText> {
protected:
    IndexLimit() { variable.set(GetParam().text); }
};

TEST_P(IndexLimit, OfFreeEntries) {
    IndexPeer::addEmptyBlocks(index, 0);
    EXPECT_EQ(limitOf(emptyName), GetParam().limit);
}

TEST_P(IndexLimit, OfAnAppendedEntry) {
    add(emptyName + "2");
    EXPECT_EQ(limitOf(emptyName + "2"), GetParam().limit);
}

TEST_P(IndexLimit, OfANamedBlock) {
    add();
    EXPECT_EQ(limitOf("a"), GetParam().limit);
}

INSTANTIATE_TEST_SUITE_P(Texts, IndexLimit,
                         testing::Values(LimitOfText{"1048576", 1'048'576}, LimitOfText{"0", 0},
                                         LimitOfText{"abc", 0}, LimitOfText{"12abc", 12},
                                         LimitOfText{"  +7", 7}, LimitOfText{"4294967294", 4'294'967'294},
                                         LimitOfText{"-2", 4'294'967'294},
                                         LimitOfText{"4294967295", 209'715'200},
                                         LimitOfText{"4294967296", 209'715'200},
                                         LimitOfText{"-1", 209'715'200}));

// --- Choosing the block of a value

TEST_F(Index, PutAddsTheBytesAndNothingElse) {
    put("a", {1, 2});
    put("a", {3});
    EXPECT_EQ(contentOf(block(0)), (ByteVector{1, 2, 3}));
    EXPECT_EQ(entryCount(), 20U);
}

TEST_F(Index, PutCutsTheSizeTo32Bits) {
    const ByteVector bytes = {1, 2, 3};
    index.Put("a", bytes.data(), 0x100000003);
    EXPECT_EQ(contentOf(block(0)), (ByteVector{1, 2, 3}));
}

TEST_F(Index, PutsOfDifferentNamesGoIntoDifferentBlocks) {
    put("b", {1});
    put("a", {2});
    put("b", {3});
    EXPECT_EQ(contentOf(block(0)), (ByteVector{1, 3}));
    EXPECT_EQ(contentOf(block(1)), (ByteVector{2}));
}

TEST_F(Index, BlockOneByteBelowItsLimitTakesAnotherWholeValue) {
    variable.set("8");
    putZeros("a", 7);
    putZeros("a", 100);
    EXPECT_EQ(idsOf("a"), (BlockIds{0}));
    EXPECT_EQ(block(0).GetSize(), 107U);
}

TEST_F(Index, BlockAtItsLimitIsFollowedByANewOneWhereverItsWritePositionIs) {
    variable.set("8");
    put("a", Bytes().fill(8, 1));
    IndexPeer::blocks(index)[0].SetPosition(0);
    put("a", {2});
    EXPECT_EQ(contentOf(block(0)), (ByteVector{1, 1, 1, 1, 1, 1, 1, 1}));
    EXPECT_EQ(contentOf(block(1)), (ByteVector{2}));
}

TEST_F(Index, BlockAtItsLimitIsFollowedByANewOneAndKeepsItsPlaceInTheStream) {
    variable.set("8");
    put("a", Bytes().fill(8, 1));
    put("a", {2});
    put("a", {3});
    EXPECT_EQ(idsOf("a"), (BlockIds{0, 1}));
    EXPECT_EQ(contentOf(block(0)), (ByteVector{1, 1, 1, 1, 1, 1, 1, 1}));
    EXPECT_EQ(contentOf(block(1)), (ByteVector{2, 3}));
    EXPECT_FALSE(entry(0).frozen);
}

TEST_F(Index, LimitOfZeroGivesEachValueABlockOfItsOwn) {
    variable.set("0");
    put("a", {1});
    put("a", {2});
    putZeros("a", 0);
    put("a", {3});
    EXPECT_EQ(idsOf("a"), (BlockIds{0, 1, 2, 3}));
    EXPECT_EQ(contentOf(block(1)), (ByteVector{2}));
    EXPECT_EQ(block(2).GetSize(), 0U);
}

TEST_F(Index, PutsOf1MiBOpenTheSecondBlockWithThe201stWhenTheSizeEqualsTheLimit) {
    const ByteVector mebibyte(1'048'576);
    for (int i = 0; i < 200; ++i) {
        put("a", mebibyte);
    }
    EXPECT_EQ(idsOf("a"), (BlockIds{0}));
    EXPECT_EQ(block(0).GetSize(), 209'715'200U);
    put("a", mebibyte);
    EXPECT_EQ(idsOf("a"), (BlockIds{0, 1}));
    EXPECT_EQ(block(1).GetSize(), 1'048'576U);
}

// As when memory has run out while the name's first block was made.
TEST_F(Index, NameThatHasALimiterAndNoBlockGetsItsFirst) {
    IndexPeer::limiters(index)["a"];
    put("a", {1});
    EXPECT_EQ(idsOf("a"), (BlockIds{0}));
    EXPECT_EQ(contentOf(block(0)), (ByteVector{1}));
}

TEST_F(Index, FrozenBlockIsFollowedByANewOne) {
    put("a", {1});
    IndexPeer::entries(index)[0].frozen = true;
    put("a", {2});
    EXPECT_EQ(idsOf("a"), (BlockIds{0, 1}));
    EXPECT_EQ(contentOf(block(1)), (ByteVector{2}));
}

TEST_F(Index, PutRefusesABlockThatIsFrozenWhenItIsOpenedAndTheNextPutOpensAnother) {
    put("a", {1});
    IndexPeer::entries(index)[0].frozen = true;
    IndexPeer::entries(index)[1].frozen = true;
    EXPECT_TRUE(Support::throws<Qel::Exception::KeyNotFound>(
        {14, "Key not found", "Qel/Tnf/Index", "QelTnf::Index::Put"}, [this] { put("a", {2}); }));
    EXPECT_EQ(block(1).GetSize(), 0U);
    put("a", {3});
    EXPECT_EQ(idsOf("a"), (BlockIds{0, 1, 2}));
    EXPECT_EQ(contentOf(block(2)), (ByteVector{3}));
}

TEST_F(Index, ExtendedStreamHoldsWhatTheCallerFillsIn) {
    variable.set("4");
    put("a", {1});
    unsigned char* const place = index.Extend("a", 3);
    place[0] = 7;
    place[1] = 8;
    place[2] = 9;
    EXPECT_EQ(contentOf(block(0)), (ByteVector{1, 7, 8, 9}));
    *index.Extend("a", 1) = 5;
    EXPECT_EQ(contentOf(block(1)), (ByteVector{5}));
    EXPECT_EQ(index.GetStreamSize("a"), 5U);
}

TEST_F(Index, ExtendLooksTheVariableUp) {
    variable.set("16");
    *index.Extend("a", 1) = 5;
    EXPECT_EQ(QelTnf::defaultBlockSize, 16U);
    EXPECT_EQ(block(0).GetCapacity(), 16U);
}

TEST_F(Index, ExtendRefusesABlockThatIsFrozenWhenItIsOpenedAndTheNextPutOpensAnother) {
    put("a", {1});
    IndexPeer::entries(index)[0].frozen = true;
    IndexPeer::entries(index)[1].frozen = true;
    EXPECT_TRUE(Support::throws<Qel::Exception::KeyNotFound>(
        {14, "Key not found", "Qel/Tnf/Index", "QelTnf::Index::Extend"}, [this] { index.Extend("a", 1); }));
    EXPECT_EQ(block(1).GetSize(), 0U);
    put("a", {3});
    EXPECT_EQ(idsOf("a"), (BlockIds{0, 1, 2}));
    EXPECT_EQ(contentOf(block(2)), (ByteVector{3}));
}

TEST_F(Index, UnknownNameHasNoLimiterAndAskingForItCreatesNone) {
    add("a");
    EXPECT_TRUE(Support::throws<Qel::Exception::KeyNotFound>(
        {14, "Key not found", "Qel/Tnf/Index", "QelTnf::Index::GetBlockSizeLimiter"},
        [this] { index.GetBlockSizeLimiter("b"); }));
    EXPECT_FALSE(hasLimiter("b"));
    EXPECT_EQ(add("b"), 1U);
}

// --- Flags

TEST_F(Index, FlagsReachAllBlocksOfTheNameAndNoOthers) {
    add("a");
    add("b");
    add("a");
    index.SetBlockFlags("a", freezable);
    EXPECT_EQ(entry(0).flags, 0x20);
    EXPECT_EQ(entry(1).flags, 0x00);
    EXPECT_EQ(entry(2).flags, 0x20);
}

TEST_F(Index, FlagsAreAddedToThoseThatABlockHas) {
    add();
    index.SetBlockFlags("a", freezable);
    index.SetBlockFlags("a", compressed);
    EXPECT_EQ(entry(0).flags, 0x21);
}

TEST_F(Index, EachOfTheEightFlagsIsAdded) {
    add();
    for (unsigned int bit = 0; bit < 8; ++bit) {
        index.SetBlockFlags("a", static_cast<unsigned char>(1U << bit));
        EXPECT_EQ(entry(0).flags, (2U << bit) - 1U) << bit;
    }
}

TEST_F(Index, FlagsDoNotReachBlocksThatAreAddedLater) {
    add();
    index.SetBlockFlags("a", freezable);
    add();
    EXPECT_EQ(entry(1).flags, 0x00);
}

TEST_F(Index, FlagsOfOneNameCanDifferUntilTheyAreSetAgain) {
    add();
    index.SetBlockFlags("a", freezable);
    add();
    add();
    index.SetBlockFlags("a", compressed);
    EXPECT_EQ(entry(0).flags, 0x21);
    EXPECT_EQ(entry(1).flags, 0x01);
    EXPECT_EQ(entry(2).flags, 0x01);
    index.SetBlockFlags("a", freezable);
    EXPECT_EQ(entry(1).flags, 0x21);
    EXPECT_EQ(entry(2).flags, 0x21);
}

TEST_F(Index, FlagsOfANameWithoutEntriesChangeNothing) {
    add("a");
    index.SetBlockFlags("b", freezable);
    EXPECT_FALSE(hasLimiter("b"));
    for (const QelTnf::BlockInfo& info : index.GetBlockInfos()) {
        EXPECT_EQ(info.flags, 0x00);
    }
}

TEST_F(Index, FlagsNeedTheWholeNameAlsoOfAReservedOne) {
    add(emptyName + "2");
    add("a");
    add("ab");
    index.SetBlockFlags(emptyName, compressed);
    index.SetBlockFlags("a", freezable);
    EXPECT_EQ(entry(0).flags, 0x00);
    EXPECT_EQ(entry(1).flags, 0x20);
    EXPECT_EQ(entry(2).flags, 0x00);
    EXPECT_EQ(entry(3).flags, 0x01);
}

TEST_F(Index, FlagsReachOlderBlocksAlsoWhereANewerOneHasThemFromItsFreeEntry) {
    add("a");
    index.SetBlockFlags(emptyName, compressed);
    add("a");
    EXPECT_EQ(entry(1).flags, 0x01);
    index.SetBlockFlags("a", compressed);
    EXPECT_EQ(entry(0).flags, 0x01);
}

TEST_F(Index, FlagsReachAllFreeEntriesAlsoThoseAfterAnIndexBlock) {
    add("a");
    index.SetBlockFlags(emptyName, compressed);
    addBlocks(19);
    index.SetBlockFlags(emptyName, compressed);
    ASSERT_EQ(entryCount(), 220U);
    for (std::size_t id = 21; id < 220; ++id) {
        EXPECT_EQ(entry(id).flags, 0x01) << id;
    }
}

// --- Sizes of streams

TEST_F(Index, StreamSizeCountsABlockUpToItsWritePosition) {
    putZeros("a", 8);
    IndexPeer::blocks(index)[0].SetPosition(3);
    EXPECT_EQ(index.GetStreamSize("a"), 3U);
    EXPECT_EQ(block(0).GetSize(), 8U);
}

TEST_F(Index, StreamSizeOfAnUnknownNameIsZeroAndRaisesNothing) {
    EXPECT_EQ(index.GetStreamSize("a"), 0U);
    EXPECT_FALSE(hasLimiter("a"));
}

TEST_F(Index, StreamSizeOfANameWithoutBlocksIsZero) {
    IndexPeer::limiters(index)["a"];
    EXPECT_EQ(index.GetStreamSize("a"), 0U);
}

TEST_F(Index, StreamSizeIsTheSumOverTheBlocksOfTheName) {
    variable.set("8");
    putZeros("a", 9);
    putZeros("b", 100);
    putZeros("a", 8);
    putZeros("a", 3);
    EXPECT_EQ(idsOf("a"), (BlockIds{0, 2, 3}));
    EXPECT_EQ(index.GetStreamSize("a"), 20U);
    EXPECT_EQ(index.GetStreamSize("b"), 100U);
}

TEST_F(Index, StreamSizePasses4GiB) {
    for (std::size_t id = 0; id < 2; ++id) {
        add();
        IndexPeer::entries(index)[id].frozen = true;
        IndexPeer::entries(index)[id].uncompressedLength = 0xFFFFFFFF;
    }
    putZeros("a", 3);
    EXPECT_EQ(index.GetStreamSize("a"), 0x200000001U);
}

} // namespace
